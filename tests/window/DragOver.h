#pragma once

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QWidget>

#include <memory>

/// A drag of some data over a widget, as the events that the desktop would send.
class DragOver {
public:
    DragOver(QWidget *widget, QMimeData *data)
        : m_widget(widget)
        , m_data(data)
    {
    }

    /// Enters at a point, the first time, and moves there. False when a drop there would be refused.
    bool moveTo(const QPoint &point)
    {
        if (!m_isInside) {
            QDragEnterEvent enter(point, actions, m_data.get(), Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(m_widget, &enter);
            m_isInside = enter.isAccepted();
            m_isTaken = m_isInside;
        }
        if (m_isInside) {
            QDragMoveEvent move(point, actions, m_data.get(), Qt::LeftButton, Qt::NoModifier);
            // Who has nothing to say to a move stays with what was said before.
            move.setAccepted(m_isTaken);
            QCoreApplication::sendEvent(m_widget, &move);
            m_isTaken = move.isAccepted();
        }
        return m_isInside && m_isTaken;
    }

    void leave()
    {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(m_widget, &leave);
        m_isInside = false;
    }

    /// Moves to a point and lets go there. False when that was refused.
    bool dropAt(const QPoint &point)
    {
        if (!moveTo(point)) {
            leave();
            return false;
        }
        QDropEvent drop(point, actions, m_data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_widget, &drop);
        m_isInside = false;
        return drop.isAccepted();
    }

private:
    static constexpr Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;

    QWidget *m_widget;
    std::unique_ptr<QMimeData> m_data;
    bool m_isInside = false;
    bool m_isTaken = false;
};
