#include "Commands.h"
#include "CommentEdit.h"
#include "OneRefresh.h"
#include "ShownWidgets.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>

namespace {

using Action = void (*)(WindowFixture &window);

QString namesOf(QChar letter, int count)
{
    QStringList names;
    for (int i = count - 1; i >= 0; --i) {
        names.append(letter + QString::number(i));
    }
    return names.join(u' ');
}

/// What the library's list announces while an action runs, as "2 changed, 1 reset".
class Announcements : public QObject {
public:
    explicit Announcements(const WindowFixture &window)
        : m_model(*window.libraryList()->model())
    {
        const QList<OneRefresh *> all = window.window->findChildren<OneRefresh *>();
        for (const OneRefresh *const each : all) {
            const QString owner = QString::fromLatin1(each->parent()->metaObject()->className());
            connect(each, &OneRefresh::done, this, [this, owner] { ++m_refreshes[owner]; });
        }
        for (QWidget *const list : {window.contentList()->viewport(), window.libraryList()->viewport()}) {
            list->installEventFilter(this);
        }
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++m_refreshes[QString::fromLatin1(watched->parent()->metaObject()->className())];
        }
        return QObject::eventFilter(watched, event);
    }

    [[nodiscard]] QString ofTheList() const
    {
        QStringList texts;
        for (const auto &[spy, name] :
            {std::pair(&m_inserted, "inserted"), std::pair(&m_removed, "removed"), std::pair(&m_moved, "moved"),
                std::pair(&m_changed, "changed"), std::pair(&m_reordered, "reordered"), std::pair(&m_reset, "reset")}) {
            if (spy->count() > 0) {
                texts.append(QStringLiteral("%1 %2").arg(spy->count()).arg(QLatin1String(name)));
            }
        }
        return texts.join(QStringLiteral(", "));
    }
    /// How often each part of the window was brought up to date, or painted.
    [[nodiscard]] const QMap<QString, int> &refreshes() const { return m_refreshes; }

private:
    QAbstractItemModel &m_model;
    QSignalSpy m_inserted{&m_model, &QAbstractItemModel::rowsInserted};
    QSignalSpy m_removed{&m_model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy m_moved{&m_model, &QAbstractItemModel::rowsMoved};
    QSignalSpy m_changed{&m_model, &QAbstractItemModel::dataChanged};
    QSignalSpy m_reordered{&m_model, &QAbstractItemModel::layoutChanged};
    QSignalSpy m_reset{&m_model, &QAbstractItemModel::modelReset};
    QMap<QString, int> m_refreshes;
};

void trigger(const WindowFixture &window, const char *entry)
{
    window.menuEntry(QLatin1String(entry))->trigger();
    WindowFixture::settle();
}

void tickEverySecond(WindowFixture &window)
{
    MultiSelections ticks;
    for (qsizetype row = 0; row < window.library.patches().size(); row += 2) {
        ticks.multiSelections.insert(window.library.patches().at(row).id(), true);
    }
    window.library.setIsMultiSel(true);
    window.library.setMultiSelections(ticks);
    WindowFixture::settle();
}

void select(WindowFixture &window)
{
    window.library.setSelection(window.library.patches().at(1).id());
    WindowFixture::settle();
}

} // namespace

class TestWindowNotifications : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anActionIsAnnouncedAndShownOnceHoweverManyItIsAbout_data()
    {
        QTest::addColumn<Action>("prepare");
        QTest::addColumn<Action>("act");
        QTest::addColumn<QString>("announced");
        const Action nothing = [](WindowFixture &) {};
        const Action selectOne = [](WindowFixture &window) { select(window); };
        const Action tickMany = [](WindowFixture &window) { tickEverySecond(window); };
        QTest::newRow("keystroke in the filter") << nothing << Action([](WindowFixture &window) {
            QTest::keyClick(
                ShownWidgets::named<QLineEdit>(*window.window, QStringLiteral("Filter by name")), Qt::Key_2);
        }) << "1 reset";
        QTest::newRow("sort") << nothing
                              << Action([](WindowFixture &window) { (void)window.press(QStringLiteral("Sort")); })
                              << "1 reordered";
        QTest::newRow("select a patch") << nothing << selectOne << "";
        QTest::newRow("tick all") << nothing << Action([](WindowFixture &window) { trigger(window, "Select All"); })
                                  << "1 changed";
        QTest::newRow("tick one more") << tickMany << Action([](WindowFixture &window) {
            window.libraryEditor.flipTick(window.library.patches().at(1).id());
        }) << "1 changed";
        QTest::newRow("find similar patches")
            << selectOne << Action([](WindowFixture &window) { trigger(window, "Find Similar Patches"); })
            << "1 changed";
        QTest::newRow("delete every second patch")
            << tickMany << Action([](WindowFixture &window) { window.libraryEditor.deleteSelected(); })
            << "1 changed, 1 reset";
        QTest::newRow("duplicate") << selectOne
                                   << Action([](WindowFixture &window) { trigger(window, "Duplicate Patch"); })
                                   << "1 inserted";
        QTest::newRow("move a patch") << selectOne << Action([](WindowFixture &window) {
            window.libraryEditor.move(window.library.patches().at(1).id(), 0);
        }) << "1 moved";
        QTest::newRow("keystroke in the comment") << selectOne << Action([](WindowFixture &window) {
            QTest::keyClick(window.window->findChild<CommentEdit *>(), Qt::Key_X);
        }) << "1 changed";
        QTest::newRow("keep the slots of a list") << nothing << Action([](WindowFixture &window) {
            QList<TransferablePatch> slots;
            for (const VelgorContentPatch &slot : window.content.velgorContentPatchList()) {
                slots.append(TransferablePatch::ofSlot(slot));
            }
            window.libraryEditor.drop(slots, 0);
        }) << "1 inserted";
    }

    void anActionIsAnnouncedAndShownOnceHoweverManyItIsAbout()
    {
        QFETCH(const Action, prepare);
        QFETCH(const Action, act);
        for (const int count : {6, 60}) {
            const auto window = WindowFixture::shown(namesOf(u'P', count), namesOf(u'S', count));
            prepare(*window);
            const Announcements announcements(*window);
            act(*window);
            WindowFixture::settle();
            QTEST(announcements.ofTheList(), "announced");
            QVERIFY(announcements.refreshes().contains(QStringLiteral("Commands")));
            const QMap<QString, int> refreshes = announcements.refreshes();
            for (auto part = refreshes.begin(); part != refreshes.end(); ++part) {
                QVERIFY2(part.value() == 1, qPrintable(QStringLiteral("%1: %2").arg(part.key()).arg(part.value())));
            }
        }
    }
};

VELGOR_WIDGET_TEST(TestWindowNotifications)
#include "tst_WindowNotifications.moc"
