#pragma once

#include <QLabel>

/// The title above the slots, with their number. Its text as a whole is one label.
class ContentTitle : public QLabel {
    Q_OBJECT

public:
    explicit ContentTitle(QWidget *parent = nullptr);

    void setCount(qsizetype count);

protected:
    void changeEvent(QEvent *event) override;

private:
    void refresh();

    qsizetype m_count = 0;
};
