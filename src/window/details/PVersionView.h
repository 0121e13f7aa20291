#pragma once

#include <QWidget>

/// The badge of a firmware version: its number in its colour, as PresetsVersionManager has them.
class PVersionView : public QWidget {
    Q_OBJECT

public:
    explicit PVersionView(QWidget *parent);

    void setVersion(const QString &version);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_version;
};
