// Writes the man page to the file that is named as the one argument.

#include "ManPage.h"

#include <QCoreApplication>
#include <QFile>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QFile file(QCoreApplication::arguments().value(1));
    if (!file.open(QIODevice::WriteOnly)) {
        return 1;
    }
    const QByteArray page = ManPage::text().toUtf8();
    return file.write(page) == page.size() && file.flush() ? 0 : 1;
}
