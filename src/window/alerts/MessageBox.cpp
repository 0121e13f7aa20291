#include "MessageBox.h"

#include "MessageWindow.h"

#include <QCoreApplication>
#include <QPushButton>

QMessageBox *MessageBox::show(QWidget *parent, const Alert &alert, const std::function<void(bool isAccepted)> &answered)
{
    auto *const box = new MessageWindow(parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QCoreApplication::applicationName());
    box->setIcon(QMessageBox::Warning);
    box->setText(alert.title);
    box->setInformativeText(alert.text);
    // Every button presses itself on Return while it has the focus; the safe one has it first.
    QPushButton *const safe = box->addButton(alert.safeLabel, QMessageBox::RejectRole);
    box->setDefaultButton(safe);
    box->setEscapeButton(safe);
    QPushButton *accept = nullptr;
    if (!alert.acceptLabel.isEmpty()) {
        accept = box->addButton(
            alert.acceptLabel, alert.isDestructive ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
        accept->setProperty("destructive", alert.isDestructive);
    }
    box->dress();
    QObject::connect(box, &QMessageBox::finished, box,
        [box, accept, answered] { answered(accept && box->clickedButton() == accept); });
    box->open();
    return box;
}
