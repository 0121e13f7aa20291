#include "KeptLibraryText.h"

#include "ShownName.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(KeptLibraryText)
};

QString countOf(qsizetype patches)
{
    return patches == 1 ? Texts::tr("1 patch") : Texts::tr("%1 patches").arg(patches);
}

/// With seconds, as two may have been kept within a minute.
QString momentOf(const KeptLibrary &library)
{
    const QDateTime local = library.keptAt.toLocalTime();
    return Texts::tr("%1, %2").arg(
        QLocale().toString(local.date(), QLocale::ShortFormat), local.time().toString(QStringLiteral("HH:mm:ss")));
}

/// A paragraph with the first of the lines, and how many more there are.
QString listed(const QString &what, const QStringList &names)
{
    constexpr qsizetype shown = 12;
    if (names.isEmpty()) {
        return {};
    }
    QStringList lines{Texts::tr("%1 (%2):").arg(what, QString::number(names.size()))};
    for (const QString &name : names.first(std::min(shown, names.size()))) {
        lines.append(name);
    }
    if (names.size() > shown) {
        lines.append(Texts::tr("and %1 more").arg(names.size() - shown));
    }
    return lines.join(u'\n');
}

QString named(const QString &what, const QStringList &names)
{
    QStringList lines;
    lines.reserve(names.size());
    for (const QString &name : names) {
        lines.append(shownName(name));
    }
    return listed(what, lines);
}

QStringList withReasons(const QList<KeptLibraries::Unreadable> &patches)
{
    QStringList lines;
    for (const KeptLibraries::Unreadable &patch : patches) {
        lines.append(Texts::tr("%1: %2").arg(shownName(patch.name), patch.reason));
    }
    return lines;
}

QString defaultOf(const KeptLibraries::Preview &preview)
{
    if (!preview.isDefaultChanging) {
        return {};
    }
    return preview.defaultName.isEmpty()
        ? Texts::tr("No patch will be the default any more.")
        : Texts::tr("The default patch will be \"%1\".").arg(shownName(preview.defaultName));
}

} // namespace

QList<LibraryCheckRow> KeptLibraryText::rows(const LibraryHealth &health, const QString &directory)
{
    QList<LibraryCheckRow> rows;
    if (!health.keptLibraries.isEmpty()) {
        rows.append({.text = Texts::tr("Library files (%1)").arg(health.keptLibraries.size())});
    }
    for (const KeptLibrary &library : health.keptLibraries) {
        const QString count = library.content ? countOf(library.content->patches.size()) : Texts::tr("cannot be read");
        rows.append({.text = QStringLiteral("%1 \u2013 %2").arg(momentOf(library), count),
            .details = Texts::tr("File: %1").arg(library.file),
            .keptLibrary = library.file});
    }
    if (!health.keptPatchFiles.isEmpty()) {
        rows.append(
            {.text = Texts::tr("Files that were set aside for a patch's (%1)").arg(health.keptPatchFiles.size())});
    }
    for (const QString &file : health.keptPatchFiles) {
        rows.append({.text = file,
            .details =
                Texts::tr("This file stood in the place of a patch's and did not hold just that patch. It is here "
                          "for you to look at; the library does not need it.\n\nFile: %1")
                    .arg(QDir(directory).filePath(file))});
    }
    return rows;
}

QString KeptLibraryText::preview(const std::optional<KeptLibraries::Preview> &preview)
{
    if (!preview) {
        return Texts::tr("This file is not a complete library file and cannot be restored.");
    }
    if (preview->patches.isEmpty()) {
        return Texts::tr("None of its patches has a file that can be read, so that there is nothing to restore.");
    }
    QStringList paragraphs{Texts::tr("The library will hold %1.").arg(countOf(preview->patches.size())),
        named(Texts::tr("Come back"), preview->comingBack),
        named(Texts::tr("Get their former name, comment and marks"), preview->changing),
        named(Texts::tr("Leave the library, while their files stay"), preview->leaving),
        named(Texts::tr("Cannot come back, because their files are gone"), preview->withoutFile),
        listed(Texts::tr("Cannot come back, because their files cannot be read"), withReasons(preview->unreadable)),
        defaultOf(*preview), preview->isOrderChanging ? Texts::tr("The patches get their former order.") : QString()};
    paragraphs.removeAll(QString());
    if (paragraphs.size() == 1) {
        paragraphs.append(Texts::tr("Its patches are those of the present library."));
    }
    paragraphs.append(Texts::tr("The present library is kept and becomes the first of this list. Restoring that one "
                                "takes everything back."));
    return paragraphs.join(QStringLiteral("\n\n"));
}
