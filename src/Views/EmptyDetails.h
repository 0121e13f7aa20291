#pragma once

#include <QWidget>

class QLabel;

/// The detail column without a patch: one text, in line with the empty states of the other columns.
class EmptyDetails : public QWidget {
    Q_OBJECT

public:
    explicit EmptyDetails(QWidget *parent);

    void setText(const QString &text);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    QLabel *m_text;
};
