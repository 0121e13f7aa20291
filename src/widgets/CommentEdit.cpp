#include "CommentEdit.h"

#include "LookMeasures.h"

#include <QMimeData>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextLayout>
#include <QtMath>

CommentEdit::CommentEdit(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setAccessibleName(tr("Comment"));
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A space at the end of a wrapped line would still let the text slide sideways.
    connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, [this] { horizontalScrollBar()->setRange(0, 0); });
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    // As far in as the text of a field.
    document()->setDocumentMargin(LookMeasures::tinyGap);
    connect(this, &QPlainTextEdit::textChanged, this, &CommentEdit::noteEdit);
}

void CommentEdit::showComment(const QString &comment, bool isOtherPatch)
{
    if (!isOtherPatch && comment == m_comment) {
        return;
    }
    const QScopedValueRollback showing(m_isShowing, true);
    m_comment = comment;
    setPlainText(comment);
}

QSize CommentEdit::minimumSizeHint() const
{
    constexpr int fewestLines = 4;
    return {fontMetrics().averageCharWidth() * 8, heightOfLines(fewestLines)};
}

int CommentEdit::heightOfLines(int lines) const
{
    // A laid out line is higher than the font says, because its ascent and descent are rounded up.
    QTextLayout layout(QStringLiteral("x"), font());
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return qCeil(lines * line.height()) + 2 * (frameWidth() + qRound(document()->documentMargin()));
}

void CommentEdit::limitHeight()
{
    constexpr int mostLines = 8;
    setMaximumHeight(heightOfLines(mostLines));
}

void CommentEdit::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        limitHeight();
    }
}

void CommentEdit::showEvent(QShowEvent *event)
{
    // Font and frame are known for certain from here on.
    limitHeight();
    QPlainTextEdit::showEvent(event);
}

QString CommentEdit::comment() const
{
    // toPlainText() would turn no-break spaces into spaces.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

void CommentEdit::noteEdit()
{
    if (m_isShowing) {
        return;
    }
    QString edited = comment();
    if (edited != m_comment) {
        m_comment = edited;
        Q_EMIT commentEdited(edited);
    }
}

bool CommentEdit::canInsertFromMimeData(const QMimeData *source) const
{
    return !source->hasUrls() && QPlainTextEdit::canInsertFromMimeData(source);
}
