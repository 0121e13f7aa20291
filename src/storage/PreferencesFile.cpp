#include "PreferencesFile.h"

#include "DiskFiles.h"
#include "UserFiles.h"

#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

namespace {

/// The text with the value in it; nothing where it could not be made.
std::optional<QByteArray> changed(
    const QTemporaryDir &place, const std::optional<QByteArray> &text, const QString &key, const QVariant &value)
{
    const QString path = place.filePath(QStringLiteral("changed.ini"));
    if (text && !DiskFiles::replace(path, *text).isEmpty()) {
        return std::nullopt;
    }
    QSettings settings(path, QSettings::IniFormat);
    if (value.isValid()) {
        settings.setValue(key, value);
    } else {
        settings.remove(key);
    }
    settings.sync();
    return DiskFiles::readRegular(path, DiskFiles::Links::Refuse).bytes;
}

/// The text as it would be read by the next start gives this value.
bool gives(const QTemporaryDir &place, const QByteArray &text, const QString &key, const QVariant &value)
{
    const QString path = place.filePath(QStringLiteral("read.ini"));
    if (!DiskFiles::replace(path, text).isEmpty()) {
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

QString PreferencesFile::change(const QString &key, const QVariant &value) const
{
    const FileReadResult former = DiskFiles::readRegular(m_path, DiskFiles::Links::Follow);
    if (!former.bytes && QFileInfo::exists(m_path)) {
        return tr("%1: %2").arg(m_path, former.error);
    }
    const QTemporaryDir place;
    const std::optional<QByteArray> text = changed(place, former.bytes, key, value);
    if (!text || !gives(place, *text, key, value)) {
        return tr("%1: the preferences could not be prepared in %2").arg(m_path, place.path());
    }
    QString error = DiskFiles::makeDirectory(QFileInfo(m_path).path());
    if (error.isEmpty()) {
        error = UserFiles().write(m_path, *text);
    }
    if (error.isEmpty()) {
        return {};
    }
    // It may be in its place without being safe there.
    std::ignore = former.bytes ? UserFiles().write(m_path, *former.bytes) : DiskFiles::remove(m_path);
    return tr("%1: %2").arg(m_path, error);
}
