#pragma once

#include <QFont>
#include <QObject>

class QWidget;

/// Keeps the font of a widget in proportion to that of what it stands in, also when the application's font changes
/// while the program runs.
class RelativeFont : public QObject {
    Q_OBJECT

public:
    using Derive = QFont (*)(const QFont &base);

    /// Gives the widget the font that `derive` makes of its parent's, from now on. It needs a parent, and keeps it.
    static void set(QWidget &widget, Derive derive);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    RelativeFont(QWidget &widget, Derive derive);
    void apply();

    QWidget &m_widget;
    Derive m_derive;
};
