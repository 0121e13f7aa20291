#pragma once

#include "AlertTexts.h"
#include "Alerts.h"
#include "TestDesk.h"

#include <QMessageBox>
#include <QTest>

#include <functional>

/// A window with messages over it, and what is shown of them.
namespace ShownAlerts {

/// A window with messages over it.
struct Window {
    TestDesk desk;
    QWidget widget;
    Alerts *alerts = new Alerts(desk.library, desk.content, desk.storage, desk.desk.editors, widget);

    explicit Window(const QString &library = {})
        : desk(library)
    {
        widget.show();
        QTest::qWait(1);
    }
};

inline QList<QMessageBox *> shownBoxes()
{
    QList<QMessageBox *> boxes;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        auto *box = qobject_cast<QMessageBox *>(widget);
        if (box && box->isVisible()) {
            boxes.append(box);
        }
    }
    return boxes;
}

/// The only message on screen; nullptr when there is none or more than one.
inline QMessageBox *shownBox()
{
    QTest::qWait(1);
    const QList<QMessageBox *> boxes = shownBoxes();
    return boxes.size() == 1 ? boxes.first() : nullptr;
}

inline QString shownTitle()
{
    const QMessageBox *box = shownBox();
    return box ? box->text() : QString();
}

inline QAbstractButton *buttonOf(const QMessageBox &box, const QString &label)
{
    const QList<QAbstractButton *> buttons = box.buttons();
    for (QAbstractButton *button : buttons) {
        if (button->text().remove(u'&') == label) {
            return button;
        }
    }
    return nullptr;
}

inline void press(const QString &label)
{
    QMessageBox *box = shownBox();
    QVERIFY(box);
    QAbstractButton *button = buttonOf(*box, label);
    QVERIFY2(button, qPrintable(label));
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    QTest::qWait(1);
}

} // namespace ShownAlerts
