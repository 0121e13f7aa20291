// Writes the man page and the completions of the shells to the directory that is named as the one argument.

#include "BashCompletion.h"
#include "FishCompletion.h"
#include "ManPage.h"
#include "ZshCompletion.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

bool write(const QString &path, const QString &text)
{
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QDir directory(QCoreApplication::arguments().value(1));
    const bool isWritten = write(directory.filePath(QStringLiteral("velgor.1")), ManPage::text())
        && write(directory.filePath(QStringLiteral("velgor.bash")), BashCompletion::text())
        && write(directory.filePath(QStringLiteral("_velgor")), ZshCompletion::text())
        && write(directory.filePath(QStringLiteral("velgor.fish")), FishCompletion::text());
    return isWritten ? 0 : 1;
}
