#include "PatchRoles.h"

#include "FirmwareBadge.h"

#include <QCoreApplication>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(PatchRoles)
};

} // namespace

QString PatchRoles::spokenRow(const QString &text, bool hasUserIR)
{
    return hasUserIR ? Texts::tr("%1, user IR").arg(text) : text;
}

QString PatchRoles::firmwareText(const QString &version)
{
    return Texts::tr("firmware %1").arg(FirmwareBadge::shownVersion(version));
}

QString PatchRoles::firstLine(const QString &comment)
{
    const QString text = comment.trimmed();
    return text.left(text.indexOf(u'\n')).simplified();
}

QString PatchRoles::spokenFlags(const ShownFlags &flags)
{
    QStringList labels;
    for (const PatchField *field : flags) {
        labels.append(PatchFlags::label(*field));
    }
    return labels.join(QStringLiteral(", "));
}
