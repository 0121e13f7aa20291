#include "LibraryManagerPreferences.h"

#include "ObservableProperty.h"
#include "OwnerlessLock.h"

#include <QDir>
#include <QStandardPaths>

namespace {

constexpr QLatin1String colorSchemeKey("colorScheme");
constexpr QLatin1String libraryDirectoryKey("libraryDirectory");

std::unique_ptr<QSettings> userStore()
{
    auto store = std::make_unique<QSettings>(QStringLiteral("velgor"), QStringLiteral("velgor-library-manager"));
    // Reading and writing would wait half a minute for a program that died while it made the lock.
    OwnerlessLock::remove(store->fileName() + QStringLiteral(".lock"));
    return store;
}

} // namespace

std::optional<PrefColors> prefColorsFromRawValue(int value)
{
    if (value < static_cast<int>(PrefColors::prefsystem) || value > static_cast<int>(PrefColors::preflight)) {
        return std::nullopt;
    }
    return static_cast<PrefColors>(value);
}

LibraryManagerPreferences::LibraryManagerPreferences(std::unique_ptr<QSettings> store, QObject *parent)
    : QObject(parent)
    , m_store(store ? std::move(store) : userStore())
    , m_colorScheme(prefColorsFromRawValue(m_store->value(colorSchemeKey).toInt()).value_or(PrefColors::prefsystem))
    , m_libraryDirectory(m_store->value(libraryDirectoryKey).toString())
{
    if (m_libraryDirectory.isEmpty()) {
        m_libraryDirectory = defaultLibraryDirectory();
    }
    m_libraryDirectory = QDir(m_libraryDirectory).absolutePath();
}

QString LibraryManagerPreferences::defaultLibraryDirectory()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
        .absoluteFilePath(QStringLiteral("VelgorLibrary"));
}

void LibraryManagerPreferences::setColorScheme(PrefColors colorScheme)
{
    m_store->setValue(colorSchemeKey, static_cast<int>(colorScheme));
    setObservable(this, m_colorScheme, colorScheme, &LibraryManagerPreferences::colorSchemeChanged);
}

void LibraryManagerPreferences::setLibraryDirectory(const QString &libraryDirectory)
{
    setObservable(this, m_libraryDirectory, libraryDirectory, &LibraryManagerPreferences::libraryDirectoryChanged);
    if (libraryDirectory == defaultLibraryDirectory()) {
        m_store->remove(libraryDirectoryKey);
    } else {
        saveLibraryDirectory();
    }
}

void LibraryManagerPreferences::saveLibraryDirectory()
{
    const QString directory = QDir(m_libraryDirectory).absolutePath();
    // Every start comes here, and the store writes a value that it has already as if it were new, before the window
    // is painted.
    if (m_store->value(libraryDirectoryKey).toString() != directory) {
        m_store->setValue(libraryDirectoryKey, directory);
    }
}
