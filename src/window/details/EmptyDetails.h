#pragma once

#include <QWidget>

class QLabel;

/// The detail column without a patch: a text, in line with the empty states of the other columns, and below it what to
/// do next where there is something to say.
class EmptyDetails : public QWidget {
    Q_OBJECT

public:
    explicit EmptyDetails(QWidget *parent);

    void setText(const QString &text, const QString &nextStep);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    QLabel *m_text;
    QLabel *m_nextStep;
};
