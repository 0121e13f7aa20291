#include "AlertParts.h"

#include "ShownName.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(AlertParts)
};

} // namespace

Alert AlertParts::notice(const QString &title, const QString &text)
{
    return {.title = title, .text = text, .acceptLabel = {}, .safeLabel = Texts::tr("&OK")};
}

Alert AlertParts::checkable(const QString &title, const QString &text)
{
    return {.title = title,
        .text = text,
        .acceptLabel = Texts::tr("&Check Library..."),
        .safeLabel = Texts::tr("&Not Now")};
}

QString AlertParts::inParagraphs(const QString &reason, const QString &advice)
{
    return advice.isEmpty() ? reason : reason + QStringLiteral("\n\n") + advice;
}

QString AlertParts::shownProblem(const QString &problem)
{
    const QString line = problem.simplified();
    const qsizetype colon = line.indexOf(QStringLiteral(": "));
    return colon < 0 ? shownPath(line)
                     : shownPath(line.first(colon)) + QStringLiteral(": ") + shownPath(line.sliced(colon + 2));
}

QString AlertParts::firstLines(const QStringList &lines)
{
    constexpr qsizetype shown = 3;
    QStringList first;
    for (const QString &line : lines.first(std::min(shown, lines.size()))) {
        first.append(shownProblem(line));
    }
    if (lines.size() > shown) {
        first.append(Texts::tr("and %1 more").arg(lines.size() - shown));
    }
    return first.join(u'\n');
}
