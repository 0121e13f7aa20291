#include "MessageBox.h"

#include "LookMeasures.h"
#include "Symbols.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace {

constexpr int textWidth = 360;
constexpr int margin = 20;

void styleLabel(QLabel *label, const QFont &font, QPalette::ColorRole role)
{
    if (label) {
        label->setFont(font);
        label->setWordWrap(true);
        // Texts come from files and their names; nothing of them is markup.
        label->setTextFormat(Qt::PlainText);
        label->setFixedWidth(textWidth);
        label->setForegroundRole(role);
        // Reasons and paths are often copied into a mail.
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
}

void dress(QMessageBox &box)
{
    const QFont &font = box.font();
    styleLabel(box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label")), LookMeasures::strongFont(font),
        QPalette::WindowText);
    styleLabel(box.findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel")), font, QPalette::PlaceholderText);
    if (QLayout *layout = box.layout()) {
        layout->setContentsMargins(margin, margin, margin, margin - LookMeasures::focusGutter);
    }
    for (QAbstractButton *button : box.buttons()) {
        button->setProperty("roomy", true);
        button->setIcon(QIcon());
    }
}

} // namespace

QMessageBox *MessageBox::show(QWidget *parent, const Alert &alert, const std::function<void(bool isAccepted)> &answered)
{
    auto *const box = new QMessageBox(parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QCoreApplication::applicationName());
    box->setIcon(QMessageBox::Warning);
    box->setText(alert.title);
    box->setInformativeText(alert.text);
    QPushButton *const safe = box->addButton(alert.safeLabel, QMessageBox::RejectRole);
    safe->setProperty("lead", true);
    box->setDefaultButton(safe);
    box->setEscapeButton(safe);
    QPushButton *accept = nullptr;
    if (!alert.acceptLabel.isEmpty()) {
        accept = box->addButton(
            alert.acceptLabel, alert.isDestructive ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole);
        accept->setProperty("destructive", alert.isDestructive);
        accept->setAutoDefault(false);
    }
    dress(*box);
    QObject::connect(box, &QMessageBox::finished, box,
        [box, accept, answered] { answered(accept && box->clickedButton() == accept); });
    box->open();
    return box;
}
