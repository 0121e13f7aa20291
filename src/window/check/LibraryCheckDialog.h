#pragma once

#include "LibraryCheck.h"

#include <QDialog>
#include <QPointer>

#include <memory>

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
    /// The library, which `check` is of, must have been loaded. It and the storage must outlive the dialog.
    LibraryCheckDialog(std::unique_ptr<LibraryCheck> check, const VelgorLibrary &library,
        LibraryStorageManager &storage, QWidget *parent = nullptr);

Q_SIGNALS:
    /// The library was changed and saved, or that failed.
    void libraryChanged();

private:
    void addColumns();
    void addBottom();
    /// Shows that something is under way, unless it is over at once. `done` is what is said then.
    void await(const QString &done);
    void noteEnd(bool isDone);
    void showProgress(qsizetype examined, qsizetype total);
    void showExamined();
    void showFindings();
    void showKept();
    void describeKept();
    void addRescued();
    void restore();
    /// Gives the focus to something that can have it.
    void keepFocus();

    const VelgorLibrary &m_library;
    LibraryStorageManager &m_storage;
    std::unique_ptr<LibraryCheck> m_check;
    std::unique_ptr<QObject> m_previewed; ///< asks for what is shown of the selected former library
    QVBoxLayout *m_layout;
    QLabel *m_summary;
    QLabel *m_place;
    LibraryCheckColumn *m_findings;
    LibraryCheckColumn *m_kept;
    QLabel *m_done; ///< what the last press of a button came to
    QString m_doneText; ///< the same while it is not shown yet
    bool m_isWaiting = false; ///< for an examination that takes its time
    QPointer<QWidget> m_focusBefore; ///< what had the focus before that
    QPushButton *m_close;
};
