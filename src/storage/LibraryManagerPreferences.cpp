#include "LibraryManagerPreferences.h"

#include "Diagnostics.h"
#include "LibraryPlace.h"
#include "ObservableProperty.h"
#include "OwnerlessLock.h"
#include "PreferencesFile.h"

#include <QDir>
#include <QFileInfo>
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
    const QString name = QStringLiteral("VelgorLibrary");
    const QString inDocuments =
        QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)).absoluteFilePath(name);
    const QString inHome = QDir::home().absoluteFilePath(name);
    const bool isHomeBetter = !LibraryPlace::isListable(inDocuments) && LibraryPlace::isListable(inHome);
    // The documents may have had another name when the library was made.
    return !LibraryPlace::holdsLibrary(inDocuments) && (isHomeBetter || LibraryPlace::holdsLibrary(inHome))
        ? inHome
        : inDocuments;
}

void LibraryManagerPreferences::setColorScheme(PrefColors colorScheme)
{
    if (const Result<> stored = store(colorSchemeKey, static_cast<int>(colorScheme)); !stored) {
        Diagnostics::printLine(stored.problem().text());
    }
    setObservable(this, m_colorScheme, colorScheme, &LibraryManagerPreferences::colorSchemeChanged);
}

Result<> LibraryManagerPreferences::setLibraryDirectory(const QString &libraryDirectory)
{
    const bool isDefault = libraryDirectory == defaultLibraryDirectory();
    Result<> stored = store(libraryDirectoryKey, isDefault ? QVariant() : QDir(libraryDirectory).absolutePath());
    if (stored) {
        setObservable(this, m_libraryDirectory, libraryDirectory, &LibraryManagerPreferences::libraryDirectoryChanged);
    }
    return stored;
}

Result<> LibraryManagerPreferences::store(const QString &key, const QVariant &value)
{
    // Every start comes here, and the store writes a value that it has already as if it were new, before the window
    // is painted.
    if (m_store->value(key).toString() == value.toString() && m_store->contains(key) == value.isValid()) {
        return Success();
    }
    if (!QFileInfo(m_store->fileName()).isAbsolute()) {
        // Where the platform keeps preferences otherwise than in a file.
        if (value.isValid()) {
            m_store->setValue(key, value);
        } else {
            m_store->remove(key);
        }
        m_store->sync();
        const bool isStored = m_store->status() == QSettings::NoError;
        return isStored ? Result<>(Success()) : Problem{.why = tr("The preferences cannot be written")};
    }
    Result<> changed = PreferencesFile(m_store->fileName()).change(key, value);
    m_store->sync();
    return changed;
}
