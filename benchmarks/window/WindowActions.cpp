#include "WindowActions.h"

#include "CommentEdit.h"
#include "LibraryCheckDialog.h"
#include "LibraryContentMainView.h"
#include "SampleLibrary.h"
#include "ShownWidgets.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr int fewRounds = 7;
constexpr int manyRounds = 60;
constexpr qsizetype mostRemoved = 1000;

} // namespace

WindowActions::WindowActions(const LibraryDirectory &directory)
    : m_window(directory, 200ms)
{
    // As the application does.
    QObject::connect(m_window.window.get(), &ContentView::libraryLoaded, &m_window.storage,
        [this] { m_window.storage.startSweeping(); });
}

QList<WindowActions::Row> WindowActions::load()
{
    const QSignalSpy loaded(m_window.window.get(), &ContentView::libraryLoaded);
    ContentView &window = *m_window.window;
    const WindowClock::Round first = m_clock.measure(window, [&window] { window.show(); });
    const auto isLoaded = [&loaded] { return loaded.count() > 0; };
    QWidget &column = *window.columns().library();
    const WindowClock::Round rest = m_clock.measure(
        column, [&column] { column.update(); }, isLoaded);
    WindowFixture::settle();
    return {
        {QStringLiteral("window, first paint"), {first}}, {QStringLiteral("window, load in the background"), {rest}}};
}

QList<WindowActions::Row> WindowActions::use()
{
    filter();
    look();
    tick();
    order();
    edit();
    change();
    check();
    remove();
    return std::exchange(m_rows, {});
}

void WindowActions::add(const QString &name, int rounds, const WindowClock::Action &action,
    const WindowClock::Action &prepare, const WindowClock::Condition &isDone)
{
    Row row{name, {}};
    for (int round = 0; round < rounds; ++round) {
        if (prepare) {
            prepare();
        }
        WindowFixture::settle();
        row.rounds.append(m_clock.measure(list(), action, isDone));
    }
    WindowFixture::settle();
    m_rows.append(row);
}

void WindowActions::filter()
{
    const auto typeInto = [this](const QString &field, const QString &text, const QString &row) {
        auto *edit = ShownWidgets::named<QLineEdit>(*m_window.window, field);
        edit->setFocus();
        int round = 0;
        // To the end of the text and back to an empty field, over and over.
        const auto strike = [&] {
            const int place = round++ % static_cast<int>(2 * text.size());
            if (place < text.size()) {
                QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, text.mid(place, 1), Qt::NoModifier);
            } else {
                QTest::keyClick(edit, Qt::Key_Backspace);
            }
            // Where the same patches match, nothing would be painted that could be waited for.
            list().update();
        };
        add(QStringLiteral("window, first k") + row.sliced(QStringLiteral("window, k").size()), 1, strike);
        add(row, manyRounds, strike);
        edit->clear();
        WindowFixture::settle();
    };
    typeInto(QStringLiteral("Filter by name"), SampleLibrary::nameFragment(),
        QStringLiteral("window, keystroke in the name filter"));
    typeInto(QStringLiteral("Filter by comment"), QStringLiteral("bridge"),
        QStringLiteral("window, keystroke in the comment filter"));
}

void WindowActions::order()
{
    auto *button = ShownWidgets::named<QAbstractButton>(*m_window.window, QStringLiteral("Sort"));
    const auto sort = [button] { QTest::mouseClick(button, Qt::LeftButton); };
    add(QStringLiteral("window, sort by name"), fewRounds, sort, [this, sort] {
        while (m_window.library.inverseSort() != TripleBool::tripleFalse) {
            sort();
        }
    });
    add(QStringLiteral("window, restore the order"), fewRounds, sort, [this, sort] {
        while (m_window.library.inverseSort() != TripleBool::tripleNeutral) {
            sort();
        }
    });
}

void WindowActions::look()
{
    QScrollBar *bar = m_window.libraryList()->verticalScrollBar();
    const auto turnPage = [bar] {
        const bool isAtEnd = bar->value() == bar->maximum();
        bar->triggerAction(isAtEnd ? QAbstractSlider::SliderToMinimum : QAbstractSlider::SliderPageStepAdd);
    };
    add(QStringLiteral("window, scroll by a page"), manyRounds, turnPage);
    selectRow(0);
    add(QStringLiteral("window, select another row"), manyRounds,
        [this] { QTest::keyClick(m_window.libraryList(), Qt::Key_Down); });
}

void WindowActions::tick()
{
    const auto untick = [this] {
        if (m_window.library.isMultiSel()) {
            m_window.libraryEditor.flipMultiSelection();
        }
    };
    QAction *all = m_window.menuEntry(QStringLiteral("Select All"));
    add(
        QStringLiteral("window, tick all"), fewRounds, [all] { all->trigger(); }, untick);
    selectRow(0);
    QAction *one = m_window.menuEntry(QStringLiteral("Tick Library Patch"));
    add(QStringLiteral("window, tick one more when all are ticked"), manyRounds, [one] { one->trigger(); });
    untick();
    selectRow(0);
    QAction *similar = m_window.menuEntry(QStringLiteral("Find Similar Patches"));
    add(
        QStringLiteral("window, find similar patches"), fewRounds, [similar] { similar->trigger(); },
        [this, untick] {
            untick();
            selectRow(0);
        });
    untick();
}

void WindowActions::edit()
{
    selectRow(0);
    auto *comment = m_window.window->findChild<CommentEdit *>();
    comment->setFocus();
    const auto strike = [comment] { QTest::keyClick(comment, Qt::Key_X); };
    add(QStringLiteral("window, keystroke in a comment"), manyRounds, strike);
    const auto saved = [this] { return isSaved(); };
    waitForSave();
    add(QStringLiteral("window, edit a comment and save in the background"), fewRounds, strike, {}, saved);
}

void WindowActions::change()
{
    QAction *move = m_window.menuEntry(QStringLiteral("Move Library Patch Down"));
    add(
        QStringLiteral("window, move a patch down"), fewRounds, [move] { move->trigger(); }, [this] { selectRow(0); });
    QAction *duplicate = m_window.menuEntry(QStringLiteral("Duplicate Patch"));
    add(
        QStringLiteral("window, duplicate a patch"), fewRounds, [duplicate] { duplicate->trigger(); },
        [this] { selectRow(0); });
    waitForSave();
}

void WindowActions::check()
{
    constexpr int rounds = 3;
    const auto dialog = [this] { return m_window.window->findChild<LibraryCheckDialog *>(); };
    const auto close = [dialog] { delete dialog(); };
    QAction *check = m_window.menuEntry(QStringLiteral("Check Library..."));
    const auto open = [this, check] {
        check->trigger();
        list().update();
    };
    add(QStringLiteral("window, check the library"), rounds, open, close, [dialog] {
        return ShownWidgets::labels(*dialog()).filter(QStringLiteral("Checking the library folder")).isEmpty();
    });
    close();
}

void WindowActions::remove()
{
    const qsizetype count = std::min(mostRemoved, m_window.library.count() / 10);
    constexpr int rounds = 3;
    QAbstractButton *yes = nullptr;
    const auto prepare = [this, count, &yes] {
        waitForSave();
        MultiSelections ticks;
        // Here and there, so that not one block of rows goes.
        const qsizetype step = m_window.library.count() / count;
        for (qsizetype i = 0; i < count; ++i) {
            ticks.multiSelections.insert(m_window.library.patches().at(i * step).id(), true);
        }
        m_window.library.setIsMultiSel(true);
        m_window.library.setMultiSelections(ticks);
        (void)m_window.press(QStringLiteral("Delete"));
        WindowFixture::settle();
        yes = ShownWidgets::named<QAbstractButton>(*m_window.window, QStringLiteral("Yes"));
    };
    const auto accept = [&yes] { QTest::mouseClick(yes, Qt::LeftButton); };
    qsizetype left = m_window.library.count();
    add(QStringLiteral("window, delete %1 ticked").arg(count), rounds, accept, prepare, [this, &left, count] {
        // The files go beside the window, which is to answer meanwhile.
        const bool isDone = m_window.library.count() == left - count && !m_window.storage.isSaving();
        left = isDone ? left - count : left;
        return isDone;
    });
    waitForSave();
}

bool WindowActions::isSaved() const
{
    return !m_window.storage.hasUnsavedChanges() && !m_window.storage.waitingToSave();
}

void WindowActions::waitForSave() const
{
    if (!QTest::qWaitFor([this] { return isSaved(); }, 60'000)) {
        qFatal("a save did not end");
    }
    WindowFixture::settle();
}

void WindowActions::selectRow(int row) const
{
    LibraryListView *list = m_window.libraryList();
    list->setFocus();
    list->setCurrentIndex(list->model()->index(row, 0));
    WindowFixture::settle();
}
