#pragma once

#include <QObject>

/// Remembers whether the Alt key is held down: only then do labels underline the letters that work with it.
class ShortcutHints : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] bool areShown() const { return m_areShown; }

    /// For the application object.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void show(bool shown);

    bool m_areShown = false;
};
