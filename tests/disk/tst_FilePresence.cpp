#include "FilePresence.h"
#include "LibraryDirectory.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

#include <atomic>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds longest = 30s;

/// A file system that answers for files below /dead only when it is let to, and says then that they are not there.
/// Lives as long as a thread that hangs in it.
struct Network {
    QSemaphore answers;
    std::atomic<int> asked = 0;

    bool isThere(const QString &file)
    {
        ++asked;
        if (file.startsWith(QStringLiteral("/dead"))) {
            answers.acquire();
            return false;
        }
        return file.startsWith(QStringLiteral("/there"));
    }
};

const QString dead = QStringLiteral("/dead/list");
const QString there = QStringLiteral("/there");
const QString gone = QStringLiteral("/gone");

} // namespace

class TestFilePresence : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_network = std::make_shared<Network>();
        m_presence = std::make_unique<FilePresence>(
            nullptr, [network = m_network](const QString &file) { return network->isThere(file); });
    }
    void cleanup() { m_network->answers.release(100); }

    static void onlyRegularFilesCount()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("list"), "");
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("list")), directory.filePath(QStringLiteral("link"))));
        QVERIFY(QFile::link(QStringLiteral("nowhere"), directory.filePath(QStringLiteral("broken"))));
        FilePresence presence;
        const auto isMissing = [&](const QString &name) { return presence.isMissing(directory.filePath(name)); };
        QVERIFY(!isMissing(QStringLiteral("gone")));
        QStringList files{directory.path()};
        for (const char *name : {"list", "link", "broken", "gone"}) {
            files.append(directory.filePath(QLatin1String(name)));
        }
        presence.look(files, longest);
        QVERIFY(!isMissing(QStringLiteral("list")) && !isMissing(QStringLiteral("link")));
        QVERIFY(isMissing(QStringLiteral("gone")) && isMissing(QStringLiteral("broken")));
        QVERIFY(presence.isMissing(directory.path()));
        directory.write(QStringLiteral("gone"), "");
        QVERIFY(QFile::remove(directory.filePath(QStringLiteral("list"))));
        presence.look(files, longest);
        QVERIFY(!isMissing(QStringLiteral("gone")) && isMissing(QStringLiteral("list")));
    }

    void aDeadFileSystemHoldsNothingUp()
    {
        QSignalSpy answered(m_presence.get(), &FilePresence::answered);
        m_presence->look({dead}, 1ms);
        QVERIFY(!m_presence->isMissing(dead));
        m_presence->look({there, gone}, longest);
        QVERIFY(m_presence->isMissing(gone) && !m_presence->isMissing(there));
        QTRY_COMPARE(answered.count(), 2);
        m_network->answers.release();
        QVERIFY(answered.wait(longest.count()));
        QVERIFY(m_presence->isMissing(dead));
    }

    void whatDoesNotAnswerIsAskedOnce()
    {
        for (int i = 0; i < 5; ++i) {
            m_presence->look({dead}, 1ms);
        }
        QTRY_COMPARE(m_network->asked.load(), 1);
        m_network->answers.release();
        QTRY_VERIFY(m_presence->isMissing(dead));
        m_network->answers.release();
        m_presence->look({dead}, longest);
        QCOMPARE(m_network->asked.load(), 2);
    }

    void anAnswerForNobodyIsHarmless()
    {
        m_presence->look({dead}, 1ms);
        m_presence.reset();
        m_network->answers.release();
        QTRY_COMPARE(m_network.use_count(), 1);
    }

private:
    std::shared_ptr<Network> m_network;
    std::unique_ptr<FilePresence> m_presence;
};

VELGOR_TEST(TestFilePresence)
#include "tst_FilePresence.moc"
