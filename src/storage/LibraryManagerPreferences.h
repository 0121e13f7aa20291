#pragma once

#include "Result.h"

#include <QObject>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

/// Which colour scheme the window has. The numbers are stored.
enum class PrefColors { prefsystem = 0, prefdark = 1, preflight = 2 };

/// Nothing for a number that is no choice.
[[nodiscard]] std::optional<PrefColors> prefColorsFromRawValue(int value);

/// The two settings that last from one run to the next, in the platform's per-user store. Every change is stored
/// as it is made. User-interface thread only.
class LibraryManagerPreferences : public QObject {
    Q_OBJECT

public:
    /// Reads from and writes to `store`, or the user's own store where it is null.
    explicit LibraryManagerPreferences(std::unique_ptr<QSettings> store = nullptr, QObject *parent = nullptr);

    /// "VelgorLibrary" in the user's documents directory. In the home directory where a path in the documents directory
    /// keeps a library from being listed, unless there is one already.
    [[nodiscard]] static QString defaultLibraryDirectory();

    [[nodiscard]] PrefColors colorScheme() const { return m_colorScheme; }
    /// Where it cannot be stored, it lasts until the program ends.
    void setColorScheme(PrefColors colorScheme);

    /// An absolute path.
    [[nodiscard]] QString libraryDirectory() const { return m_libraryDirectory; }
    /// The default directory is never stored, so that it stays the default wherever documents move. Where the change
    /// cannot be stored nothing changes.
    [[nodiscard]] Result<> setLibraryDirectory(const QString &libraryDirectory);

Q_SIGNALS:
    void colorSchemeChanged();
    void libraryDirectoryChanged();

private:
    /// An invalid value takes the key away.
    [[nodiscard]] Result<> store(const QString &key, const QVariant &value);

    std::unique_ptr<QSettings> m_store;
    PrefColors m_colorScheme = PrefColors::prefsystem;
    QString m_libraryDirectory;
};
