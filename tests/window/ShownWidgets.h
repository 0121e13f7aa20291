#pragma once

#include "OneRefresh.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QWidget>

/// Finds what stands in a view by what users and scripts know it by.
namespace ShownWidgets {

/// Lets refreshes happen that were put off until the program waits for the user, and nothing else.
inline void catchUp()
{
    QCoreApplication::sendPostedEvents(nullptr, OneRefresh::dueEvent());
}

/// The one visible widget of the class with this accessible name; a null pointer when it is not the only one.
template <typename Widget>
Widget *named(const QWidget &view, const QString &name)
{
    catchUp();
    Widget *found = nullptr;
    const QList<Widget *> all = view.findChildren<Widget *>();
    for (Widget *widget : all) {
        const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
        if (widget->isVisible() && interface != nullptr && interface->text(QAccessible::Name) == name) {
            if (found != nullptr) {
                return nullptr;
            }
            found = widget;
        }
    }
    return found;
}

/// The texts of the visible labels, from top to bottom and from left to right.
inline QStringList labels(const QWidget &view)
{
    catchUp();
    QList<const QLabel *> shown;
    const QList<QLabel *> all = view.findChildren<QLabel *>();
    for (const QLabel *label : all) {
        if (label->isVisible()) {
            shown.append(label);
        }
    }
    const auto place = [&view](const QLabel *label) {
        const QPoint centre = label->mapTo(&view, label->rect().center());
        return std::pair(centre.y() / 4, centre.x());
    };
    std::sort(shown.begin(), shown.end(), [&place](const QLabel *a, const QLabel *b) { return place(a) < place(b); });
    QStringList texts;
    for (const QLabel *label : std::as_const(shown)) {
        texts.append(label->text());
    }
    return texts;
}

inline void press(const QWidget &view, const QString &name)
{
    auto *button = named<QAbstractButton>(view, name);
    QVERIFY2(button != nullptr, qPrintable(name));
    QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace ShownWidgets
