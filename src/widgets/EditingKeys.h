#pragma once

#include <QObject>

/// Lets a text field with the focus keep the keys that edit text, even where a command has the same shortcut. Ctrl+D
/// is a command's alone: in a field it edits nothing, on no desktop.
/// Works for every field of the application for as long as it lives.
class EditingKeys : public QObject {
    Q_OBJECT

public:
    explicit EditingKeys(QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;
};
