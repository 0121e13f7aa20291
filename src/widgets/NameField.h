#pragma once

#include <QLineEdit>

/// The patch name: looks like a heading, is a field. Every edit is told at once, but never as a blank name: while the
/// field is blank the name before the edit holds, and it comes back when the edit ends. Escape goes back to it too.
class NameField : public QLineEdit {
    Q_OBJECT

public:
    explicit NameField(QWidget *parent);

    /// Shows the name of a patch. For another patch an edit starts afresh; for the same one cursor and undo history
    /// stay, unless the name was changed elsewhere.
    void showName(const QString &name, bool isOtherPatch);
    /// Ends the edit as leaving the field does; what an input method still composes belongs to it.
    void endEdit();

Q_SIGNALS:
    /// With every change that the user makes.
    void nameEdited(const QString &name);
    void focusChanged(bool hasFocus);

protected:
    bool event(QEvent *event) override;
    /// A file that is dropped is for the window, which imports it.
    void dragEnterEvent(QDragEnterEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void noteText(const QString &text);
    void removeLineBreaks(const QString &text);
    void tell(const QString &name);
    void goBack();
    [[nodiscard]] bool goesBackWith(const QEvent *event) const;

    QString m_name; ///< as it was shown or told last; it may hold line breaks, which the field's text does not
    QString m_nameBefore;
    QString m_composed; ///< by an input method, not yet part of the text
    QString m_line; ///< the field's text without line breaks
    bool m_isShowing = false;
};
