#include "ProgramFiles.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QTest>

#include <csignal>
#include <vector>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr qsizetype inputSize = 10'000'000;
constexpr qint64 mostMemoryPerByte = 20;

struct Run {
    int status = -1;
    qint64 peak = 0; ///< bytes
    QByteArray errors;
};

QByteArray patchEntry(int id, const QByteArray &name = "n", const QByteArray &more = {})
{
    QByteArray text = R"({"id":)" + QByteArray::number(id) + R"(,"name":")" + name
        + R"(","hasUserIR":false,"comment":"","version":"","date":0)";
    for (const char *flag : {"guitar", "bass", "clean", "crunch", "drive", "higain", "rythm", "solo", "empty"}) {
        text += ",\"" + QByteArray(flag) + "\":false";
    }
    return text + more + '}';
}

QByteArray libraryOf(const QByteArray &entries)
{
    return R"({"patches":[)" + entries + R"(],"defaultPatch":null})";
}

QByteArray manyEntries()
{
    QByteArray entries = patchEntry(1);
    for (int id = 2; entries.size() < inputSize; ++id) {
        entries += ',' + patchEntry(id);
    }
    return libraryOf(entries);
}

QByteArray fullFile(int dataSize)
{
    QList<SPatch> patches;
    patches.reserve(65535);
    for (int i = 0; i < 65535; ++i) {
        patches.append(TestRecords::patch(QString::number(i), i, dataSize));
    }
    return TestRecords::fileBytes(patches);
}

} // namespace

/// Memory stays within a multiple of what is read, whatever it is. Measured on the real program.
class TestMemoryBounds : public QObject {
    Q_OBJECT

    QTemporaryDir m_directory;

    [[nodiscard]] QString filePath(const QString &name) const { return m_directory.filePath(name); }

    [[nodiscard]] Run run(const QStringList &arguments) const
    {
        const QByteArray errors = QFile::encodeName(filePath(QStringLiteral("errors")));
        QByteArrayList words{VELGOR_EXECUTABLE};
        for (const QString &argument : arguments) {
            words.append(QFile::encodeName(argument));
        }
        std::vector<char *> argumentsForIt;
        for (QByteArray &word : words) {
            argumentsForIt.push_back(word.data());
        }
        argumentsForIt.push_back(nullptr);
        const pid_t child = ::fork();
        if (child == 0) {
            ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
            ::dup2(::open(errors.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
            ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            ::execv(argumentsForIt.front(), argumentsForIt.data());
            ::_exit(127);
        }
        Run result;
        result.peak = peakUntilTheEnd(child, result.status);
        result.errors = ProgramFiles::read(QFile::decodeName(errors));
        return result;
    }

    /// The system's count for a child that ended holds what this process had before the program was started in it. So
    /// the child is stopped when it is about to end, and its own count read.
    static qint64 peakUntilTheEnd(pid_t child, int &exitStatus)
    {
        qint64 peak = 0;
        int status = 0;
        bool isSet = false;
        while (::waitpid(child, &status, 0) == child && WIFSTOPPED(status)) {
            int signal = WSTOPSIG(status);
            if (!isSet) {
                isSet = ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACEEXIT | PTRACE_O_EXITKILL) == 0;
                signal = 0;
            } else if (status >> 8 == (SIGTRAP | (PTRACE_EVENT_EXIT << 8))) {
                const QByteArray counts = ProgramFiles::read(QStringLiteral("/proc/%1/status").arg(child));
                const qsizetype line = counts.indexOf("VmHWM:") + 6;
                peak = counts.sliced(line, counts.indexOf("kB", line) - line).trimmed().toLongLong() * 1024;
                signal = 0;
            }
            ::ptrace(PTRACE_CONT, child, nullptr, signal);
        }
        exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return peak;
    }

    /// What the program takes for as good as no input.
    [[nodiscard]] qint64 basePeak(const QStringList &arguments) const { return run(arguments).peak; }

    void staysBounded(
        const QStringList &command, const QStringList &emptyCommand, qint64 inputBytes, int status, qint64 most) const
    {
        const Run result = run(command);
        QVERIFY(result.peak > 0);
        const qint64 taken = result.peak - basePeak(emptyCommand);
        qInfo("%.1f times the input", static_cast<double>(taken) / static_cast<double>(inputBytes));
        QVERIFY2(result.status == status, result.errors.right(300).constData());
        QVERIFY2(taken < most, qPrintable(QString::number(taken)));
    }

    /// A file of this size without content, which takes no room on the disk.
    [[nodiscard]] QString sparseFile(qint64 size, const QByteArray &start = {}) const
    {
        const QString path = filePath(QStringLiteral("sparse.prst"));
        ProgramFiles::write(path, start);
        return QFile::resize(path, size) ? path : QString();
    }

private Q_SLOTS:
    void libraryFilesTakeAMultipleOfTheirSize_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("status");
        const QByteArray pairs = QByteArray("[],").repeated(inputSize / 3);
        QTest::newRow("entries without files") << manyEntries() << 0;
        QTest::newRow("arrays in an unknown key") << "{\"x\":[" + pairs + "[]],\"patches\":[]}" << 0;
        QTest::newRow("nested arrays in an unknown key")
            << "{\"x\":" + QByteArray(inputSize / 2, '[') + QByteArray(inputSize / 2, ']') + ",\"patches\":[]}" << 0;
        QTest::newRow("nested objects in an unknown key of a patch") << libraryOf(patchEntry(
            1, "n", ",\"x\":" + QByteArray("{\"a\":").repeated(inputSize / 6) + '0' + QByteArray(inputSize / 6, '}')))
                                                                     << 0;
        QTest::newRow("numbers in an unknown key")
            << "{\"x\":[" + QByteArray("1,").repeated(inputSize / 2) + "1],\"patches\":[]}" << 0;
        QTest::newRow("one number") << "{\"x\":" + QByteArray(inputSize, '9') + ",\"patches\":[]}" << 2;
        QTest::newRow("one name") << libraryOf(patchEntry(1, QByteArray(inputSize, 'x'))) << 0;
        QTest::newRow("one escaped name")
            << libraryOf(patchEntry(1, QByteArray("\\u0001").repeated(inputSize / 6))) << 0;
        QTest::newRow("one key") << "{\"" + QByteArray(inputSize, 'x') + "\":0,\"patches\":[]}" << 0;
        QTest::newRow("nested and open") << QByteArray(inputSize, '[') << 2;
        QTest::newRow("zeros") << QByteArray(inputSize, '\0') << 2;
        QTest::newRow("one text, open") << '"' + QByteArray(inputSize, 'x') << 2;
    }
    void libraryFilesTakeAMultipleOfTheirSize()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const int, status);
        ProgramFiles::write(filePath(QStringLiteral("library/velgorlibrary.json")), text);
        ProgramFiles::write(filePath(QStringLiteral("none/velgorlibrary.json")), libraryOf({}));
        const auto list = [this](const QString &name) {
            return QStringList{
                QStringLiteral("library"), QStringLiteral("list"), QStringLiteral("--library"), filePath(name)};
        };
        staysBounded(list(QStringLiteral("library")), list(QStringLiteral("none")), text.size(), status,
            mostMemoryPerByte * text.size());
    }

    void presetFilesTakeAMultipleOfTheirSize_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("status");
        const QByteArray full = fullFile(116);
        const QByteArray smallest = fullFile(1);
        for (const char *command : {"list", "check"}) {
            QTest::addRow("%s 65,535 patches", command) << command << full << 0;
            QTest::addRow("%s 65,535 smallest patches", command) << command << smallest << 0;
            QTest::addRow("%s 65,535 patches, cut", command) << command << full.chopped(1) << 2;
            QByteArray wrong = smallest;
            for (qsizetype i = 32; i < 32 + 65535 * 8; i += 8) {
                wrong[i] = 7;
            }
            const int status = qstrcmp(command, "list") == 0 ? 0 : 1;
            QTest::addRow("%s with a finding for each patch", command) << command << wrong << status;
        }
    }
    void presetFilesTakeAMultipleOfTheirSize()
    {
        QFETCH(const QString, command);
        QFETCH(const QByteArray, bytes);
        QFETCH(const int, status);
        const QString path = filePath(QStringLiteral("input.prst"));
        const QString empty = filePath(QStringLiteral("empty.prst"));
        ProgramFiles::write(path, bytes);
        ProgramFiles::write(empty, {});
        staysBounded({command, path}, {command, empty}, bytes.size(), status, mostMemoryPerByte * bytes.size());
    }

    void hugeFilesAreRefused_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<qint64>("mostMemory");
        QTest::addColumn<QByteArray>("reason");
        constexpr qint64 gibibyte = qint64(1) << 30;
        constexpr qint64 mebibyte = qint64(1) << 20;
        QTest::newRow("2 GiB") << 2 * gibibyte << 4 * mebibyte << QByteArray("larger than any preset file");
        QTest::newRow("a byte more than 1 GiB")
            << gibibyte + 1 << 4 * mebibyte << QByteArray("larger than any preset file");
        // It has to be read, once.
        QTest::newRow("a byte less than 1 GiB")
            << gibibyte - 1 << gibibyte + 16 * mebibyte << QByteArray("without patches");
    }
    void hugeFilesAreRefused()
    {
        QFETCH(const qint64, size);
        QFETCH(const qint64, mostMemory);
        QFETCH(const QByteArray, reason);
        const QString path = sparseFile(size);
        QVERIFY(!path.isEmpty());
        const QString library = filePath(QStringLiteral("new"));
        for (const QStringList &command : {QStringList{QStringLiteral("list")}, QStringList{QStringLiteral("check")},
                 QStringList{QStringLiteral("library"), QStringLiteral("add"), QStringLiteral("--library"), library}}) {
            const Run result = run(command + QStringList{path});
            const qint64 taken = result.peak - basePeak({QStringLiteral("list"), filePath(QStringLiteral("missing"))});
            QCOMPARE(result.status, 2);
            QVERIFY2(result.errors.contains(reason), result.errors.constData());
            QVERIFY2(taken < mostMemory, qPrintable(QString::number(taken)));
            QVERIFY(!QFile::exists(library));
        }
    }
};

VELGOR_TEST(TestMemoryBounds)
#include "tst_MemoryBounds.moc"
