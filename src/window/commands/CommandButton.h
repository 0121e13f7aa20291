#pragma once

#include "Command.h"

#include <QPushButton>

class Commands;

/// A button for a command: its label, symbol, tool tip, state and enabling are the command's.
class CommandButton : public QPushButton {
    Q_OBJECT

public:
    CommandButton(Commands &commands, CommandId id, QWidget *parent = nullptr);

    /// Keeps room for this label, so that a shorter one does not move the neighbours.
    void reserve(const QString &label);
    /// Without its symbol it needs less room.
    void setSymbolShown(bool isShown);
    /// Gets the keyboard focus when the button is disabled while it has it; it must outlive the button.
    void setFocusHeir(QWidget &heir) { m_heir = &heir; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

private:
    void refresh();

    Commands &m_commands;
    CommandId m_id;
    QWidget *m_heir = nullptr;
    QString m_reserved;
    QString m_symbol;
    bool m_isSymbolShown = true;
};
