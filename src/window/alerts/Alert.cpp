#include "Alert.h"

#include "MessageWindow.h"

#include <QCoreApplication>
#include <QPushButton>

QMessageBox *Alert::show(QWidget *parent, const Answered &answered) const
{
    auto *const box = new MessageWindow(parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QCoreApplication::applicationName());
    box->setIcon(QMessageBox::Warning);
    box->setText(title);
    box->setInformativeText(text);
    // Every button presses itself on Return while it has the focus; the safe one has it first.
    QPushButton *const safe = box->addButton(safeLabel, QMessageBox::RejectRole);
    box->setDefaultButton(safe);
    box->setEscapeButton(safe);
    QPushButton *accept = nullptr;
    if (!acceptLabel.isEmpty()) {
        accept = box->addButton(acceptLabel, isDestructive ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
        accept->setProperty("destructive", isDestructive);
    }
    box->dress();
    QObject::connect(box, &QMessageBox::finished, box,
        [box, accept, answered] { answered(accept && box->clickedButton() == accept); });
    box->open();
    return box;
}
