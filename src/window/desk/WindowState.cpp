#include "WindowState.h"

#include "OwnerlessLock.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr QLatin1StringView geometryKey{"window/geometry"};
constexpr QLatin1StringView splitterKey{"window/columns"};
constexpr QLatin1StringView importKey{"directories/import"};
constexpr QLatin1StringView exportKey{"directories/export"};
constexpr QLatin1StringView recentKey{"files/recent"};

} // namespace

WindowState::WindowState(const QString &file)
{
    open(file);
}

void WindowState::open(const QString &file)
{
    m_store = std::make_unique<QSettings>(file, QSettings::IniFormat);
    // Reading and writing would wait half a minute for a program that died while it made the lock.
    OwnerlessLock::remove(m_store->fileName() + QStringLiteral(".lock"));
}

QByteArray WindowState::geometry() const
{
    return m_store->value(geometryKey).toByteArray();
}

void WindowState::setGeometry(const QByteArray &geometry)
{
    m_store->setValue(geometryKey, geometry);
}

QList<int> WindowState::splitterSizes() const
{
    QList<int> sizes;
    for (const QString &text : m_store->value(splitterKey).toStringList()) {
        bool isNumber = false;
        sizes.append(text.toInt(&isNumber));
        if (!isNumber || sizes.last() < 0) {
            return {};
        }
    }
    return sizes;
}

void WindowState::setSplitterSizes(const QList<int> &sizes)
{
    QStringList texts;
    for (const int size : sizes) {
        texts.append(QString::number(size));
    }
    m_store->setValue(splitterKey, texts);
}

QString WindowState::importDirectory() const
{
    return directory(importKey);
}

void WindowState::setImportDirectory(const QString &directory)
{
    m_store->setValue(importKey, QDir(directory).absolutePath());
}

QString WindowState::exportDirectory() const
{
    return directory(exportKey);
}

void WindowState::setExportDirectory(const QString &directory)
{
    m_store->setValue(exportKey, QDir(directory).absolutePath());
}

QString WindowState::directory(QLatin1StringView key) const
{
    const QString path = m_store->value(key).toString();
    return QDir::isAbsolutePath(path) && QFileInfo(path).isDir() ? path : QString();
}

QStringList WindowState::recentFiles() const
{
    QStringList files = m_store->value(recentKey).toStringList();
    files.removeIf([](const QString &file) { return !QDir::isAbsolutePath(file); });
    files.removeDuplicates();
    return files.first(std::min(files.size(), mostRecentFiles));
}

void WindowState::addRecentFile(const QString &file)
{
    QStringList files = recentFiles();
    files.prepend(QFileInfo(file).absoluteFilePath());
    files.removeDuplicates();
    m_store->setValue(recentKey, files.first(std::min(files.size(), mostRecentFiles)));
}

void WindowState::clearRecentFiles()
{
    m_store->remove(recentKey);
}
