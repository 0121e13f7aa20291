#pragma once

#include <QPlainTextEdit>

/// The comment of a patch, 4 to 8 lines high.
class CommentEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit CommentEdit(QWidget *parent);

    /// Shows the comment of a patch. For the same patch cursor and undo history stay, unless the comment was changed
    /// elsewhere.
    void showComment(const QString &comment, bool isOtherPatch);

    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// With every change that the user makes.
    void commentEdited(const QString &comment);

protected:
    /// A file that is dropped is for the window, which imports it.
    [[nodiscard]] bool canInsertFromMimeData(const QMimeData *source) const override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    [[nodiscard]] QString comment() const;
    void limitHeight();
    [[nodiscard]] int heightOfLines(int lines) const;
    void noteEdit();

    /// As it was shown or edited last, which is not always the field's text: it knows no line ends but its own.
    QString m_comment;
    bool m_isShowing = false;
};
