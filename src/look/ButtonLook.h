#pragma once

#include <QColor>

class QStyleOptionButton;
class QWidget;

/// What an action button is painted with in its present state. Its kind is given by dynamic properties: `lead` is
/// the accent-filled button of a place, `strong` the dark one, which turns to the accent when it is checked,
/// `plain` has no fill at rest, `destructive` has a red label.
struct ButtonLook {
    QColor fill; ///< Invalid where nothing is filled
    QColor text;
    QColor symbol;

    [[nodiscard]] static ButtonLook of(const QStyleOptionButton &option, const QWidget *widget);
};

/// Whether a dynamic property of this name is set and true.
[[nodiscard]] bool isVariant(const QWidget *widget, const char *name);

/// Whether a button has the wide padding of dialogs: by its property `roomy`, as a `strong` button, or as a button
/// of a dialog's button box.
[[nodiscard]] bool isRoomy(const QWidget *widget);
