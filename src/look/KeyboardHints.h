#pragma once

#include <QObject>

/// What the keyboard has shown: rings around buttons once it has moved the focus, as they disturb who has just clicked,
/// and, while the Alt key is held down, underlines of the letters that work with it.
class KeyboardHints : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] bool areRingsShown() const { return m_areRingsShown; }
    [[nodiscard]] bool areLettersShown() const { return m_areLettersShown; }

    /// For the application object.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showLetters(bool areShown);

    bool m_areRingsShown = false;
    bool m_areLettersShown = false;
};
