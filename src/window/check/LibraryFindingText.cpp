#include "LibraryFindingText.h"

#include "ShownName.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

using Kind = LibraryFinding::Kind;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(LibraryFindingText)
};

struct KindText {
    Kind kind;
    const char *title;
    const char *meaning;
    const char *advice; ///< where nothing can be added
};

constexpr KindText kindTexts[] = {
    {Kind::DamagedLibraryFile, QT_TRANSLATE_NOOP("LibraryFindingText", "Library file not readable"),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "This file holds the list of the patches with their comments and marks. It stays as it is until the first "
            "change is saved, and is then kept under a dated name."),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "Restore a former library, or add the patches whose files are there; they are listed below.")},
    {Kind::UnlistedDirectory, QT_TRANSLATE_NOOP("LibraryFindingText", "Library folder not readable"),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "The names of the files in the library folder cannot be read, so that there may be more to find."),
        QT_TRANSLATE_NOOP(
            "LibraryFindingText", "Give yourself the right to read the folder, and check the library again.")},
    {Kind::PatchWithoutFile, QT_TRANSLATE_NOOP("LibraryFindingText", "Patches without a file"),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "The library file names this patch, but its preset file was not there when the library was loaded."),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "If you have the file in a backup, put it into the library folder and check the library again.")},
    {Kind::FileWithoutEntry, QT_TRANSLATE_NOOP("LibraryFindingText", "Unknown files"),
        QT_TRANSLATE_NOOP("LibraryFindingText", "This preset file is whole, but belongs to no patch of the library."),
        QT_TRANSLATE_NOOP("LibraryFindingText", "Nothing is done about it.")},
    {Kind::FileOfOtherContent, QT_TRANSLATE_NOOP("LibraryFindingText", "Mixed-up files"),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "The number in the name of this preset file is not that of the patch in it. Files that were renamed or "
            "exchanged by hand look like this."),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "Nothing is done about it. If a patch does not sound as it should, put its file from a backup in this "
            "place. If it is right as it is, duplicate it and delete the original.")},
    {Kind::UnreadableFile, QT_TRANSLATE_NOOP("LibraryFindingText", "Files not readable"),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "This preset file is damaged, or may not be read. It is never deleted: where a good one takes its place, "
            "it is set aside."),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "If you have the file in a backup, put it in this place and check the library again.")},
    {Kind::ForeignFile, QT_TRANSLATE_NOOP("LibraryFindingText", "Other files with the number of a patch"),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "The library did not make this file, but the number in its name is that of a patch: it is removed when "
            "the patch is deleted, and may be moved when the patch is renamed."),
        QT_TRANSLATE_NOOP("LibraryFindingText", "If you need it, move it to another folder.")},
    {Kind::Leftover, QT_TRANSLATE_NOOP("LibraryFindingText", "Left by an interruption"),
        QT_TRANSLATE_NOOP("LibraryFindingText", "The program was ended while it wrote this file."),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "You need not do anything. The next start of the program takes over what is in it and removes it.")},
    {Kind::SpareFile, QT_TRANSLATE_NOOP("LibraryFindingText", "Files that are not needed"),
        QT_TRANSLATE_NOOP("LibraryFindingText",
            "This preset file is not the one that the library uses, and holds just what the library has."),
        QT_TRANSLATE_NOOP("LibraryFindingText", "You may delete it or leave it there.")},
};

QString titleOf(const KindText &kind, qsizetype count, qsizetype rescued)
{
    const QString title = Texts::tr(kind.title);
    if (rescued == 0) {
        return Texts::tr("%1 (%2)").arg(title, QString::number(count));
    }
    return Texts::tr("%1 (%2, %3 can be added)").arg(title, QString::number(count), QString::number(rescued));
}

/// In one line, whatever a name holds.
QString lineOf(const LibraryFinding &finding)
{
    QStringList parts{shownName(finding.name), shownPath(finding.file)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" \u2013 "));
}

QString detailsOf(const LibraryFinding &finding, const KindText &kind)
{
    QStringList facts;
    if (!finding.name.isEmpty()) {
        facts.append(Texts::tr("Patch: \"%1\" (%2)").arg(shownName(finding.name), QString::number(finding.id)));
    }
    if (!finding.file.isEmpty()) {
        facts.append(Texts::tr("File: %1").arg(isolated(finding.file)));
    }
    if (!finding.reason.isEmpty()) {
        facts.append(Texts::tr("Found: %1").arg(finding.reason));
    }
    const QString advice = finding.rescued
        ? Texts::tr(R"("Add" puts "%1" into the library.)").arg(shownName(finding.rescued->name))
        : Texts::tr(kind.advice);
    QStringList paragraphs{Texts::tr(kind.meaning), facts.join(u'\n'), advice};
    paragraphs.removeAll(QString());
    return paragraphs.join(QStringLiteral("\n\n"));
}

} // namespace

QList<LibraryCheckRow> LibraryFindingText::rows(const QList<LibraryFinding> &findings)
{
    QList<LibraryCheckRow> rows;
    for (const KindText &kind : kindTexts) {
        QList<LibraryCheckRow> group;
        qsizetype rescued = 0;
        for (const LibraryFinding &finding : findings) {
            if (finding.kind == kind.kind) {
                group.append({.text = lineOf(finding), .details = detailsOf(finding, kind)});
                rescued += finding.rescued ? 1 : 0;
            }
        }
        if (group.isEmpty()) {
            continue;
        }
        std::sort(group.begin(), group.end(), [](const LibraryCheckRow &a, const LibraryCheckRow &b) {
            const int order = QString::localeAwareCompare(a.text, b.text);
            return order != 0 ? order < 0 : a.details < b.details;
        });
        rows.append({.text = titleOf(kind, group.size(), rescued)});
        rows += group;
    }
    return rows;
}

QString LibraryFindingText::summary(qsizetype findings)
{
    if (findings == 0) {
        return Texts::tr("Everything in the library folder is as it should be");
    }
    return findings == 1 ? Texts::tr("1 finding in the library folder")
                         : Texts::tr("%1 findings in the library folder").arg(findings);
}
