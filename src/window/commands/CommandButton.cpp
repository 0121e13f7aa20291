#include "CommandButton.h"

#include "Commands.h"
#include "LookMeasures.h"
#include "Symbols.h"

#include <QAction>

#include <algorithm>

CommandButton::CommandButton(Commands &commands, CommandId id, QWidget *parent)
    : QPushButton(parent)
    , m_commands(commands)
    , m_id(id)
{
    setCheckable(commands.command(id).isChecked != nullptr);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(&commands, &Commands::refreshed, this, &CommandButton::refresh);
    connect(this, &QPushButton::clicked, this, [this] {
        m_commands.action(m_id)->trigger();
        refresh();
    });
    refresh();
}

void CommandButton::reserve(const QString &label)
{
    m_reserved = label;
    updateGeometry();
}

void CommandButton::setSymbolShown(bool isShown)
{
    if (isShown != m_isSymbolShown) {
        m_isSymbolShown = isShown;
        m_symbol.clear();
        refresh();
    }
}

QSize CommandButton::sizeHint() const
{
    const QSize hint = QPushButton::sizeHint();
    const int missing = fontMetrics().horizontalAdvance(m_reserved) - fontMetrics().horizontalAdvance(text());
    return hint + QSize(std::max(missing, 0), 0);
}

QSize CommandButton::minimumSizeHint() const
{
    // Some of the padding goes before a row of buttons becomes two.
    constexpr int givenUp = 2 * (LookMeasures::buttonPadding - LookMeasures::smallGap);
    return sizeHint() - QSize(givenUp, 0);
}

void CommandButton::refresh()
{
    const CommandFace face = m_commands.command(m_id).button();
    const QAction &action = *m_commands.action(m_id);
    setText(face.label);
    const QString symbol = face.symbol + (action.isChecked() ? QStringLiteral("+") : QString());
    if (symbol != m_symbol) {
        m_symbol = symbol;
        const QPalette::ColorRole colour = action.isChecked() ? QPalette::Link : QPalette::ButtonText;
        setIcon(m_isSymbolShown ? symbolIcon(face.symbol, colour) : QIcon());
    }
    if (!action.isEnabled() && m_heir && window()->focusWidget() == this) {
        // The next in the order of the Tab key may be a field, and keys meant for a list would change what is in it.
        clearFocus();
        // What the heir shows may be in the middle of a change.
        QMetaObject::invokeMethod(
            m_heir,
            [heir = m_heir] {
                if (!heir->window()->focusWidget()) {
                    heir->setFocus(Qt::OtherFocusReason);
                }
            },
            Qt::QueuedConnection);
    }
    setEnabled(action.isEnabled());
    setToolTip(face.toolTip);
    if (isCheckable()) {
        setChecked(action.isChecked());
    }
}
