#pragma once

#include <QLineEdit>

/// A field to search with: a leading search symbol, a clear button while there is text. Escape clears, Down and Return
/// go on.
class SearchField : public QLineEdit {
    Q_OBJECT

public:
    SearchField(const QString &placeholder, const QString &accessibleName, QWidget *parent);

    /// For a change that is not the user's: keeps the cursor where nothing changes.
    void showText(const QString &text);

Q_SIGNALS:
    /// Down or Return: the user goes on to what was found.
    void left();

protected:
    bool event(QEvent *event) override;
    /// A file that is dropped is for the window, which imports it.
    void dragEnterEvent(QDragEnterEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void makeRoomForSymbol();
    [[nodiscard]] bool clearsWith(const QEvent *event) const;
};
