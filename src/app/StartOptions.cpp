#include "StartOptions.h"

#include "Diagnostics.h"

#include <QFileInfo>

#include <algorithm>

namespace {

QString newList()
{
    return QStringLiteral("new-list");
}

const QStringList &answeredWithoutWindow()
{
    static const QStringList options{QStringLiteral("-h"), QStringLiteral("--help"), QStringLiteral("-v"),
        QStringLiteral("-V"), QStringLiteral("--version")};
    return options;
}

} // namespace

StartOptions::StartOptions()
{
    // Those of the window system have one dash and many letters.
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    m_parser.setApplicationDescription(tr("Patch librarian for the Velgor"));
    m_parser.addPositionalArgument(QStringLiteral("FILE"), tr("A preset file to open."), QStringLiteral("[FILE]"));
    m_parser.addOption({newList(), tr("Starts a new list, filled with the default patch.")});
    m_parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, tr("Shows this help.")});
    m_parser.addOption(
        {{QStringLiteral("v"), QStringLiteral("V"), QStringLiteral("version")}, tr("Shows the version.")});
}

bool StartOptions::needNoWindow(const QStringList &words)
{
    const qsizetype end = words.indexOf(QStringLiteral("--"));
    const QStringList options = end < 0 ? words : words.first(end);
    const bool isAnswer = std::any_of(
        options.begin(), options.end(), [](const QString &word) { return answeredWithoutWindow().contains(word); });
    // Where an option is given, a word may be its value and no file.
    const bool isOnlyFiles =
        std::none_of(options.begin(), options.end(), [](const QString &word) { return word.startsWith(u'-'); });
    const qsizetype files = words.size() - (end < 0 ? 0 : 1);
    return isAnswer || (isOnlyFiles && files > 1);
}

std::optional<StartRequest> StartOptions::requestOf(const QStringList &words)
{
    // The parser passes over the name of the program.
    const bool isUnderstood = m_parser.parse(QStringList(QString()) + words);
    if (m_parser.isSet(QStringLiteral("help"))) {
        m_parser.showHelp();
    }
    if (m_parser.isSet(QStringLiteral("version"))) {
        m_parser.showVersion();
    }
    if (!isUnderstood) {
        refuse(m_parser.errorText());
        return std::nullopt;
    }
    const QStringList files = m_parser.positionalArguments();
    if (files.size() > 1) {
        refuse(tr("one preset file can be opened at a time, not %1").arg(files.size()));
        return std::nullopt;
    }
    if (m_parser.isSet(newList())) {
        if (!files.isEmpty()) {
            refuse(tr("--new-list opens no file"));
            return std::nullopt;
        }
        return StartRequest{.action = StartRequest::Action::NewList};
    }
    return StartRequest::toOpen(files.isEmpty() ? QString() : QFileInfo(files.first()).absoluteFilePath());
}

void StartOptions::refuse(const QString &sentence)
{
    Diagnostics::standardError()(QStringLiteral("velgor-library-manager: ") + sentence);
}
