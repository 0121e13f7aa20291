#include "DetailFixture.h"
#include "EmptyDetails.h"
#include "LookMeasures.h"
#include "PlaceBadges.h"
#include "PresetsVersionManager.h"
#include "TestProgram.h"
#include "VelgorStyle.h"

#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace ShownWidgets;
using Flag = bool VelgorPatch::*;
Q_DECLARE_METATYPE(Flag)

namespace {

const QString importHint = QStringLiteral(". Import a preset file (.prst) into the left section of the window, then "
                                          "drag patches into the library in the center of the window.");

} // namespace

class TestVelgorPatchDetailView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(new VelgorStyle);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    }

    void init() { PresetsVersionManager::reset(); }

    void everyTextStandsInItsPlace()
    {
        VelgorPatch patch =
            TestPatches::imported(QStringLiteral("Night Bus Lead, the long one"), 1, TestRecords::userIR(7), "V1.21")
                .withId(10174403265523189047U);
        patch.records->headerData.tailBit = 0x5A;
        patch.date.seconds = 700'000'000;
        DetailFixture details({patch});
        details.content.createNew(patch);
        details.content.setLimit(3);
        details.content.adjust(std::nullopt);
        DetailFixture::settle();
        const QString hash = QStringLiteral("%1").arg(*patch.soundHash(), 16, 16, QLatin1Char('0')).toUpper();
        const QStringList expected{QStringLiteral("Usage: "), QStringLiteral("Style: "), QStringLiteral("Comment:"),
            QStringLiteral("Set as default patch to fill your Velgor Content when starting new presets file"),
            QStringLiteral("Velgor name: "), QStringLiteral("Night Bus Lead, "), QStringLiteral("Imported: "),
            QLocale().toString(patch.date.toDateTime(), QLocale::ShortFormat), QStringLiteral("User IR"),
            QStringLiteral("Used in 3 positions"), QStringLiteral("Version: "), QStringLiteral("V1.21"),
            QStringLiteral("Patch & IR: "),
            QStringList{hash.mid(0, 4), hash.mid(4, 4), hash.mid(8, 4), hash.mid(12, 4)}.join(u' '),
            QStringLiteral("Tailbit: "), QStringLiteral("0x5A"), QStringLiteral("Id: "),
            QStringLiteral("10174403265523189047")};
        QCOMPARE(labels(details.view), expected);
        QCOMPARE(details.name()->text(), patch.name);
    }

    void withoutPresetDataThereAreDashes()
    {
        VelgorPatch patch = TestPatches::stored(9, QStringLiteral("Lead"));
        patch.version = QStringLiteral("1.2").append(QChar::Null);
        DetailFixture details({patch});
        const QStringList shown = labels(details.view);
        QCOMPARE(shown.mid(shown.indexOf(QStringLiteral("Version: "))),
            (QStringList{QStringLiteral("Version: "), QStringLiteral("1.2"), QStringLiteral("Patch & IR: "),
                QStringLiteral("–"), QStringLiteral("Tailbit: "), QStringLiteral("–"), QStringLiteral("Id: "),
                QStringLiteral("9")}));
        QVERIFY(shown.contains(QStringLiteral("Stock IR")));
        QVERIFY(shown.contains(QStringLiteral("Not used")));
    }

    void nameOfTheUnitHasSixteenCharacters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("unitName");
        QTest::newRow("0") << QString() << QString();
        QTest::newRow("16") << QString(16, u'n') << QString(16, u'n');
        QTest::newRow("17") << QString(17, u'n') << QString(16, u'n');
        QTest::newRow("80") << QString(80, u'n') << QString(16, u'n');
        QTest::newRow("17 beyond the basic plane")
            << QStringLiteral("\U0001F3B8").repeated(17) << QStringLiteral("\U0001F3B8").repeated(16);
        QTest::newRow("markup") << QStringLiteral("<b>x</b>") << QStringLiteral("<b>x</b>");
    }

    void nameOfTheUnitHasSixteenCharacters()
    {
        QFETCH(const QString, name);
        DetailFixture details;
        details.changeElsewhere(name, {});
        const QStringList shown = labels(details.view);
        QTEST(shown.at(shown.indexOf(QStringLiteral("Velgor name: ")) + 1), "unitName");
        const QList<QLabel *> all = details.view.findChildren<QLabel *>();
        for (const QLabel *label : all) {
            QVERIFY(label->text() != name || label->textFormat() == Qt::PlainText || name.isEmpty());
        }
    }

    void withoutSelectionThereIsATextAlone()
    {
        DetailFixture details;
        details.library.setSelection(std::nullopt);
        DetailFixture::settle();
        QCOMPARE(labels(details.view), QStringList{QStringLiteral("Select item in library to see details")});
        QVERIFY(details.name() == nullptr);
        details.library.setSelection(4711);
        QCOMPARE(labels(details.view), QStringList{QStringLiteral("Select item in library to see details")});
    }

    void anEmptyLibraryHasItsOwnText()
    {
        DetailFixture details({TestPatches::imported(QStringLiteral("Lead"))});
        details.library.deletePatch(details.patch().id());
        QCOMPARE(labels(details.view), QStringList{QStringLiteral("Empty library") + importHint});
        DetailFixture none(QList<VelgorPatch>{});
        QCOMPARE(labels(none.view), QStringList{QStringLiteral("Empty library") + importHint});
    }

    void thePlaceholderHasItsOwnTextAndRefusesEdits()
    {
        DetailFixture details({TestPatches::imported(QStringLiteral("Lead"))});
        QLineEdit *name = details.name();
        details.library.deletePatch(details.patch().id());
        details.select(0);
        QCOMPARE(labels(details.view), QStringList{QStringLiteral("Nothing in library") + importHint});
        details.view.focusName();
        name->setText(QStringLiteral("Mine"));
        QCOMPARE(details.patch().name, QStringLiteral("Empty library"));
        QCOMPARE(details.callbacks.changedIds, QList<quint64>());
    }

    void aToggleFlipsItsFlag_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<Flag>("flag");
        QTest::newRow("Guitar") << QStringLiteral("Guitar") << &VelgorPatch::guitar;
        QTest::newRow("Bass") << QStringLiteral("Bass") << &VelgorPatch::bass;
        QTest::newRow("Rythm") << QStringLiteral("Rythm") << &VelgorPatch::rythm;
        QTest::newRow("Solo") << QStringLiteral("Solo") << &VelgorPatch::solo;
        QTest::newRow("Clean") << QStringLiteral("Clean") << &VelgorPatch::clean;
        QTest::newRow("Crunch") << QStringLiteral("Crunch") << &VelgorPatch::crunch;
        QTest::newRow("Drive") << QStringLiteral("Drive") << &VelgorPatch::drive;
        QTest::newRow("Higain") << QStringLiteral("Higain") << &VelgorPatch::higain;
    }

    void aToggleFlipsItsFlag()
    {
        QFETCH(const QString, label);
        QFETCH(const Flag, flag);
        DetailFixture details;
        VelgorPatch expected = details.patch();
        expected.*flag = true;
        press(details.view, label);
        QVERIFY(TestPatches::isIdentical(details.patch(), expected));
        auto *button = named<QAbstractButton>(details.view, label);
        QVERIFY(button->isCheckable() && button->isChecked());
        details.select(1);
        catchUp();
        QVERIFY(!button->isChecked());
        details.select(0);
        catchUp();
        QVERIFY(button->isChecked());
        press(details.view, label);
        QVERIFY(!(details.patch().*flag));
        QCOMPARE(details.callbacks.changedIds.size(), 2);
    }

    void slotsThatHoldThePatchFollow()
    {
        DetailFixture details;
        details.content.createNew(details.patch(1));
        details.content.setPatch(details.patch(0), 7);
        press(details.view, QStringLiteral("Crunch"));
        QVERIFY(details.content.velgorContentPatchList().at(7).patch.crunch);
        QVERIFY(!details.content.velgorContentPatchList().at(8).patch.crunch);
    }

    void placesAreLookedUpOnceATurn()
    {
        DetailFixture details;
        details.content.createNew(details.patch(0));
        DetailFixture::settle();
        QVERIFY(labels(details.view).contains(QStringLiteral("Used in 99 positions")));
        details.callbacks.lookUps = 0;
        press(details.view, QStringLiteral("Crunch"));
        details.select(1);
        QCOMPARE(details.callbacks.lookUps, 0);
        DetailFixture::settle();
        QCOMPARE(details.callbacks.lookUps, 1);
        QVERIFY(labels(details.view).contains(QStringLiteral("Not used")));
        details.content.setPatch(details.patch(1), 5);
        DetailFixture::settle();
        QVERIFY(labels(details.view).contains(QStringLiteral("Used in 1 position")));
        details.content.move(5, 0);
        DetailFixture::settle();
        QVERIFY(named<QAbstractButton>(details.view, QStringLiteral("Go to slot 1.1")) != nullptr);
    }

    void placesHaveTheirRoomAtOnce()
    {
        DetailFixture details;
        details.content.createNew(details.patch(0));
        catchUp();
        const auto *places = details.view.findChild<PlaceBadges *>();
        const int oneLine = PlaceBadges(nullptr).heightForWidth(places->width());
        QVERIFY(places->height() > oneLine);
        QCOMPARE(places->height(), places->heightForWidth(places->width()));
    }

    void theFirstVersionShownIsNumberOne()
    {
        const DetailFixture none(QList<VelgorPatch>{});
        const DetailFixture details;
        QCOMPARE(PresetsVersionManager::versionId(details.patch().version), 1);
    }

    void aBadgeLeadsToItsSlot()
    {
        DetailFixture details;
        details.content.createNew(details.patch(1));
        details.content.setPatch(details.patch(0), 98);
        DetailFixture::settle();
        QSignalSpy spy(&details.view, &VelgorPatchDetailView::placeActivated);
        press(details.view, QStringLiteral("Go to slot 33.3"));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.first().first().toInt(), 98);
    }

    void everyControlHasAName()
    {
        DetailFixture details;
        details.content.createNew(details.patch(0));
        DetailFixture::settle();
        QStringList names;
        const QList<QWidget *> all = details.view.findChildren<QWidget *>();
        for (QWidget *widget : all) {
            if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus) {
                QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
                const QString name = interface->text(QAccessible::Name);
                QVERIFY2(!name.isEmpty(), widget->metaObject()->className());
                names.append(QStringLiteral("%1 %2").arg(interface->role()).arg(name));
            }
        }
        QCOMPARE(names.removeDuplicates(), 0);
    }

    void nothingIsEverScrolledSideways_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        for (const int width : {0, 340, 440, 460, 542, 800, 1600}) {
            for (const int height : {200, 640, 1200}) {
                QTest::addRow("%d by %d", width, height) << width << height;
            }
        }
    }

    void nothingIsEverScrolledSideways()
    {
        QFETCH(const int, width);
        QFETCH(const int, height);
        DetailFixture details;
        details.content.createNew(details.patch(0));
        details.changeElsewhere(QString(80, u'W'), QString(200, u'W'));
        details.view.resize(std::max(width, details.view.minimumSizeHint().width()), height);
        DetailFixture::settle();
        const auto *area = details.view.findChild<QScrollArea *>();
        QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
        QVERIFY(area->widget()->width() <= area->viewport()->width());
        const auto left = [&](const QWidget *widget) { return widget->mapTo(&details.view, QPoint(0, 0)).x(); };
        const int right = left(details.comment()) + details.comment()->width();
        const auto *lastToggle = named<QAbstractButton>(details.view, QStringLiteral("Higain"));
        QCOMPARE(left(lastToggle) + lastToggle->width() - 3, right);
        // Nothing moves when the vertical bar appears: it stands in the padding.
        const int padding = left(details.comment()) < 24 ? 16 : 24;
        QCOMPARE(right, std::min(details.view.width() - padding, padding + 640));
        QCOMPARE(details.comment()->horizontalScrollBar()->maximum(), 0);
        QVERIFY(lastToggle->width() >= lastToggle->sizeHint().width());
    }

    void aSwitchOfTheSchemeLeavesNoColourBehind()
    {
        VelgorPatch patch = TestPatches::imported(QStringLiteral("Lead"), 1, TestRecords::userIR(7));
        patch.guitar = patch.rythm = patch.drive = true;
        patch.comment = QStringLiteral("text");
        const auto picture = [&patch](bool startsDark) {
            DetailFixture details({patch});
            applyLook(startsDark);
            details.callbacks.setDefaultPatch(patch.id());
            details.content.createNew(patch);
            details.library.setSelection(std::nullopt);
            details.select(0);
            details.view.setFocusPolicy(Qt::StrongFocus);
            details.view.setFocus();
            DetailFixture::settle();
            (void)details.view.grab();
            applyLook(true);
            DetailFixture::settle();
            return details.view.grab().toImage();
        };
        QCOMPARE(picture(false), picture(true));
    }

    void theHintKeepsItsDistanceFromTheEdgeAboveIt()
    {
        QWidget window;
        window.resize(600, 400);
        EmptyDetails hint(&window);
        // Below the library, where it would stand above its own place.
        hint.setGeometry(0, 300, 600, 100);
        hint.setText(QStringLiteral("Nothing selected"), {});
        window.show();
        DetailFixture::settle();
        QVERIFY(hint.findChild<QLabel *>()->y() >= LookMeasures::gap);
    }
};

VELGOR_WIDGET_TEST(TestVelgorPatchDetailView)
#include "tst_VelgorPatchDetailView.moc"
