#pragma once

#include <QMessageBox>

class QLabel;
class QScrollArea;

/// A message box that shows its texts whole on every screen and with every font.
///
/// QMessageBox works out its size by the screen alone. It turns off the wrapping of a label that has a width of its
/// own whenever the screen would leave room for more, and never looks at how high a text gets.
class MessageWindow : public QMessageBox {
    Q_OBJECT

public:
    using QMessageBox::QMessageBox;

    /// Gives the texts their look, and the window's layout its margins. To be called once, when everything is in the
    /// box.
    void dress();

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// Makes the texts as wide as it takes, and the window as high.
    void fit();
    /// Gives the texts this width, and what the window then needs.
    [[nodiscard]] QSize sizeWith(int textWidth);
    /// Shows as much of the text as there is room for, and lets the user scroll to the rest.
    void scrollText(int width, int height);

    QLabel *m_title = nullptr;
    QLabel *m_text = nullptr;
    QString m_wholeTitle;
    QString m_wholeText;
    QScrollArea *m_scrollArea = nullptr;
    bool m_isFitting = false;
};
