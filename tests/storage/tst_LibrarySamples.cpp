#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QTest>

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

QString text(const Json &value)
{
    return QString::fromStdString(value.get<std::string>());
}

/// A copy of a sample directory, and what is known about it.
struct Sample {
    StoreFixture store;
    Json facts;

    explicit Sample(const QString &name)
    {
        const QString source = QStringLiteral(VELGOR_TEST_DATA "/libraries/") + name;
        QDirIterator entry(source, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (entry.hasNext()) {
            QFile file(entry.next());
            if (file.open(QIODevice::ReadOnly)) {
                store.write(entry.filePath().sliced(source.size() + 1), file.readAll());
            }
        }
        QFile file(source + QStringLiteral(".json"));
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArray bytes = file.readAll();
            facts = Json::parse(bytes.begin(), bytes.end(), nullptr, false);
        }
    }

    [[nodiscard]] QStringList lines(const char *key) const
    {
        QStringList result;
        for (const Json &line : facts.at(key)) {
            result.append(text(line)
                              .replace(QStringLiteral("<DIR>"), store.path())
                              .replace(QStringLiteral("<CWD>"), QDir::currentPath()));
        }
        return result;
    }

    [[nodiscard]] bool isLoaded() const { return !facts.at("loaded").is_null(); }
};

Json factsOf(const VelgorPatch &patch)
{
    return {{"id", std::to_string(patch.id())}, {"name", patch.name.toStdString()}, {"hasUserIR", patch.hasUserIR},
        {"comment", patch.comment.toStdString()}, {"version", patch.version.toStdString()},
        {"date", patch.date.seconds}, {"guitar", patch.guitar}, {"bass", patch.bass}, {"clean", patch.clean},
        {"crunch", patch.crunch}, {"drive", patch.drive}, {"higain", patch.higain}, {"rythm", patch.rythm},
        {"solo", patch.solo}, {"empty", patch.empty}, {"hasData", patch.records.has_value()},
        {"dataName", patch.records ? Json(patch.records->patchData.name.toStdString()) : Json(nullptr)}};
}

} // namespace

class TestLibrarySamples : public QObject {
    Q_OBJECT

private:
    static void addRows()
    {
        QTest::addColumn<QString>("name");
        const QStringList names =
            QDir(QStringLiteral(VELGOR_TEST_DATA "/libraries")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QVERIFY(names.size() >= 12);
        for (const QString &name : names) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }

private Q_SLOTS:
    static void loadingIsAsStated_data() { addRows(); }
    static void loadingIsAsStated()
    {
        QFETCH(const QString, name);
        Sample sample(name);
        QVERIFY(sample.facts.is_object());
        const auto before = sample.store.stamps();
        const auto library = sample.store.storage.decodeLibrary();
        QCOMPARE(sample.store.lines.take(), sample.lines("lines"));
        QCOMPARE(library.has_value(), sample.isLoaded());
        if (library) {
            const Json &stated = sample.facts.at("loaded");
            const Json defaultPatch =
                library->defaultPatch ? Json(std::to_string(*library->defaultPatch)) : Json(nullptr);
            QVERIFY(defaultPatch == stated.at("defaultPatch"));
            QCOMPARE(std::size_t(library->patches.size()), stated.at("patches").size());
            for (qsizetype i = 0; i < library->patches.size(); ++i) {
                const Json &patch = stated.at("patches").at(static_cast<std::size_t>(i));
                QCOMPARE(QString::fromStdString(factsOf(library->patches.at(i)).dump()),
                    QString::fromStdString(patch.dump()));
            }
        }
        QCOMPARE(sample.store.storage.readError(), sample.facts.at("readError").get<bool>());
        QCOMPARE(sample.store.storage.writeError(), sample.facts.at("writeError").get<bool>());
        QCOMPARE(sample.store.stamps(), before);
    }

    static void savingWithoutChangesIsAsStated_data() { addRows(); }
    static void savingWithoutChangesIsAsStated()
    {
        QFETCH(const QString, name);
        Sample sample(name);
        if (!sample.facts.contains("save_lines")) {
            QVERIFY(!sample.isLoaded());
            return;
        }
        QVERIFY(sample.store.start());
        // The sample whose default patch is no id holds something that is not understood.
        const bool isKept = !sample.store.storage.droppedPatches().isEmpty() || name == QStringLiteral("default_text");
        const QByteArray oldText = sample.store.read(LibraryFileNames::libraryFile());
        sample.store.lines.take();
        sample.store.storage.save(sample.store.library);
        QCOMPARE(sample.store.lines.take(), sample.lines("save_lines"));
        QCOMPARE(sample.store.storage.writeError(), sample.facts.at("save_writeError").get<bool>());

        // What would be lost is still in the old library file, which is kept.
        const QStringList kept = sample.store.datedCopies();
        QCOMPARE(kept.size(), isKept ? 1 : 0);
        QMap<QString, QByteArray> left = sample.store.contents();
        if (isKept) {
            QCOMPARE(left.take(kept.first()), oldText);
        }
        QVERIFY(left.remove(LibraryFileNames::libraryFile()) == 1);
        Json files = Json::object();
        for (auto file = left.cbegin(); file != left.cend(); ++file) {
            files[file.key().toStdString()] =
                QCryptographicHash::hash(file.value(), QCryptographicHash::Sha256).toHex().toStdString();
        }
        QCOMPARE(
            QString::fromStdString(files.dump(1)), QString::fromStdString(sample.facts.at("files_after_save").dump(1)));
    }

    static void savedLibraryLoadsTheSameAgain_data() { addRows(); }
    static void savedLibraryLoadsTheSameAgain()
    {
        QFETCH(const QString, name);
        Sample sample(name);
        if (!sample.store.start()) {
            QVERIFY(!sample.isLoaded());
            return;
        }
        sample.store.storage.save(sample.store.library);
        const auto again = sample.store.storage.decodeLibrary();
        QVERIFY(again);
        QVERIFY(TestLibraries::areIdentical(again->patches, sample.store.library.patches()));
        QCOMPARE(again->defaultPatch, sample.store.library.defaultPatch());
        QCOMPARE(sample.store.storage.droppedPatches(), QStringList());
    }
};

VELGOR_TEST(TestLibrarySamples)
#include "tst_LibrarySamples.moc"
