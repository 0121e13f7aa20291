#include "DiagnosticRecorder.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "TestLibraries.h"
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

const QString libraryFile = LibraryFileNames::libraryFile();

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
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QRandomGenerator random(12);
        QList<VelgorPatch> patches;
        for (int i = 0; i < patchesInStore; ++i) {
            VelgorPatch patch = TestLibraries::patch(QString::number(i), static_cast<quint64>(i), i + 1);
            patch.date.seconds = randomSeconds(random);
            patches.append(patch);
        }
        auto library = std::make_unique<VelgorLibrary>(patches, std::nullopt);
        QByteArray firstText;
        for (int round = 0; round < rounds; ++round) {
            travel(round);
            LibraryStorageManager manager(directory.path());
            manager.save(*library);
            QVERIFY(!manager.writeError());
            const QByteArray text = directory.read(libraryFile);
            firstText = round == 0 ? text : firstText;
            QCOMPARE(text, firstText);
            travel(round + 3);
            library = libraryOf(manager.decodeLibrary());
            QVERIFY(library && manager.droppedPatches().isEmpty());
            QVERIFY(areIdentical(library->patches(), patches));
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
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QStringList files = directory.files();
        for (const QString &name : files) {
            setFileTime(directory, name, inYears(name == libraryFile ? libraryYears : patchYears));
        }
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library && areIdentical(library->patches(), three().patches));
        VelgorPatch changed = library->patches().first();
        changed.name = QStringLiteral("Renamed");
        changed.comment = QStringLiteral("new");
        library->update(changed);
        manager.save(*library);
        QVERIFY(!manager.writeError());
        QVERIFY(datedCopies(directory).isEmpty());
        const QList<VelgorPatch> stored = loaded(directory);
        QVERIFY(areIdentical(stored, library->patches()));
        QCOMPARE(directory.files().size(), files.size());
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
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray whole = directory.read(libraryFile);
        directory.write(LibraryFileNames::libraryCopy(), whole);
        directory.write(libraryFile, whole.first(whole.size() / 2));
        setFileTime(directory, libraryFile, inYears(libraryYears));
        setFileTime(directory, LibraryFileNames::libraryCopy(), inYears(copyYears));
        QVERIFY(areIdentical(loaded(directory), three().patches));
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
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        constexpr int former = 25;
        for (int i = 0; i < former; ++i) {
            directory.write(datedName(year, i), "kept before");
        }
        QFile::remove(directory.filePath(QStringLiteral("lib-Lead.42.prst")));
        const QByteArray old = directory.read(libraryFile);
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        manager.save(*library);
        QCOMPARE(manager.keptFiles().size(), 1);
        QFile kept(manager.keptFiles().constFirst());
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), old);
        // None goes before it is thirty days old.
        QCOMPARE(datedCopies(directory).size(), year > 2900 ? former + 1 : keptFileLimit);
        // A later save that has nothing to keep prunes nothing.
        const QStringList before = datedCopies(directory);
        manager.save(*library);
        QCOMPARE(datedCopies(directory), before);
    }

    static void twoCopiesOfOneSecondAreTwoFiles()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QByteArrayList damaged;
        for (int i = 0; i < keptFileLimit; ++i) {
            damaged.append("{ \"" + QByteArray::number(i));
            directory.write(libraryFile, damaged.last());
            LibraryStorageManager manager(directory.path());
            QVERIFY(!manager.decodeLibrary());
            manager.save(VelgorLibrary(three().patches, std::nullopt));
        }
        QByteArrayList kept;
        for (const QString &name : datedCopies(directory)) {
            kept.append(directory.read(name));
        }
        std::sort(kept.begin(), kept.end());
        std::sort(damaged.begin(), damaged.end());
        QCOMPARE(kept, damaged);
    }
};

VELGOR_TEST(TestTime)
#include "tst_Time.moc"
