#pragma once

#include <QObject>

/// Remembers whether the focus was last moved by the keyboard. A ring around a button helps who uses the keyboard
/// and disturbs who has just clicked.
class KeyboardFocus : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] bool isShown() const { return m_isShown; }

    /// For every widget that can take the focus.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_isShown = false;
};
