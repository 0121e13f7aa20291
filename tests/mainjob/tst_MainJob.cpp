#include "SPresetFile.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Run {
    int status = -1;
    QByteArray output;
    QByteArray errors;

    [[nodiscard]] QJsonDocument json() const { return QJsonDocument::fromJson(output); }
};

/// A placed patch: the slot's position and the name under which it was imported.
struct Placed {
    const char *position;
    const char *name;
};

constexpr std::array placedPatches{Placed{"1.1", "Warm Jazz Box"}, Placed{"1.2", "Blues Breakup"},
    Placed{"1.3", "Singing Lead"}, Placed{"2.1", "Café Chorus"}, Placed{"2.2", "Edge of Dawn"},
    Placed{"2.3", "Stadium Solo"}, Placed{"3.1", "Tight Riff"}, Placed{"3.2", "Drop C Chug"},
    Placed{"3.3", "Liquid Solo"}, Placed{"4.1", "Clean/Crunch A"}, Placed{"5.1", "東京の夜"},
    Placed{"33.3", "Dub Deep"}};
constexpr qsizetype slotCount = 99;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString sample(const char *name)
{
    return QStringLiteral(VELGOR_SAMPLES "/") + QLatin1String(name);
}

QStringList texts(const QJsonArray &objects, const char *key)
{
    QStringList result;
    for (const QJsonValue &object : objects) {
        result.append(object[QLatin1String(key)].toString());
    }
    return result;
}

QStringList setFlags(const QJsonObject &patch)
{
    QStringList flags;
    for (const char *flag : {"guitar", "bass", "clean", "crunch", "drive", "higain", "rythm", "solo"}) {
        if (patch[QLatin1String(flag)].toBool()) {
            flags.append(QLatin1String(flag));
        }
    }
    return flags;
}

} // namespace

/// The way of a list from import to export, each step a run of the program itself.
class TestMainJob : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        const Run listed = run({QStringLiteral("list"), sample("demo.prst"), QStringLiteral("--json")});
        QCOMPARE(listed.status, 0);
        m_demo = listed.json().object();
        for (const QJsonValue &patch : m_demo[u"patches"].toArray()) {
            m_ids.insert(patch[u"name"].toString(), patch[u"id"].toString());
        }
        QCOMPARE(m_ids.size(), slotCount);

        m_added = library(
            {QStringLiteral("add"), sample("demo.prst"), sample("demo-new-firmware.prst"), QStringLiteral("--json")});
        QCOMPARE(m_added.status, 0);

        set("Singing Lead", "--name|Solo, 3rd song|--comment|loud, \"sweet\"|--guitar|on|--drive|on|--solo|on");
        set("Dub Deep", "--bass|on|--clean|on|--rythm|on");
        set("Warm Jazz Box", "--guitar|on|--crunch|on");
        set("Warm Jazz Box", "--crunch|off|--clean|on|--comment|größer");
        set("Practice Dry", "--default");

        QStringList compose{QStringLiteral("compose"), QStringLiteral("-o"), result()};
        for (const Placed &placed : placedPatches) {
            compose << QStringLiteral("--slot") << QLatin1String(placed.position) + u'=' + id(placed.name);
        }
        const Run composed = library(compose);
        // No warning, of mixed firmware or otherwise.
        QCOMPARE(composed.errors, QByteArray("Loading library from directory\n"));
        QCOMPARE(composed.status, 0);
    }

    void listShowsTheWholeFile()
    {
        QCOMPARE(m_demo[u"count"].toInt(), 99);
        QCOMPARE(m_demo[u"version"].toString(), QStringLiteral("V1.20"));
        QVERIFY(m_demo[u"checksum"][u"valid"].toBool());
        const QJsonValue last = m_demo[u"patches"][98];
        QCOMPARE(last[u"name"].toString(), QStringLiteral("Tuner and Volume"));
        QCOMPARE(last[u"bank"].toInt(), 33);
        QCOMPARE(last[u"number"].toInt(), 3);
    }

    void everyPatchIsAdded()
    {
        const QJsonArray files = m_added.json().array();
        QCOMPARE(files.size(), 2);
        QCOMPARE(files.at(0)[u"added"].toArray().size(), 99);
        QCOMPARE(files.at(1)[u"added"].toArray().size(), 40);
        for (const QJsonValue &file : files) {
            QCOMPARE(file[u"known"].toArray().size(), 0);
            QVERIFY(file[u"error"].isNull());
        }
    }

    void sameSoundUnderAnotherNameIsFound()
    {
        const Run similar = library({QStringLiteral("similar"), id("Shimmer Hall"), QStringLiteral("--json")});
        QCOMPARE(similar.status, 0);
        QStringList names;
        for (const QJsonValue &found : similar.json().array()) {
            names.append(libraryPatch(found.toString())[u"name"].toString());
        }
        names.sort();
        QCOMPARE(names, QStringList({QString::fromUtf8("Größte Halle"), QStringLiteral("Shimmer Hall")}));
    }

    void checkFindsNothing()
    {
        const Run checked = run({QStringLiteral("check"), result(), QStringLiteral("--json")});
        QCOMPARE(checked.status, 0);
        const QJsonValue file = checked.json()[0];
        QVERIFY(file[u"readable"].toBool());
        QVERIFY(file[u"findings"].isArray());
        QCOMPARE(file[u"findings"].toArray(), QJsonArray());
        QVERIFY(file[u"roundTrip"].toBool());
    }

    void slotsHoldWhatWasPlaced()
    {
        const auto composed = SPresetFile::fromData(bytesOf(result()));
        const auto demo = SPresetFile::fromData(bytesOf(sample("demo.prst")));
        QVERIFY(composed && demo);
        QCOMPARE(composed->patches.size(), slotCount);
        const QJsonArray listed = listOfResult();
        QCOMPARE(listed.size(), slotCount);
        for (qsizetype slot = 0; slot < slotCount; ++slot) {
            const QString position = positionOf(slot);
            const QString name = importedNameAt(position);
            const qsizetype origin = indexInDemo(name);
            QVERIFY(origin >= 0);
            QCOMPARE(composed->patches.at(slot).pos, slot);
            QCOMPARE(composed->patches.at(slot).name, shownName(name));
            QCOMPARE(composed->patches.at(slot).data, demo->patches.at(origin).data);
            QCOMPARE(composed->userIRs.at(slot).simpleHash(), demo->userIRs.at(origin).simpleHash());

            const QJsonValue row = listed.at(slot);
            QCOMPARE(QStringLiteral("%1.%2").arg(row[u"bank"].toInt()).arg(row[u"number"].toInt()), position);
            QCOMPARE(row[u"name"].toString(), shownName(name));
            QCOMPARE(row[u"version"].toString(), QStringLiteral("V1.20"));
            // A new name makes another id, since the name is part of the content.
            QCOMPARE(row[u"id"].toString() == m_ids.value(name), shownName(name) == name);
        }
    }

    void renamedPatchIsExportedUnderItsNewName()
    {
        const QStringList names = texts(listOfResult(), "name");
        QCOMPARE(names.at(2), QStringLiteral("Solo, 3rd song"));
        QVERIFY(!names.contains(QStringLiteral("Singing Lead")));
    }

    void defaultPatchFillsTheOtherSlots()
    {
        const QStringList ids = texts(listOfResult(), "id");
        QCOMPARE(ids.count(id("Practice Dry")), slotCount - qsizetype(placedPatches.size()));
    }

    void newProcessFindsTheLibraryAsItWasLeft()
    {
        const QJsonObject listed = listOfLibrary();
        QCOMPARE(QDir(listed[u"directory"].toString()), QDir(libraryPath()));
        QCOMPARE(listed[u"total"].toInt(), 139);
        QCOMPARE(listed[u"defaultPatch"].toString(), id("Practice Dry"));

        const QJsonArray files = m_added.json().array();
        QStringList order;
        for (const QJsonValue &file : files) {
            for (const QJsonValue &added : file[u"added"].toArray()) {
                order.append(added.toString());
            }
        }
        QCOMPARE(texts(listed[u"patches"].toArray(), "id"), order);
        QCOMPARE(order.first(99), texts(m_demo[u"patches"].toArray(), "id"));
    }

    void classificationIsKept_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("comment");
        QTest::addColumn<QStringList>("flags");
        QTest::newRow("flags, name and comment")
            << id("Singing Lead") << QStringLiteral("Solo, 3rd song") << QStringLiteral("loud, \"sweet\"")
            << QStringList{QStringLiteral("guitar"), QStringLiteral("drive"), QStringLiteral("solo")};
        QTest::newRow("flags alone") << id("Dub Deep") << QStringLiteral("Dub Deep") << QString()
                                     << QStringList{
                                            QStringLiteral("bass"), QStringLiteral("clean"), QStringLiteral("rythm")};
        QTest::newRow("a flag taken back, and a comment beyond ASCII")
            << id("Warm Jazz Box") << QStringLiteral("Warm Jazz Box") << QString::fromUtf8("größer")
            << QStringList{QStringLiteral("guitar"), QStringLiteral("clean")};
        QTest::newRow("nothing set") << id("Tight Riff") << QStringLiteral("Tight Riff") << QString() << QStringList();
    }

    void classificationIsKept()
    {
        QFETCH(const QString, id);
        const QJsonObject patch = libraryPatch(id);
        QTEST(patch[u"name"].toString(), "name");
        QTEST(patch[u"comment"].toString(), "comment");
        QTEST(setFlags(patch), "flags");
    }

    void libraryDirectoryHoldsNothingElse()
    {
        QStringList expected{QStringLiteral("velgorlibrary.json")};
        for (const QJsonValue &patch : listOfLibrary()[u"patches"].toArray()) {
            const QString name = patch[u"name"].toString().replace(u'/', u'$');
            expected.append(QStringLiteral("lib-%1.%2.prst").arg(name, patch[u"id"].toString()));
        }
        expected.sort();
        QStringList names =
            QDir(libraryPath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
        names.sort();
        QCOMPARE(names, expected);
    }

    void storedFilesArePresetFilesOfOnePatch()
    {
        const QDir directory(libraryPath());
        for (const QString &name : directory.entryList({QStringLiteral("lib-*.prst")})) {
            const auto file = SPresetFile::fromData(bytesOf(directory.filePath(name)));
            QVERIFY2(file && file->patches.size() == 1, qPrintable(name));
        }
    }

private:
    Run run(const QStringList &arguments)
    {
        QProcess process;
        // A home of its own: no preferences of the user count, and none are touched.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_directory.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_directory.filePath(QStringLiteral("config")));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VELGOR_EXECUTABLE), arguments);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit) {
            return {};
        }
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }

    Run library(const QStringList &arguments)
    {
        return run(QStringList{QStringLiteral("--library"), libraryPath(), QStringLiteral("library")} + arguments);
    }

    /// `options` are separated by "|".
    void set(const char *name, const char *options)
    {
        const Run changed =
            library(QStringList{QStringLiteral("set"), id(name)} + QString::fromUtf8(options).split(u'|'));
        QVERIFY2(changed.status == 0, changed.errors.constData());
    }

    [[nodiscard]] QString libraryPath() const { return m_directory.filePath(QStringLiteral("library")); }
    [[nodiscard]] QString result() const { return m_directory.filePath(QStringLiteral("new.prst")); }
    [[nodiscard]] QString id(const char *name) const { return m_ids.value(QString::fromUtf8(name)); }

    QJsonArray listOfResult()
    {
        return run({QStringLiteral("list"), result(), QStringLiteral("--json")}).json()[u"patches"].toArray();
    }

    QJsonObject listOfLibrary() { return library({QStringLiteral("list"), QStringLiteral("--json")}).json().object(); }

    QJsonObject libraryPatch(const QString &id)
    {
        for (const QJsonValue &patch : listOfLibrary()[u"patches"].toArray()) {
            if (patch[u"id"].toString() == id) {
                return patch.toObject();
            }
        }
        return {};
    }

    static QString positionOf(qsizetype slot) { return QStringLiteral("%1.%2").arg(slot / 3 + 1).arg(slot % 3 + 1); }

    static QString importedNameAt(const QString &position)
    {
        for (const Placed &placed : placedPatches) {
            if (position == QLatin1String(placed.position)) {
                return QString::fromUtf8(placed.name);
            }
        }
        return QStringLiteral("Practice Dry");
    }

    static QString shownName(const QString &importedName)
    {
        return importedName == QStringLiteral("Singing Lead") ? QStringLiteral("Solo, 3rd song") : importedName;
    }

    [[nodiscard]] qsizetype indexInDemo(const QString &name) const
    {
        return texts(m_demo[u"patches"].toArray(), "name").indexOf(name);
    }

    QTemporaryDir m_directory;
    QJsonObject m_demo;
    QHash<QString, QString> m_ids; ///< by name, of the demonstration list
    Run m_added;
};

VELGOR_TEST(TestMainJob)
#include "tst_MainJob.moc"
