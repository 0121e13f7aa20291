#include "LibraryCheckList.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"

#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

void paintGround(QPainter &painter, const QStyleOptionViewItem &option, bool isFocused)
{
    const LookTokens &tokens = LookTokens::current();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
    if (!isSelected && !isHovered) {
        return;
    }
    const QRectF rect = option.rect;
    const QColor selection = isFocused ? tokens.selection : tokens.selectionInactive;
    fillRounded(painter, rect, isSelected ? selection : tokens.rowHover, LookMeasures::rowRadius);
    if (isSelected) {
        constexpr int pillMargin = 5;
        const QRectF pill(rect.left() + LookMeasures::tinyGap, rect.top() + pillMargin, LookMeasures::pillWidth,
            rect.height() - 2 * pillMargin);
        fillRounded(painter, pill, isFocused ? tokens.selectionPill : tokens.selectionInactivePill, pill.width() / 2);
    }
}

/// Paints the rows as those of the window's lists.
class RowPainter : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const override
    {
        return {100, LookMeasures::rowHeight(option.fontMetrics)};
    }
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const LookTokens &tokens = LookTokens::current();
        const bool isTitle = !index.flags().testFlag(Qt::ItemIsEnabled);
        const bool isFocused = option.widget != nullptr && option.widget->hasFocus();
        const bool isHighlighted = isFocused && option.state.testFlag(QStyle::State_Selected);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (!isTitle) {
            paintGround(*painter, option, isFocused);
        }
        const QFont font = isTitle ? LookMeasures::strongFont(option.font) : option.font;
        painter->setFont(font);
        painter->setPen(isHighlighted ? tokens.highlightedText : tokens.text);
        const QRect rect = option.rect.adjusted(LookMeasures::gap, 0, -LookMeasures::gap, 0);
        const QString shown = QFontMetrics(font).elidedText(
            index.data().toString(), isTitle ? Qt::ElideRight : Qt::ElideMiddle, rect.width());
        painter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
        painter->restore();
    }
};

} // namespace

LibraryCheckList::LibraryCheckList(QWidget *parent)
    : QListView(parent)
    , m_model(new QStandardItemModel(this))
{
    // Framed like the field below it, to which it belongs.
    setProperty("field", true);
    setFrameShape(StyledPanel);
    setModel(m_model);
    setItemDelegate(new RowPainter(this));
    setUniformItemSizes(true);
    setMouseTracking(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
}

void LibraryCheckList::setRows(const QList<LibraryCheckRow> &rows)
{
    m_rows = rows;
    QList<QStandardItem *> items;
    for (const LibraryCheckRow &row : rows) {
        auto *const item = new QStandardItem(row.text);
        // Titles can neither be selected nor reached with the keyboard.
        item->setFlags(
            row.isTitle() ? Qt::NoItemFlags : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren);
        if (!row.isTitle()) {
            // A name that looks like markup is shown as it stands.
            item->setToolTip(QString(QStringLiteral("<p>%1</p>")).arg(row.text.toHtmlEscaped()));
        }
        items.append(item);
    }
    m_model->clear();
    m_model->invisibleRootItem()->appendRows(items);
    const auto first =
        std::find_if(rows.begin(), rows.end(), [](const LibraryCheckRow &row) { return !row.isTitle(); });
    setCurrentIndex(m_model->index(static_cast<int>(first - rows.begin()), 0));
    scrollToTop();
    Q_EMIT selectionMoved();
}

LibraryCheckRow LibraryCheckList::selectedRow() const
{
    const QModelIndexList selected = selectedIndexes();
    return selected.isEmpty() ? LibraryCheckRow() : m_rows.at(selected.first().row());
}

void LibraryCheckList::setHint(const EmptyHint &hint)
{
    m_hint = hint;
    // What is painted is said too.
    setAccessibleDescription(hint.isEmpty() ? QString() : hint.title + QStringLiteral(". ") + hint.text);
    viewport()->update();
}

void LibraryCheckList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_rows.isEmpty() && !m_hint.isEmpty()) {
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        m_hint.paint(painter, *viewport());
    }
}

void LibraryCheckList::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    Q_EMIT selectionMoved();
}

void LibraryCheckList::focusInEvent(QFocusEvent *event)
{
    QListView::focusInEvent(event);
    // The selected row changes its colour, and so does the frame.
    viewport()->update();
    update();
}

void LibraryCheckList::focusOutEvent(QFocusEvent *event)
{
    QListView::focusOutEvent(event);
    viewport()->update();
    update();
}
