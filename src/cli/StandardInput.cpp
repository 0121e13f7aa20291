#include "StandardInput.h"

#include "DiskFiles.h"
#include "Output.h"

#include <cstdio>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#else
#include "SystemError.h"
#endif

namespace {

QString errorOfStream()
{
#ifdef Q_OS_WIN
    return StandardInput::tr("cannot be read");
#else
    return systemError();
#endif
}

Result<QByteArray> readAll()
{
#ifdef Q_OS_WIN
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    constexpr qsizetype portion = 65'536;
    QByteArray bytes;
    while (true) {
        const qsizetype size = bytes.size();
        bytes.resize(size + portion);
        const std::size_t count = std::fread(bytes.data() + size, 1, portion, stdin);
        bytes.truncate(size + static_cast<qsizetype>(count));
        if (std::ferror(stdin) != 0) {
            return Problem{.why = errorOfStream()};
        }
        if (count == 0) {
            return bytes;
        }
        if (bytes.size() > DiskFiles::largestFile) {
            return Problem{.why = StandardInput::tr("larger than any preset file")};
        }
    }
}

} // namespace

const Result<QByteArray> &StandardInput::read()
{
    static const Result<QByteArray> result = readAll();
    return result;
}

std::optional<QStringList> StandardInput::withIds(const QStringList &ids)
{
    QStringList result;
    for (const QString &id : ids) {
        if (id != mark()) {
            result.append(id);
            continue;
        }
        const Result<QByteArray> &input = read();
        if (!input) {
            Output::fail(tr("standard input: %1").arg(input.problem().why));
            return std::nullopt;
        }
        for (const QString &line : QString::fromUtf8(*input).split(u'\n')) {
            if (!line.trimmed().isEmpty()) {
                result.append(line.trimmed());
            }
        }
    }
    if (result.isEmpty()) {
        Output::fail(tr("standard input holds no ids"));
        return std::nullopt;
    }
    return result;
}
