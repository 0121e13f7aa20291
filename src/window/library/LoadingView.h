#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;

/// Says that the library is being loaded, how far that is, and when it will be shown. A load that is over at once is
/// not mentioned.
class LoadingView : public QWidget {
    Q_OBJECT

public:
    explicit LoadingView(QWidget *parent = nullptr);

    void setLoading(bool isLoading);
    void setProgress(qsizetype loaded, qsizetype total);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();
    void setContentsVisible(bool areVisible);

    QLabel *m_title;
    QProgressBar *m_bar;
    QLabel *m_count;
    QLabel *m_reason; ///< why nothing can be read yet
    QTimer m_patience;
};
