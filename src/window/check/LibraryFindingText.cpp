#include "LibraryFindingText.h"

#include "ShownName.h"

#include <QCoreApplication>

#include <algorithm>
#include <map>

namespace {

using FindingKind = LibraryFinding::Kind;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(LibraryFindingText)
};

struct KindText {
    QString title;
    QString meaning;
    QString advice; ///< where nothing can be added
};

/// In no place but here: the compiler names a kind that is missing.
KindText textOf(FindingKind kind)
{
    switch (kind) {
    case FindingKind::DamagedLibraryFile:
        return {Texts::tr("Library file not readable"),
            Texts::tr(
                "This file holds the list of the patches with their comments and marks. It stays as it is until the "
                "first change is saved, and is then kept under a dated name."),
            Texts::tr("Restore a former library, or add the patches whose files are there; they are listed below.")};
    case FindingKind::UnlistedDirectory:
        return {Texts::tr("Library folder not readable"),
            Texts::tr(
                "The names of the files in the library folder cannot be read, so that there may be more to find."),
            Texts::tr("Give yourself the right to read the folder, and check the library again.")};
    case FindingKind::PatchWithoutFile:
        return {Texts::tr("Patches without a file"),
            Texts::tr(
                "The library file names this patch, but its preset file was not there when the library was loaded."),
            Texts::tr("If you have the file in a backup, put it into the library folder and check the library again.")};
    case FindingKind::FileWithoutEntry:
        return {Texts::tr("Unknown files"),
            Texts::tr("This preset file is whole, but belongs to no patch of the library."),
            Texts::tr("Nothing is done about it.")};
    case FindingKind::FileOfOtherContent:
        return {Texts::tr("Mixed-up files"),
            Texts::tr(
                "The number in the name of this preset file is not that of the patch in it. Files that were renamed or "
                "exchanged by hand look like this."),
            Texts::tr(
                "Nothing is done about it. If a patch does not sound as it should, put its file from a backup in this "
                "place. If it is right as it is, duplicate it and delete the original.")};
    case FindingKind::UnreadableFile:
        return {Texts::tr("Files not readable"),
            Texts::tr(
                "This preset file is damaged, or may not be read. It is never deleted: where a good one takes its "
                "place, it is set aside."),
            Texts::tr("If you have the file in a backup, put it in this place and check the library again.")};
    case FindingKind::ForeignFile:
        return {Texts::tr("Other files with the number of a patch"),
            Texts::tr(
                "The library did not make this file, but the number in its name is that of a patch: it is removed when "
                "the patch is deleted, and may be moved when the patch is renamed."),
            Texts::tr("If you need it, move it to another folder.")};
    case FindingKind::Leftover:
        return {Texts::tr("Left by an interruption"), Texts::tr("The program was ended while it wrote this file."),
            Texts::tr(
                "You need not do anything. The next start of the program takes over what is in it and removes it.")};
    case FindingKind::SpareFile:
        return {Texts::tr("Files that are not needed"),
            Texts::tr("This preset file is not the one that the library uses, and holds just what the library has."),
            Texts::tr("You may delete it or leave it there.")};
    }
    return {};
}

QString titleOf(const KindText &kind, qsizetype count, qsizetype rescued)
{
    if (rescued == 0) {
        return Texts::tr("%1 (%2)").arg(kind.title, QString::number(count));
    }
    return Texts::tr("%1 (%2, %3 can be added)").arg(kind.title, QString::number(count), QString::number(rescued));
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
        : kind.advice;
    QStringList paragraphs{kind.meaning, facts.join(u'\n'), advice};
    paragraphs.removeAll(QString());
    return paragraphs.join(QStringLiteral("\n\n"));
}

} // namespace

QList<LibraryCheckRow> LibraryFindingText::rows(const QList<LibraryFinding> &findings)
{
    // In the order of the kinds.
    std::map<FindingKind, QList<LibraryFinding>> groups;
    for (const LibraryFinding &finding : findings) {
        groups[finding.kind].append(finding);
    }
    QList<LibraryCheckRow> rows;
    for (const auto &[kind, members] : groups) {
        const KindText text = textOf(kind);
        QList<LibraryCheckRow> group;
        qsizetype rescued = 0;
        for (const LibraryFinding &finding : members) {
            group.append({.text = lineOf(finding), .details = detailsOf(finding, text)});
            rescued += finding.rescued ? 1 : 0;
        }
        std::sort(group.begin(), group.end(), [](const LibraryCheckRow &a, const LibraryCheckRow &b) {
            const int order = QString::localeAwareCompare(a.text, b.text);
            return order != 0 ? order < 0 : a.details < b.details;
        });
        rows.append({.text = titleOf(text, group.size(), rescued)});
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
