#pragma once

#include "LibraryCheck.h"

#include <QDialog>

class LibraryCheckColumn;
class LibraryStorageManager;
class QLabel;
class QPushButton;
class QVBoxLayout;
class VelgorLibrary;

/// Shows what is not as it should be in the library directory, adds what can be rescued, and restores former
/// libraries.
class LibraryCheckDialog : public QDialog {
    Q_OBJECT

public:
    /// The library must have been loaded. Both must outlive the dialog.
    LibraryCheckDialog(VelgorLibrary &library, LibraryStorageManager &storage, QWidget *parent = nullptr);

Q_SIGNALS:
    /// The library was changed and saved, or that failed.
    void libraryChanged();

private:
    void addColumns();
    void addBottom();
    void examine();
    void showFindings();
    void showKept();
    void describeKept();
    void addRescued();
    void restore();
    /// Says what was done, and gives the focus to something that can have it.
    void finish(const QString &done);

    VelgorLibrary &m_library;
    LibraryStorageManager &m_storage;
    LibraryCheck m_check;
    QVBoxLayout *m_layout;
    QLabel *m_summary;
    QLabel *m_place;
    LibraryCheckColumn *m_findings;
    LibraryCheckColumn *m_kept;
    QLabel *m_done; ///< what the last press of a button came to
    QPushButton *m_close;
};
