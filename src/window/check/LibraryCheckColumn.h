#pragma once

#include "EmptyHint.h"
#include "LibraryCheckRow.h"

#include <QList>
#include <QWidget>

class LibraryCheckList;
class QPlainTextEdit;
class QPushButton;

/// Half of the library check: a list, what is said about its selected row, and a button that acts on it.
class LibraryCheckColumn : public QWidget {
    Q_OBJECT

public:
    /// `detailsName` is what assistive technology calls the field below the list.
    LibraryCheckColumn(const QString &title, const QString &detailsName, QWidget *parent = nullptr);

    void setRows(const QList<LibraryCheckRow> &rows, const EmptyHint &hint);
    void setDetails(const QString &text);

    [[nodiscard]] LibraryCheckList *list() const { return m_list; }
    [[nodiscard]] QPushButton *button() const { return m_button; }

private:
    LibraryCheckList *m_list;
    QPlainTextEdit *m_details;
    QPushButton *m_button;
};
