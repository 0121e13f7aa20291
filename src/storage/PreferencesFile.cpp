#include "PreferencesFile.h"

#include "DiskFiles.h"
#include "UserFiles.h"

#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

namespace {

/// The text with the value in it; nothing where it could not be made.
std::optional<QByteArray> changed(
    const QTemporaryDir &place, const Result<QByteArray> &text, const QString &key, const QVariant &value)
{
    const QString path = place.filePath(QStringLiteral("changed.ini"));
    if (text && !DiskFiles::replace(path, *text)) {
        return std::nullopt;
    }
    QSettings settings(path, QSettings::IniFormat);
    if (value.isValid()) {
        settings.setValue(key, value);
    } else {
        settings.remove(key);
    }
    settings.sync();
    const Result<QByteArray> made = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    return made ? std::optional(*made) : std::nullopt;
}

/// The text as it would be read by the next start gives this value.
bool gives(const QTemporaryDir &place, const QByteArray &text, const QString &key, const QVariant &value)
{
    const QString path = place.filePath(QStringLiteral("read.ini"));
    if (!DiskFiles::replace(path, text)) {
        return false;
    }
    const QSettings settings(path, QSettings::IniFormat);
    return settings.contains(key) == value.isValid() && settings.value(key).toString() == value.toString();
}

} // namespace

PreferencesFile::PreferencesFile(const QString &path)
    : m_path(path)
{
}

Result<> PreferencesFile::change(const QString &key, const QVariant &value) const
{
    const Result<QByteArray> former = DiskFiles::readRegular(m_path, DiskFiles::Links::Follow);
    if (!former && former.problem().what != Problem::What::Absent) {
        return former.problem();
    }
    const QTemporaryDir place;
    const std::optional<QByteArray> text = changed(place, former, key, value);
    if (!text || !gives(place, *text, key, value)) {
        return Problem{.where = m_path, .why = tr("the preferences could not be prepared in %1").arg(place.path())};
    }
    const Result<> made = DiskFiles::makeDirectory(QFileInfo(m_path).path());
    Result<> written = made ? UserFiles().write(m_path, *text) : made;
    if (written) {
        return written;
    }
    // It may be in its place without being safe there.
    std::ignore = former ? UserFiles().write(m_path, *former) : DiskFiles::remove(m_path);
    return written.problem().in(m_path);
}
