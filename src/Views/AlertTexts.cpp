#include "AlertTexts.h"

#include "ContentFiles.h"
#include "FirmwareBadge.h"
#include "LibraryEditor.h"
#include "LibraryFileNames.h"
#include "LibraryStorageManager.h"
#include "Utf8Text.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(AlertTexts)
};

/// Of a name in a message; longer ones push the buttons off the screen.
constexpr qsizetype longestName = 80;

Alert notice(const QString &title, const QString &text)
{
    return {.title = title, .text = text, .acceptLabel = {}, .safeLabel = Texts::tr("OK")};
}

/// A notice from which the user can go on to the check of the library.
Alert checkable(const QString &title, const QString &text)
{
    return {
        .title = title, .text = text, .acceptLabel = Texts::tr("Check Library..."), .safeLabel = Texts::tr("Not Now")};
}

/// What happened, and below it what that means.
QString inParagraphs(const QString &reason, const QString &advice)
{
    return reason + QStringLiteral("\n\n") + advice;
}

/// A name in it may be endless; the file stands at the end.
QString shortened(const QString &line)
{
    return line.size() <= 2 * longestName ? line : line.first(longestName) + QChar(0x2026) + line.last(longestName);
}

/// The first few of many lines, and how many more there are.
QString firstLines(const QStringList &lines)
{
    constexpr qsizetype shown = 3;
    QStringList first;
    for (const QString &line : lines.first(std::min(shown, lines.size()))) {
        first.append(shortened(line));
    }
    if (lines.size() > shown) {
        first.append(Texts::tr("and %1 more").arg(lines.size() - shown));
    }
    return first.join(u'\n');
}

} // namespace

Alert AlertTexts::openError(const Desk &desk)
{
    return notice(Texts::tr("Could not import file"),
        inParagraphs(desk.contentFiles.problem(),
            Texts::tr("A preset file (.prst) exported by the editor of your Velgor is expected. The list was not "
                      "changed.")));
}

Alert AlertTexts::saveError(const Desk &desk)
{
    return notice(Texts::tr("Could not export file"),
        inParagraphs(desk.contentFiles.problem(),
            Texts::tr("A file that was there before is unchanged. Choose another place and export again.")));
}

Alert AlertTexts::selectDefault(const Desk &desk)
{
    const QString text = desk.library.count() == 0
        ? Texts::tr("A new list is filled with the default patch. Keep a patch in the library, select it and press "
                    "\"Default\".")
        : Texts::tr("A new list is filled with the default patch. Select a patch in the library and press "
                    "\"Default\".");
    return notice(Texts::tr("You have to select a default patch in the library"), text);
}

Alert AlertTexts::mixVersions(const Desk &desk)
{
    QStringList parts;
    for (auto entry = desk.content.versions().begin(); entry != desk.content.versions().end(); ++entry) {
        parts.append(Texts::tr("%1: %2").arg(FirmwareBadge::shownVersion(entry.key()), QString::number(entry.value())));
    }
    return notice(Texts::tr("You should not mix various versions of Velgor firmware in a preset file"),
        Texts::tr("Slots by firmware: %1. The patch was placed; the badges of the slots show which ones differ.")
            .arg(parts.join(QStringLiteral(", "))));
}

Alert AlertTexts::readError(const Desk &desk)
{
    return checkable(Texts::tr("Could not access to library directory."),
        inParagraphs(desk.storage.readProblem(),
            Texts::tr("The window shows an empty library. The file stays as it is; before the first change is saved "
                      "it is kept under a dated name beside it.")));
}

Alert AlertTexts::writeError(const Desk &desk)
{
    if (!LibraryFileNames::isListable(desk.storage.libDirectory())) {
        return {.title = Texts::tr("Could not save one or more library files"),
            .text = inParagraphs(desk.storage.libDirectory(),
                Texts::tr(
                    "The path of the library folder holds spaces or letters beyond A to Z. Patches are saved there, "
                    "but the files of renamed and deleted patches stay behind. Move the library to a folder "
                    "whose path does without.")),
            .acceptLabel = Texts::tr("Move Library..."),
            .safeLabel = Texts::tr("Not Now")};
    }
    return notice(Texts::tr("Could not save one or more library files"),
        inParagraphs(firstLines(desk.storage.writeProblems()),
            Texts::tr("Your changes are in the window. They are saved with the next change, or when the window "
                      "closes, once the cause is gone.")));
}

Alert AlertTexts::deleteConfirm(const Desk &desk)
{
    Alert alert{
        .title = {}, .text = {}, .acceptLabel = Texts::tr("Yes"), .safeLabel = Texts::tr("No"), .isDestructive = true};
    if (desk.library.isMultiSel()) {
        const qsizetype ticked = desk.library.tickedCount();
        alert.title = Texts::tr("Do you really want to delete %1 patches?").arg(ticked);
        alert.text = Texts::tr("The ticked patches are removed from the library and their files are deleted. Slots "
                               "that use them keep their copies.");
        return alert;
    }
    alert.title = Texts::tr("Do you really want to delete 1 patch?");
    if (const VelgorPatch *patch = desk.libraryEditor.selectedPatch()) {
        alert.text = Texts::tr("\"%1\" is removed from the library and its file is deleted.")
                         .arg(Utf8Text::firstCharacters(patch->name.simplified(), longestName));
        const qsizetype uses = desk.libraryEditor.inContentPatch(patch->id()).size();
        if (uses == 1) {
            alert.text += u' ' + Texts::tr("The slot that uses it keeps its copy.");
        } else if (uses > 1) {
            alert.text += u' ' + Texts::tr("The %1 slots that use it keep their copies.").arg(uses);
        }
    }
    return alert;
}

Alert AlertTexts::confirmExport(const Desk &desk)
{
    const qsizetype slotCount = desk.content.velgorContentPatchList().size();
    return {.title = Texts::tr("I know that this file has not been created by a genuine Ostrel product and I assume "
                               "taking the risk of using it."),
        .text = slotCount == 1
            ? Texts::tr("1 slot will be written to a new preset file. Keep a backup made with the editor "
                        "of your Velgor.")
            : Texts::tr("%1 slots will be written to a new preset file. Keep a backup made with the "
                        "editor of your Velgor.")
                  .arg(slotCount),
        .acceptLabel = Texts::tr("OK"),
        .safeLabel = Texts::tr("I don't accept"),
        .isDestructive = true};
}

Alert AlertTexts::replaceUnexported(const QString &path)
{
    return {.title = Texts::tr("The list has changes that were not exported"),
        .text = Texts::tr("They are lost when %1 takes its place.").arg(QFileInfo(path).fileName()),
        .acceptLabel = Texts::tr("Import"),
        .safeLabel = Texts::tr("Cancel"),
        .isDestructive = true};
}

Alert AlertTexts::closeUnexported(const Desk &desk)
{
    Q_UNUSED(desk)
    return {.title = Texts::tr("The list has changes that were not exported"),
        .text = Texts::tr("They are lost when the window closes. Patches of the library are not affected."),
        .acceptLabel = Texts::tr("Close without Exporting"),
        .safeLabel = Texts::tr("Cancel"),
        .isDestructive = true};
}

Alert AlertTexts::closeUnsaved(const Desk &desk)
{
    return {.title = Texts::tr("Could not save one or more library files"),
        .text = inParagraphs(firstLines(desk.storage.writeProblems()),
            Texts::tr("Changes of the library are lost when the window closes now.")),
        .acceptLabel = Texts::tr("Close without Saving"),
        .safeLabel = Texts::tr("Cancel"),
        .isDestructive = true};
}

Alert AlertTexts::directoryInUse(const QString &reason)
{
    return notice(Texts::tr("Could not access to library directory."), reason);
}

Alert AlertTexts::cannotShowDirectory(const QString &directory)
{
    return notice(Texts::tr("Could not show the library folder"),
        Texts::tr("No program of the desktop opens folders. The library is in %1").arg(directory));
}

Alert AlertTexts::cannotMoveLibrary(const QString &problem)
{
    return notice(
        Texts::tr("Could not move the library"), inParagraphs(problem, Texts::tr("The library is where it was.")));
}

Alert AlertTexts::keptFiles(const Desk &desk)
{
    const QString reason = desk.storage.wasChangedByOthers()
        ? Texts::tr("Another program changed the library file after it was loaded here. What it wrote is kept; the "
                    "library file now holds what this window shows.")
        : Texts::tr("They hold what could not be loaded or is not understood, or what stood in the place of a patch's "
                    "file. Of former library files the last twenty stay, and each for thirty days.");
    return checkable(Texts::tr("The former files of the library are kept"),
        inParagraphs(firstLines(desk.storage.keptFiles()), reason));
}

Alert AlertTexts::incompleteLibrary(const Desk &desk)
{
    const bool areAllUnread = desk.storage.unreadPatches() == desk.storage.droppedPatches().size();
    const QString advice = areAllUnread
        ? Texts::tr("They stay in the library file with everything that was said about them, and are back once their "
                    "files can be read.")
        : Texts::tr("The library file that names them is kept under a dated name in the library folder before the "
                    "first change is saved.");
    return checkable(Texts::tr("Some patches of the library could not be loaded"),
        inParagraphs(firstLines(desk.storage.droppedProblems()), advice));
}
