#include "ProblemReport.h"

#include "Diagnostics.h"
#include "LibraryStorageManager.h"
#include "LookTokens.h"
#include "ProgramVersion.h"
#include "StatusText.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QFontInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QSysInfo>
#include <QWidget>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ProblemReport)
};

/// Names of files may hold line breaks, and what turns the writing round.
QString inOneLine(QString text)
{
    for (QChar &character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Other_Format) {
            character = QChar::ReplacementCharacter;
        }
    }
    return text;
}

QString withoutHome(QString text)
{
    return text.replace(QDir::homePath() + u'/', QStringLiteral("~/"));
}

QString desktopText()
{
    QStringList words{QGuiApplication::platformName()};
    for (const char *variable : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE"}) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty()) {
            words.append(value);
        }
    }
    return words.join(QStringLiteral(", "));
}

QString styleText(const QWidget &window)
{
    const QFontInfo font(window.font());
    return QStringLiteral("%1, %2, %3 %4 pt")
        .arg(window.style()->name(), LookTokens::current().isDark ? QStringLiteral("dark") : QStringLiteral("light"),
            font.family(), QString::number(font.pointSizeF()));
}

QString screenText(const QScreen &screen)
{
    return QStringLiteral("%1 x %2, %3 dpi, scale %4")
        .arg(QString::number(screen.size().width()), QString::number(screen.size().height()),
            QString::number(qRound(screen.logicalDotsPerInch())), QString::number(screen.devicePixelRatio()));
}

} // namespace

ProblemReport ProblemReport::of(
    const VelgorLibrary &library, const LibraryStorageManager &storage, const QWidget &window)
{
    ProblemReport report;
    report.version = ProgramVersion::text();
    report.qt = QString::fromLatin1(qVersion());
    report.system = QStringLiteral("%1, %2 %3, %4")
                        .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                            QSysInfo::currentCpuArchitecture());
    report.desktop = desktopText();
    report.style = styleText(window);
    report.screen = screenText(*window.screen());
    report.library = storage.libDirectory();
    report.patches = library.count();
    const QStringList lines = Diagnostics::keptLines();
    for (const QString &line : lines) {
        report.messages.append(inOneLine(line));
    }
    return report;
}

QString ProblemReport::text() const
{
    QStringList lines{
        Texts::tr("Program: %1 %2").arg(QCoreApplication::applicationName(), version),
        Texts::tr("Qt: %1").arg(qt),
        Texts::tr("System: %1").arg(system),
        Texts::tr("Desktop: %1").arg(desktop),
        Texts::tr("Style: %1").arg(style),
        Texts::tr("Screen: %1").arg(screen),
        Texts::tr("Library: %1").arg(inOneLine(StatusText::directory(library))),
        Texts::tr("Patches in it: %1").arg(patches),
    };
    if (messages.isEmpty()) {
        lines.append(Texts::tr("Messages of this run: none"));
    } else {
        lines.append(Texts::tr("Last messages of this run: %1").arg(messages.size()));
    }
    for (const QString &message : messages) {
        lines.append(withoutHome(message));
    }
    return lines.join(u'\n') + u'\n';
}
