#include "TextTable.h"

#include "Output.h"
#include "ShownText.h"
#include "Utf8Text.h"

#include <QtGlobal>

#include <algorithm>
#include <utility>

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
    : m_widths(header.size(), 0)
{
    store(header);
}

void TextTable::addRow(const QStringList &cells)
{
    QStringList row;
    for (const QString &cell : cells) {
        row.append(ShownText::escaped(cell));
    }
    store(row);
}

void TextTable::store(const QStringList &cells)
{
    for (qsizetype column = 0; column < cells.size(); ++column) {
        m_widths[column] = std::max(m_widths.at(column), ShownText::width(cells.at(column)));
    }
    m_rows.append(cells.join(u'\n').toUtf8());
}

void TextTable::print() const
{
    constexpr qsizetype portion = 65'536;
    int lastStart = 0;
    for (qsizetype column = 0; column + 1 < m_widths.size(); ++column) {
        lastStart += m_widths.at(column) + gap;
    }
    const int columns = terminalColumns();
    const bool isCut = columns > lastStart;
    QString text;
    for (const QByteArray &row : m_rows) {
        const QStringList cells = Utf8Text::decode(row).value_or(QString()).split(u'\n');
        QString line;
        for (qsizetype column = 0; column + 1 < cells.size(); ++column) {
            line += ShownText::padded(cells.at(column), m_widths.at(column) + gap);
        }
        line += isCut ? ShownText::shortened(cells.last(), columns - lastStart) : cells.last();
        while (line.endsWith(u' ')) {
            line.chop(1);
        }
        text += line + u'\n';
        if (text.size() > portion) {
            Output::print(std::exchange(text, QString()));
        }
    }
    Output::print(text);
}
