#include "LongNames.h"

#include "Output.h"
#include "PatchName.h"

#include <utility>

void LongNames::warn(const QStringList &names)
{
    QStringList distinct = names;
    distinct.removeDuplicates();
    for (const QString &name : std::as_const(distinct)) {
        const QString fitted = PatchName::fitted(name);
        if (fitted != name) {
            Output::warn(tr(R"(the name "%1" is longer than %2 bytes; the unit will show "%3")")
                             .arg(name, QString::number(PatchName::fieldSize), fitted));
        }
    }
}
