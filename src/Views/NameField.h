#pragma once

#include <QLineEdit>

/// The patch name: looks like a heading, is a field. Escape goes back to the name before the edit.
class NameField : public QLineEdit {
    Q_OBJECT

public:
    explicit NameField(QWidget *parent);

    /// Shows the name of a patch. For another patch an edit starts afresh; for the same one cursor and undo history
    /// stay, unless the name was changed elsewhere.
    void showName(const QString &name, bool isOtherPatch);

Q_SIGNALS:
    /// With every change that the user makes.
    void nameEdited(const QString &name);

protected:
    bool event(QEvent *event) override;
    /// A file that is dropped is for the window, which imports it.
    void dragEnterEvent(QDragEnterEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] bool goesBackWith(const QEvent *event) const;

    QString m_nameBefore;
    bool m_isShowing = false;
};
