#pragma once

#include <QFont>
#include <QObject>

#include <functional>

class QWidget;

/// Tells of every change of a widget's font, also of one that comes from the application while the program runs.
class FontFollower : public QObject {
    Q_OBJECT

public:
    /// Calls `follow` as long as `owner` lives.
    FontFollower(QWidget &widget, std::function<void()> follow, QObject *owner);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> m_follow;
};

/// The font of a widget in proportion to that of what it stands in.
namespace RelativeFont {

/// Gives the widget the font that `derive` makes of its parent's, from now on. It needs a parent, and keeps it.
void set(QWidget &widget, QFont (*derive)(const QFont &base));

} // namespace RelativeFont
