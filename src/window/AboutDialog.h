#pragma once

#include "ProblemReport.h"

#include <QDialog>

class QLabel;
class QVBoxLayout;

/// Which program this is, what it works on and what it said in this run, for the user to read and to hand on.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    explicit AboutDialog(const ProblemReport &report, QWidget *parent = nullptr);

private:
    void addHead();
    void addFacts();
    void addMessages();
    void addBottom();
    /// Puts the report on the clipboard.
    void copy();

    ProblemReport m_report;
    QVBoxLayout *m_layout;
    QLabel *m_done = nullptr; ///< what the last press of a button came to
};
