#include "TextTable.h"

#include "ShownText.h"

#include <QtGlobal>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {

constexpr int gap = 2;

/// 0 when standard output is no terminal.
int terminalColumns()
{
#ifdef Q_OS_UNIX
    winsize size{};
    if (::isatty(STDOUT_FILENO) != 0 && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
        return size.ws_col;
    }
#endif
    return 0;
}

} // namespace

TextTable::TextTable(const QStringList &header)
    : m_rows{header}
{
}

void TextTable::addRow(const QStringList &cells)
{
    QStringList row;
    for (const QString &cell : cells) {
        row.append(ShownText::escaped(cell));
    }
    m_rows.append(row);
}

QString TextTable::text() const
{
    QList<int> widths(m_rows.first().size(), 0);
    for (const QStringList &row : m_rows) {
        for (qsizetype column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths.at(column), ShownText::width(row.at(column)));
        }
    }
    int lastStart = 0;
    for (qsizetype column = 0; column + 1 < widths.size(); ++column) {
        lastStart += widths.at(column) + gap;
    }
    const int columns = terminalColumns();
    QString result;
    for (const QStringList &row : m_rows) {
        QString line;
        for (qsizetype column = 0; column + 1 < row.size(); ++column) {
            line += ShownText::padded(row.at(column), widths.at(column) + gap);
        }
        const bool isCut = columns > lastStart;
        line += isCut ? ShownText::shortened(row.last(), columns - lastStart) : row.last();
        while (line.endsWith(u' ')) {
            line.chop(1);
        }
        result += line + u'\n';
    }
    return result;
}
