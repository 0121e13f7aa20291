#include "LibraryJournal.h"

#include "TemporaryFiles.h"

#include <QStringBuilder>

namespace {

constexpr QByteArrayView putWord("put ");
constexpr QByteArrayView removeWord("remove ");
constexpr QByteArrayView endWord("end");

bool isTemporaryName(const QString &name)
{
    return name.startsWith(TemporaryFiles::prefix()) && !name.contains(u'/') && !name.contains(u'\\')
        && !name.contains(QChar(u'\0'));
}

} // namespace

QByteArray LibraryJournal::encode() const
{
    constexpr qsizetype usualLineSize = 72;
    QByteArray text;
    text.reserve(staged.size() * usualLineSize);
    for (auto file = staged.cbegin(); file != staged.cend(); ++file) {
        text += putWord % QByteArray::number(file.key()) % ' ' % file.value().toUtf8() % '\n';
    }
    for (const quint64 id : removed) {
        text.append(removeWord).append(QByteArray::number(id) + '\n');
    }
    return text.append(endWord).append('\n');
}

std::optional<LibraryJournal> LibraryJournal::decode(const QByteArray &text)
{
    LibraryJournal journal;
    QList<QByteArray> lines = text.split('\n');
    if (lines.size() < 2 || !lines.takeLast().isEmpty() || lines.takeLast() != endWord) {
        return std::nullopt;
    }
    for (const QByteArray &line : std::as_const(lines)) {
        bool isNumber = false;
        if (line.startsWith(removeWord)) {
            journal.removed.append(line.mid(removeWord.size()).toULongLong(&isNumber));
        } else if (line.startsWith(putWord)) {
            const QByteArray words = line.mid(putWord.size());
            const qsizetype blank = words.indexOf(' ');
            const QString name = QString::fromUtf8(words.mid(blank + 1));
            const quint64 id = blank < 0 ? 0 : words.first(blank).toULongLong(&isNumber);
            isNumber = isNumber && isTemporaryName(name);
            journal.staged.insert(id, name);
        }
        if (!isNumber) {
            return std::nullopt;
        }
    }
    return journal;
}
