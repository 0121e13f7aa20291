#include "PipedFiles.h"

#include "Output.h"
#include "StandardInput.h"

#ifdef Q_OS_WIN
#include <cstdio>

#include <fcntl.h>
#include <io.h>
#endif

Result<QByteArray> PipedFiles::read(const QString &path)
{
    return path == StandardInput::mark() ? StandardInput::read() : UserFiles::read(path);
}

Result<> PipedFiles::write(const QString &path, const QByteArray &bytes)
{
    if (path != StandardInput::mark()) {
        return UserFiles::write(path, bytes);
    }
#ifdef Q_OS_WIN
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    Output::printBytes(bytes);
    return Success();
}
