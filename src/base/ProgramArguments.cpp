#include "ProgramArguments.h"

#include "Utf8Text.h"

#include <QCoreApplication>

#ifdef Q_OS_WIN
#include <QScopeGuard>
#include <qt_windows.h>

#include <shellapi.h>
#endif

namespace ProgramArguments {

#ifdef Q_OS_WIN

// What main() is given went through the code page of the system.
Result<QStringList> decode(int /*argc*/, const char *const * /*argv*/)
{
    int count = 0;
    wchar_t **const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    const auto release = qScopeGuard([arguments] { LocalFree(arguments); });
    QStringList words;
    for (int i = 1; arguments && i < count; ++i) {
        words.append(QString(reinterpret_cast<const QChar *>(arguments[i])));
    }
    return words;
}

QStringList remaining(int /*argc*/, const char *const * /*argv*/)
{
    return QCoreApplication::arguments().sliced(1);
}

#else

Result<QStringList> decode(int argc, const char *const *argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        const std::optional<QString> word = Utf8Text::decode(argv[i]);
        if (!word) {
            return Problem{.what = Problem::What::Malformed,
                .why = QCoreApplication::translate("ProgramArguments", "an argument is not valid UTF-8: %1")
                           .arg(QString::fromUtf8(argv[i]))};
        }
        words.append(*word);
    }
    return words;
}

QStringList remaining(int argc, const char *const *argv)
{
    const Result<QStringList> words = decode(argc, argv);
    return words ? *words : QStringList();
}

#endif

} // namespace ProgramArguments
