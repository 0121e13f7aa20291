#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTest>

#include <bit>
#include <clocale>
#include <cmath>
#include <ctime>

using namespace TestLibraries;

namespace {

constexpr int roundTrips = 1'000'000;
constexpr int rounds = 100;
constexpr int patchesInStore = 40;
/// Old library files that stay.
constexpr qsizetype keptFileLimit = 20;

/// Any finite number that there is, and the ones that dates are made of more often.
double randomSeconds(QRandomGenerator &random)
{
    switch (random.bounded(4)) {
    case 0:
        return random.generateDouble() * 1e9;
    case 1:
        return static_cast<double>(random.bounded(2'000'000'000));
    case 2:
        return static_cast<double>(random.bounded(2'000'000'000U)) / 1000.0 - 978'307'200.0;
    default:
        break;
    }
    double any = std::bit_cast<double>(random.generate64());
    while (!std::isfinite(any)) {
        any = std::bit_cast<double>(random.generate64());
    }
    return any;
}

bool haveSameBits(double a, double b)
{
    return std::bit_cast<quint64>(a) == std::bit_cast<quint64>(b);
}

/// As if the user had gone elsewhere: time zone, and how numbers and dates are written there.
void travel(int round)
{
    static constexpr std::array zones{"UTC", "America/St_Johns", "Asia/Kathmandu", "Pacific/Kiritimati",
        "Pacific/Pago_Pago", "Europe/Paris", ":no/such/zone", "XYZ-25:59:59"};
    static constexpr std::array languages{"C", "de_DE", "ar_EG", "fa_IR", "hi_IN", "fr_CH", "tr_TR"};
    const auto turn = static_cast<std::size_t>(round);
    qputenv("TZ", zones.at(turn % zones.size()));
    tzset();
    const char *const language = languages.at(turn % languages.size());
    QLocale::setDefault(QLocale(QString::fromLatin1(language)));
    // Where the system has it; the decimal comma is what matters.
    std::setlocale(LC_ALL, (QByteArray(language) + ".UTF-8").constData());
}

QDateTime inYears(int years)
{
    return QDateTime::currentDateTimeUtc().addYears(years);
}

void setFileTime(const LibraryDirectory &directory, const QString &name, const QDateTime &time)
{
    QFile file(directory.filePath(name));
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

/// A name that a save of that year would give to the library file that it keeps.
QString datedName(int year, int number = 0)
{
    return QStringLiteral("velgorlibrary-%1-%2.json")
        .arg(QStringLiteral("%1").arg(year, 4, 10, QChar(u'0')) + QStringLiteral("0101T000000"))
        .arg(number, 2, 10, QChar(u'0'));
}

} // namespace

class TestTime : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void cleanup() { travel(0); }

    static void anyIdAndDateComeBackToTheLastBit()
    {
        constexpr int atOnce = 1000;
        QRandomGenerator random(11);
        for (int done = 0; done < roundTrips; done += atOnce) {
            travel(done / atOnce);
            LibraryState written;
            for (int i = 0; i < atOnce; ++i) {
                VelgorPatch patch = TestPatches::stored(random.generate64(), QString());
                patch.date.seconds = randomSeconds(random);
                written.patches.append(patch);
            }
            const auto read = LibraryJson::decode(LibraryJson::encode(written));
            QVERIFY(read && read->patches.size() == atOnce);
            for (int i = 0; i < atOnce; ++i) {
                const double expected = written.patches.at(i).date.seconds;
                QVERIFY2(haveSameBits(read->patches.at(i).date.seconds, expected),
                    qPrintable(QString::number(expected, 'g', 17)));
                QCOMPARE(read->patches.at(i).id(), written.patches.at(i).id());
            }
        }
    }

    static void datesStandThroughAnyNumberOfSaves()
    {
        StoreFixture store;
        QRandomGenerator random(12);
        QList<VelgorPatch> patches;
        for (int i = 0; i < patchesInStore; ++i) {
            VelgorPatch patch = TestLibraries::patch(QString::number(i), static_cast<quint64>(i), i + 1);
            patch.date.seconds = randomSeconds(random);
            patches.append(patch);
        }
        store.library.adopt({patches, std::nullopt});
        QByteArray firstText;
        for (int round = 0; round < rounds; ++round) {
            travel(round);
            LibraryStorageManager manager(store.path());
            manager.save(store.library);
            QVERIFY(!manager.writeError());
            const QByteArray text = store.read(libraryFile);
            firstText = round == 0 ? text : firstText;
            QCOMPARE(text, firstText);
            travel(round + 3);
            const auto read = manager.decodeLibrary();
            QVERIFY(read && manager.droppedPatches().isEmpty());
            store.library.adopt(*read);
            QVERIFY(areIdentical(store.library.patches(), patches));
        }
    }

    static void fileTimesDecideNothing_data()
    {
        QTest::addColumn<int>("libraryYears");
        QTest::addColumn<int>("patchYears");
        QTest::newRow("the clock went back") << 20 << 20;
        QTest::newRow("the clock went ahead") << -40 << -40;
        QTest::newRow("patch files newer than the library file") << -10 << 10;
        QTest::newRow("library file newer than the patch files") << 10 << -10;
    }
    static void fileTimesDecideNothing()
    {
        QFETCH(const int, libraryYears);
        QFETCH(const int, patchYears);
        StoreFixture store(three());
        const QStringList files = store.files();
        for (const QString &name : files) {
            setFileTime(store, name, inYears(name == libraryFile ? libraryYears : patchYears));
        }
        QVERIFY(store.start() && areIdentical(store.library.patches(), three().patches));
        store.edit(42, [](VelgorPatch &patch) {
            patch.name = QStringLiteral("Renamed");
            patch.comment = QStringLiteral("new");
        });
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
        QVERIFY(store.datedCopies().isEmpty());
        QVERIFY(store.holds(store.library.patches()));
        QCOMPARE(store.files().size(), files.size());
    }

    static void copyBesideTheLibraryFileServesWhateverTheClockSays_data()
    {
        QTest::addColumn<int>("libraryYears");
        QTest::addColumn<int>("copyYears");
        QTest::newRow("copy from the past") << 0 << -30;
        QTest::newRow("copy from the future") << 0 << 30;
        QTest::newRow("library file from the future") << 30 << 0;
    }
    static void copyBesideTheLibraryFileServesWhateverTheClockSays()
    {
        QFETCH(const int, libraryYears);
        QFETCH(const int, copyYears);
        StoreFixture store(three());
        const QByteArray whole = store.read(libraryFile);
        store.write(libraryCopy, whole);
        store.write(libraryFile, whole.first(whole.size() / 2));
        setFileTime(store, libraryFile, inYears(libraryYears));
        setFileTime(store, libraryCopy, inYears(copyYears));
        QVERIFY(store.holds(three().patches));
    }

    static void copyKeptJustNowStaysAmongCopiesFromTheFuture_data()
    {
        QTest::addColumn<int>("year");
        QTest::newRow("names from the future") << 2999;
        QTest::newRow("names from the past") << 1999;
    }
    static void copyKeptJustNowStaysAmongCopiesFromTheFuture()
    {
        QFETCH(const int, year);
        StoreFixture store(three());
        constexpr int former = 25;
        for (int i = 0; i < former; ++i) {
            store.write(datedName(year, i), "kept before");
        }
        QFile::remove(store.filePath(QStringLiteral("lib-Lead.42.prst")));
        const QByteArray old = store.read(libraryFile);
        QVERIFY(store.start());
        store.storage.save(store.library);
        QCOMPARE(store.storage.keptFiles().size(), 1);
        QFile kept(store.storage.keptFiles().constFirst());
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), old);
        // None goes before it is thirty days old.
        QCOMPARE(store.datedCopies().size(), year > 2900 ? former + 1 : keptFileLimit);
        // A later save that has nothing to keep prunes nothing.
        const QStringList before = store.datedCopies();
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies(), before);
    }

    static void twoCopiesOfOneSecondAreTwoFiles()
    {
        StoreFixture store;
        QByteArrayList damaged;
        for (int i = 0; i < keptFileLimit; ++i) {
            damaged.append("{ \"" + QByteArray::number(i));
            store.write(libraryFile, damaged.last());
            LibraryStorageManager manager(store.path());
            QVERIFY(!manager.decodeLibrary());
            manager.save(VelgorLibrary(three().patches, std::nullopt));
        }
        QByteArrayList kept;
        for (const QString &name : store.datedCopies()) {
            kept.append(store.read(name));
        }
        std::sort(kept.begin(), kept.end());
        std::sort(damaged.begin(), damaged.end());
        QCOMPARE(kept, damaged);
    }
};

VELGOR_TEST(TestTime)
#include "tst_Time.moc"
