#pragma once

#include <QByteArray>
#include <QList>
#include <QSettings>
#include <QString>
#include <QStringList>

#include <memory>

/// What the program remembers of its window from one run to the next, in a file that may be lost without harm and
/// is none of the preferences. What the file holds may be of another version, or broken: whatever makes no sense
/// reads as if it were not there. User-interface thread only.
class WindowState {
public:
    static constexpr qsizetype mostRecentFiles = 10;

    explicit WindowState(const QString &file);

    /// Goes on with what this file holds.
    void open(const QString &file);

    /// Place, size and whether it is maximized, as QWidget::saveGeometry() gives it and restoreGeometry() checks it;
    /// empty when there is none.
    [[nodiscard]] QByteArray geometry() const;
    void setGeometry(const QByteArray &geometry);

    /// The widths of the window's columns; empty when there are none.
    [[nodiscard]] QList<int> splitterSizes() const;
    void setSplitterSizes(const QList<int> &sizes);

    /// Absolute paths of directories that are there; empty otherwise.
    [[nodiscard]] QString importDirectory() const;
    void setImportDirectory(const QString &directory);
    [[nodiscard]] QString exportDirectory() const;
    void setExportDirectory(const QString &directory);

    /// Absolute paths, the latest first, each once. The files may be gone.
    [[nodiscard]] QStringList recentFiles() const;
    void addRecentFile(const QString &file);
    void clearRecentFiles();

private:
    [[nodiscard]] QString directory(QLatin1StringView key) const;

    std::unique_ptr<QSettings> m_store;
};
