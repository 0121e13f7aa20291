#include "UserActions.h"

#include "Commands.h"
#include "DragOver.h"
#include "LibraryContentMainView.h"
#include "LibraryViewFilterView.h"
#include "PresetSupply.h"
#include "VelgorLibraryView.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QPixmapCache>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <array>
#include <numeric>
#include <tuple>

namespace {

constexpr QSize usualSize{1280, 800};

QFont usualFont()
{
    static const QFont font = QApplication::font();
    return font;
}

} // namespace

UserActions::UserActions(WindowFixture &window, PresetSupply &presets, QRandomGenerator &random)
    : m_window(window)
    , m_presets(presets)
    , m_random(random)
{
    usualFont();
}

const QList<UserActions::Kind> &UserActions::kinds()
{
    static const QList<Kind> all{{20, &UserActions::clickRow}, {4, &UserActions::doubleClickRow},
        {20, &UserActions::pressKey}, {12, &UserActions::pressShortcut}, {12, &UserActions::runCommand},
        {14, &UserActions::pressButton}, {12, &UserActions::typeText}, {4, &UserActions::clearFilter},
        {16, &UserActions::dragRows}, {1, &UserActions::dropFile}, {2, &UserActions::importFile},
        {2, &UserActions::exportList}, {3, &UserActions::openContextMenu}, {2, &UserActions::openMenu},
        {3, &UserActions::turnWheel}, {1, &UserActions::resizeWindow}, {1, &UserActions::changeFont},
        {1, &UserActions::closeAndReopen}, {3, &UserActions::waitABit}};
    return all;
}

QString UserActions::any()
{
    static const int total =
        std::accumulate(kinds().begin(), kinds().end(), 0, [](int sum, const Kind &kind) { return sum + kind.weight; });
    int chosen = m_random.bounded(total);
    const auto kind = std::find_if(
        kinds().begin(), kinds().end(), [&chosen](const Kind &each) { return (chosen -= each.weight) < 0; });
    if (m_random.bounded(5) == 0) {
        m_window.dialogs.answer = std::nullopt;
    } else {
        m_window.dialogs.answer = m_random.bounded(2) == 0 ? m_presets.anyFile(m_random) : m_presets.target(m_random);
    }
    const QString done = (this->*kind->act)();
    return done + settle();
}

QString UserActions::settle()
{
    constexpr int mostQuestions = 50;
    QString answered;
    for (int i = 0; i < mostQuestions; ++i) {
        WindowFixture::settle();
        if (QWidget *popup = QApplication::activePopupWidget()) {
            for (int steps = m_random.bounded(12); steps > 0; --steps) {
                QTest::keyClick(popup, Qt::Key_Down);
            }
            QTest::keyClick(popup, m_random.bounded(2) == 0 ? Qt::Key_Return : Qt::Key_Escape);
            if (QApplication::activePopupWidget() == popup) {
                popup->close();
            }
            answered += QStringLiteral(", used the menu");
        } else if (QMessageBox *box = message()) {
            const bool isAccepted = m_random.bounded(2) == 0;
            answered += QStringLiteral(", %1 \"%2\"")
                            .arg(isAccepted ? QStringLiteral("accepted") : QStringLiteral("dismissed"), box->text());
            answer(*box, isAccepted);
        } else if (QDialog *open = dialog()) {
            answered += useDialog(*open);
        } else if (!m_window.window->isVisible()) {
            answered += QStringLiteral(", closed and reopened");
            reopen();
        } else {
            break;
        }
    }
    return answered;
}

QMessageBox *UserActions::message() const
{
    const QList<QMessageBox *> boxes = m_window.window->findChildren<QMessageBox *>();
    const auto found =
        std::find_if(boxes.begin(), boxes.end(), [](const QMessageBox *box) { return box->isVisible(); });
    return found == boxes.end() ? nullptr : *found;
}

QDialog *UserActions::dialog() const
{
    const QList<QDialog *> dialogs = m_window.window->findChildren<QDialog *>();
    const auto found =
        std::find_if(dialogs.begin(), dialogs.end(), [](const QDialog *each) { return each->isVisible(); });
    return found == dialogs.end() ? nullptr : *found;
}

QString UserActions::useDialog(QDialog &open)
{
    constexpr std::array keys{Qt::Key_Tab, Qt::Key_Down, Qt::Key_Up, Qt::Key_Space, Qt::Key_End};
    QString used = QStringLiteral(", used a dialog");
    const QPointer<QDialog> dialog(&open);
    for (int steps = m_random.bounded(8); steps > 0 && dialog; --steps) {
        if (m_random.bounded(2) == 0) {
            QWidget *focus = dialog->focusWidget();
            QTest::keyClick(focus ? focus : dialog.data(), keys.at(static_cast<std::size_t>(m_random.bounded(5))));
        } else {
            QList<QPushButton *> buttons = dialog->findChildren<QPushButton *>();
            buttons.removeIf([](const QPushButton *button) { return !button->isVisible() || !button->isEnabled(); });
            QPushButton *button = buttons.value(m_random.bounded(static_cast<int>(buttons.size()) + 1));
            if (button) {
                used += QStringLiteral(", \"%1\"").arg(button->text());
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
        WindowFixture::settle();
        if (message()) {
            return used;
        }
    }
    if (dialog) {
        QTest::keyClick(dialog, Qt::Key_Escape);
    }
    return used;
}

void UserActions::answer(QMessageBox &box, bool isAccepted)
{
    const QList<QAbstractButton *> buttons = box.buttons();
    const auto found = std::find_if(buttons.begin(), buttons.end(),
        [&box, isAccepted](QAbstractButton *button) { return (button != box.escapeButton()) == isAccepted; });
    QTest::mouseClick(found == buttons.end() ? box.escapeButton() : *found, Qt::LeftButton);
}

void UserActions::reopen()
{
    m_window.window->show();
    std::ignore = QTest::qWaitFor([this] { return !m_window.storage.isLoading(); }, 60'000);
    std::ignore = QTest::qWaitForWindowActive(m_window.window.get());
}

PatchListView *UserActions::anyList()
{
    if (m_random.bounded(2) == 0) {
        return m_window.contentList();
    }
    return m_window.libraryList();
}

int UserActions::anyRow(const PatchListView &list)
{
    const int rows = list.model()->rowCount();
    return rows == 0 ? -1 : m_random.bounded(rows);
}

QPoint UserActions::anyPoint(const PatchListView &list)
{
    return {m_random.bounded(list.viewport()->width()), m_random.bounded(list.viewport()->height())};
}

QWidget *UserActions::anyUsable(const char *className)
{
    QList<QWidget *> usable = m_window.window->findChildren<QWidget *>();
    usable.removeIf([this, className](const QWidget *widget) {
        return !widget->inherits(className) || !widget->isVisible() || !widget->isEnabled()
            || widget->visibleRegion().isEmpty() || widget->window() != m_window.window.get();
    });
    return usable.isEmpty() ? nullptr : usable.at(m_random.bounded(usable.size()));
}

Qt::KeyboardModifiers UserActions::anyModifiers()
{
    constexpr std::array all{Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier};
    return all.at(static_cast<std::size_t>(m_random.bounded(static_cast<int>(all.size()))));
}

QString UserActions::clickRow()
{
    PatchListView *list = anyList();
    const int row = anyRow(*list);
    const Qt::KeyboardModifiers modifiers = anyModifiers();
    if (row < 0 || m_random.bounded(15) == 0) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, anyPoint(*list));
        return QStringLiteral("clicked somewhere in %1").arg(list->accessibleName());
    }
    WindowFixture::click(list, row, modifiers);
    return QStringLiteral("clicked row %1 of %2, modifiers %3").arg(row).arg(list->accessibleName()).arg(modifiers);
}

QString UserActions::doubleClickRow()
{
    PatchListView *list = anyList();
    const int row = anyRow(*list);
    if (row < 0) {
        return QStringLiteral("found no row");
    }
    const QModelIndex index = list->model()->index(row, 0);
    list->scrollTo(index);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualRect(index).center());
    return QStringLiteral("double-clicked row %1 of %2").arg(row).arg(list->accessibleName());
}

QString UserActions::clearFilter()
{
    m_window.window->columns().library()->filter()->clear();
    WindowFixture::settle();
    return QStringLiteral("cleared the filter");
}

QString UserActions::dragRows()
{
    const PatchListView *from = anyList();
    const PatchListView *to = anyList();
    QModelIndexList indexes;
    const int most = m_random.bounded(3) == 0 ? 5 : 1;
    for (int i = 0; i < most && anyRow(*from) >= 0; ++i) {
        const QModelIndex index = from->model()->index(anyRow(*from), 0);
        if (index.flags().testFlag(Qt::ItemIsDragEnabled) && !indexes.contains(index)) {
            indexes.append(index);
        }
    }
    if (indexes.isEmpty()) {
        return QStringLiteral("found nothing to drag");
    }
    DragOver drag(to->viewport(), from->model()->mimeData(indexes));
    std::ignore = drag.moveTo(anyPoint(*to));
    const QPoint point = anyPoint(*to);
    if (m_random.bounded(8) == 0) {
        drag.leave();
        return QStringLiteral("dragged away");
    }
    const bool isTaken = drag.dropAt(point);
    return QStringLiteral("dropped %1 rows of %2, first %3, on %4 at %5, taken: %6")
        .arg(indexes.size())
        .arg(from->accessibleName())
        .arg(indexes.first().row())
        .arg(to->accessibleName())
        .arg(point.y())
        .arg(isTaken);
}

QString UserActions::dropFile()
{
    const QString file = m_presets.anyFile(m_random);
    auto *data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(file)});
    DragOver drag(m_window.window.get(), data);
    const bool isTaken = drag.dropAt(m_window.window->rect().center());
    return QStringLiteral("dropped a file, taken: %1").arg(isTaken);
}

QString UserActions::startOver()
{
    std::ignore = settle();
    m_window.window->columns().library()->filter()->clear();
    WindowFixture::settle();
    if (choose(static_cast<int>(CommandId::SelectAll), true) && !choose(static_cast<int>(CommandId::Delete), true)) {
        return QStringLiteral("what is ticked cannot be deleted");
    }
    if (m_window.library.isMultiSel()) {
        m_window.libraryEditor.flipMultiSelection();
    }
    QApplication::setFont(usualFont());
    m_window.window->resize(usualSize);
    m_window.window->columns().setStartWidths(usualSize.width());
    m_window.content.setInverseTailBit(false);
    choose(static_cast<int>(CommandId::LightScheme), true);
    m_window.dialogs.answer = m_presets.startFile();
    choose(static_cast<int>(CommandId::Import), true);
    if (m_window.library.count() != 0
        || m_window.content.velgorContentPatchList().size() != PresetSupply::startCount()) {
        return QStringLiteral("everything was deleted and a list imported, but there are %1 patches and %2 slots")
            .arg(m_window.library.count())
            .arg(m_window.content.velgorContentPatchList().size());
    }
    WindowFixture::click(m_window.contentList(), 0);
    WindowFixture::key(m_window.contentList(), Qt::Key_A, Qt::ControlModifier);
    if (!choose(static_cast<int>(CommandId::KeepInLibrary), true)
        || m_window.library.count() != PresetSupply::startCount()) {
        return QStringLiteral("%1 patches were kept of a list of %2")
            .arg(m_window.library.count())
            .arg(PresetSupply::startCount());
    }
    WindowFixture::click(m_window.libraryList(), 0);
    WindowFixture::click(m_window.contentList(), 0);
    m_window.calls.calls.clear();
    m_window.dialogs.asked.clear();
    m_window.lines.take();
    QPixmapCache::clear();
    return {};
}

bool UserActions::choose(int command, bool isAccepted)
{
    QAction *action = m_window.window->commands().action(static_cast<CommandId>(command));
    if (!action->isEnabled()) {
        return false;
    }
    action->trigger();
    WindowFixture::settle();
    while (QMessageBox *box = message()) {
        answer(*box, isAccepted);
        WindowFixture::settle();
    }
    return true;
}
