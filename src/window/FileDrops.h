#pragma once

#include <QObject>
#include <QStringList>

class Alerts;
class ContentFiles;
class LibraryContentMainView;
class LibraryEditor;
class LibraryStorageManager;
class QDropEvent;
class QPoint;
class QWidget;
class StatusLine;

/// Preset files that come to the window from outside, dragged or handed over. Dropped on the library they are kept
/// there, anywhere else one of them takes the place of the list.
class FileDrops : public QObject {
    Q_OBJECT

public:
    /// All must outlive this object, which belongs to the window that the columns are in, and watches what is dragged
    /// over it.
    FileDrops(QWidget &window, const LibraryStorageManager &storage, LibraryEditor &editor, ContentFiles &files,
        LibraryContentMainView &columns, Alerts &alerts, StatusLine &status);

    bool eventFilter(QObject *watched, QEvent *event) override;
    /// Fills the list from this file; asks first if that loses changes that were not exported.
    void importFile(const QString &path) { importOneOf({path}); }

private:
    /// Says what letting go here would do. The event is refused where that is nothing.
    void dragOver(QDropEvent &event);
    void drop(QDropEvent &event);
    [[nodiscard]] bool isOverLibrary(const QPoint &position) const;
    void importOneOf(const QStringList &paths);
    void keep(const QStringList &paths);

    const LibraryStorageManager &m_storage;
    LibraryEditor &m_editor;
    ContentFiles &m_files;
    LibraryContentMainView &m_columns;
    Alerts &m_alerts;
    StatusLine &m_status;
};
