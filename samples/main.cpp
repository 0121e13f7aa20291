#include "DemoLists.h"

#include <QFile>

#include <cstdio>

namespace {

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size() && file.flush();
    if (!isWritten) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    }
    return isWritten;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-demo-list DIRECTORY\n");
        return 2;
    }
    const QString directory = QFile::decodeName(argv[1]) + u'/';
    return write(directory + QStringLiteral("demo.prst"), DemoLists::demo())
            && write(directory + QStringLiteral("demo-new-firmware.prst"), DemoLists::demoNewFirmware())
        ? 0
        : 2;
}
