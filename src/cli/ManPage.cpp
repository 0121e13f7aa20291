#include "ManPage.h"

#include "CommandTable.h"
#include "HelpText.h"

namespace ManPage {

namespace {

/// Text as roff takes it literally: dashes and backslashes escaped, no line taken for a request.
QString roff(QString text)
{
    text.replace(u'\\', QStringLiteral("\\e"));
    text.replace(u'-', QStringLiteral("\\-"));
    if (text.startsWith(u'.') || text.startsWith(u'\'')) {
        text.prepend(QStringLiteral("\\&"));
    }
    return text + u'\n';
}

QString entry(const QString &term, const QString &text)
{
    return QStringLiteral(".TP\n.B ") + roff(term) + roff(text);
}

} // namespace

QString text()
{
    QString page = QStringLiteral(".TH VELGOR 1 \"\" \"Velgor Library Manager " VELGOR_VERSION "\" \"User Commands\"\n"
                                  ".SH NAME\nvelgor \\- keep, compose and check patches of the Velgor\n"
                                  ".SH SYNOPSIS\n");
    for (const Command &command : CommandTable::commands()) {
        page += QStringLiteral(".B ") + roff(HelpText::usage(command)) + QStringLiteral(".br\n");
    }
    page += QStringLiteral(".SH DESCRIPTION\n");
    page += roff(QStringLiteral("velgor reads and checks preset files of the Velgor, keeps their patches in a library "
                                "directory, and exports new lists that the unit's editor loads."));
    page += QStringLiteral(".SH COMMANDS\n");
    for (const Command &command : CommandTable::commands()) {
        page += QStringLiteral(".SS ") + roff(HelpText::usage(command)) + roff(command.description);
        for (const CommandOption &option : command.options) {
            page += entry(HelpText::optionUsage(option), option.description);
        }
        page += QStringLiteral(".PP\nExample:\n.PP\n.RS\n") + roff(command.example) + QStringLiteral(".RE\n");
    }
    page += QStringLiteral(".SH STANDARD INPUT AND OUTPUT\n") + entry(QStringLiteral("-"), HelpText::standardStreams());
    page += QStringLiteral(".SH EXIT STATUS\n");
    for (const auto &[status, meaning] : HelpText::exitStatuses()) {
        page += entry(status, meaning);
    }
    page += QStringLiteral(".SH FILES\n");
    page += entry(QStringLiteral("$XDG_CONFIG_HOME/velgor/velgor-library-manager.conf"),
        QStringLiteral("The preferences, which name the directory of a library that was moved."));
    page += QStringLiteral(".SH SEE ALSO\n.BR velgor\\-library\\-manager (1)\n");
    return page;
}

} // namespace ManPage
