// A random walk over the window: what a user could do, by mouse, keyboard and menus, while the library is checked
// against the window and against the disk. The same seed takes the same way, but for when the saves fall due.

#include "MemoryTrend.h"
#include "PresetSupply.h"
#include "UserActions.h"
#include "WalkInvariants.h"
#include "WalkJournal.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int actionsBetweenChecks = 100;
constexpr int actionsBetweenLooks = 15; ///< at the disk, on average
constexpr int checksInARound = 3;
constexpr auto savePeriod = std::chrono::milliseconds(30);

QStringList warnings;

void takeQtMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The offscreen platform has no window manager to tell of anything.
    const bool isOfPlatform = message.startsWith(QStringLiteral("This plugin does not support"));
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfPlatform) {
        warnings.append(message);
    }
    if (type == QtFatalMsg) {
        QTextStream(stderr) << message << '\n';
    }
}

struct WebPageOpener : QObject {
    Q_OBJECT

public:
    Q_INVOKABLE void ignore(const QUrl &) { }
};

class WindowWalk {
public:
    explicit WindowWalk(quint32 seed)
        : m_random(seed)
        , m_window(m_directory, savePeriod)
        , m_presets(m_directory.parentPath() + QStringLiteral("/files"))
        , m_user(m_window, m_presets, m_random)
    {
        QObject::connect(&m_window.library, &VelgorLibrary::reordered, [this] { m_callsAtReorder = calls(); });
        QObject::connect(&m_window.library, &VelgorLibrary::wasReset, [this] { m_callsAtReorder = -1; });
    }

    [[nodiscard]] bool open() { return m_window.open(); }

    /// What went wrong, if anything.
    [[nodiscard]] QString round()
    {
        QString problem = m_user.startOver();
        m_callsAtReorder = -1;
        if (problem.isEmpty()) {
            problem = check();
        }
        m_memory.sample();
        for (int i = 0; i < checksInARound && problem.isEmpty(); ++i) {
            problem = walk();
        }
        return problem;
    }

    [[nodiscard]] const MemoryTrend &memory() const { return m_memory; }
    [[nodiscard]] qint64 actions() const { return m_actions; }

private:
    [[nodiscard]] QString walk()
    {
        for (int i = 0; i < actionsBetweenChecks; ++i, ++m_actions) {
            WalkJournal::note(m_user.any());
            if (!warnings.isEmpty()) {
                return QStringLiteral("Qt warned: ") + warnings.join(QStringLiteral("; "));
            }
            // Now and then at once, before another change brings a forgotten one to disk.
            const bool isStoredToo = m_random.bounded(actionsBetweenLooks) == 0;
            const QString problem = isStoredToo ? check() : WalkInvariants::shownWrong(m_window);
            if (!problem.isEmpty()) {
                return problem;
            }
        }
        return check();
    }

    [[nodiscard]] QString check()
    {
        const QString problem = WalkInvariants::shownWrong(m_window);
        return problem.isEmpty() ? WalkInvariants::storedWrong(m_window, calls() > m_callsAtReorder) : problem;
    }

    [[nodiscard]] qsizetype calls() const { return m_window.calls.calls.size(); }

    LibraryDirectory m_directory;
    QRandomGenerator m_random;
    WindowFixture m_window;
    PresetSupply m_presets;
    UserActions m_user;
    MemoryTrend m_memory;
    qint64 m_actions = 0;
    qsizetype m_callsAtReorder = -1; ///< requests to save up to the last sorting
};

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(takeQtMessage);
    // Nothing of the user's own, whose settings may be anything.
    const QTemporaryDir home;
    for (const char *variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(variable, QFile::encodeName(home.path()));
    }
    const QApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    const QCommandLineOption seconds(
        QStringLiteral("seconds"), QStringLiteral("How long to walk."), QStringLiteral("N"), QStringLiteral("10"));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("Which way to take; random without."),
        QStringLiteral("N"), QString::number(QRandomGenerator::system()->generate()));
    parser.addOptions({seconds, seed});
    parser.addHelpOption();
    parser.process(application);

    QTextStream out(stdout);
    out << "seed " << parser.value(seed) << Qt::endl;
    WebPageOpener opener;
    for (const char *scheme : {"https", "file"}) {
        QDesktopServices::setUrlHandler(QLatin1String(scheme), &opener, "ignore");
    }
    WalkJournal::printOnCrash();
    WindowWalk walk(parser.value(seed).toUInt());
    QString problem = walk.open() ? QString() : QStringLiteral("the window does not open");
    QElapsedTimer timer;
    timer.start();
    while (problem.isEmpty() && timer.elapsed() < parser.value(seconds).toLongLong() * 1000) {
        problem = walk.round();
    }
    if (problem.isEmpty()) {
        problem = walk.memory().problem();
    }
    out << walk.actions() << " actions, " << walk.memory().summary() << Qt::endl;
    if (!problem.isEmpty()) {
        QTextStream(stderr) << "FAILED with seed " << parser.value(seed) << ": " << problem << Qt::endl;
        WalkJournal::print();
        return 1;
    }
    return 0;
}

#include "main.moc"
