#include "AlertTexts.h"

#include "AlertParts.h"
#include "CommandTargets.h"
#include "ContentEditor.h"
#include "Editors.h"
#include "FileExistence.h"
#include "FirmwareBadge.h"
#include "LibraryEditor.h"
#include "LibraryFileNames.h"
#include "LibraryPlace.h"
#include "LibraryStorageManager.h"
#include "PatchName.h"
#include "ShownName.h"
#include "StatusText.h"
#include "UnreadableNames.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>

#include <algorithm>

using namespace AlertParts;

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(AlertTexts)
};

bool isSaved(const LibraryStorageManager &storage)
{
    return storage.wasLastSaveWritten() && !storage.hasUnsavedChanges();
}

QString savedLater()
{
    return Texts::tr("Your changes are in the window. They are saved with the next change, or when the window closes, "
                     "once the cause is gone.");
}

/// What could not be done is about single files in its folder.
bool isAboutFiles(const QStringList &problems, const QString &directory)
{
    const QString writeTest = LibraryFileNames::writeTestFile(directory);
    return !problems.isEmpty() && std::all_of(problems.begin(), problems.end(), [&](const QString &problem) {
        return problem.startsWith(directory + u'/') && !problem.startsWith(writeTest);
    });
}

Alert saveProblem(const QString &text)
{
    return notice(Texts::tr("Could not save one or more library files"), text);
}

/// The cause goes with another folder.
Alert movable(const QString &text)
{
    Alert alert = saveProblem(text);
    alert.acceptLabel = Texts::tr("&Move Library...");
    alert.safeLabel = Texts::tr("&Not Now");
    return alert;
}

/// Going on destroys something.
Alert losing(const QString &title, const QString &text, const QString &acceptLabel)
{
    return {.title = title,
        .text = text,
        .acceptLabel = acceptLabel,
        .safeLabel = Texts::tr("&Cancel"),
        .isDestructive = true};
}

} // namespace

Alert AlertTexts::openError(const QString &problem)
{
    return notice(Texts::tr("Could not import file"),
        inParagraphs(shownProblem(problem),
            Texts::tr("A preset file (.prst) exported by the editor of your Velgor is expected. The list was not "
                      "changed.")));
}

Alert AlertTexts::unreadableNames(const VelgorContent &content)
{
    const UnreadableNames names(content);
    const QString affected = names.count() == 1
        ? Texts::tr("The name in slot %1 is not valid text and is shown as \"%2\".")
        : Texts::tr("The names in slots %1 are not valid text and are shown as \"%2\".");
    return notice(Texts::tr("Some names in the file cannot be read"),
        inParagraphs(affected.arg(names.places(), PatchName::unreadable()),
            Texts::tr("An export writes the bytes that the file has for such a name, unless you rename the patch.")));
}

Alert AlertTexts::unreadableNamesKept(const QStringList &places)
{
    return notice(Texts::tr("Some names cannot be read"),
        inParagraphs(firstLines(places),
            Texts::tr(
                "These names are not valid text and are shown as \"%1\". An export writes the bytes that the file "
                "has for such a name, unless you rename the patch.")
                .arg(PatchName::unreadable())));
}

Alert AlertTexts::saveError(const QString &problem)
{
    return notice(Texts::tr("Could not export file"),
        inParagraphs(shownProblem(problem),
            Texts::tr("A file that was there before is unchanged. Choose another place and export again.")));
}

Alert AlertTexts::selectDefault(const VelgorLibrary &library)
{
    const QString text = library.count() == 0
        ? Texts::tr("A new list is filled with the default patch. Keep a patch in the library, select it and press "
                    "\"Default\".")
        : Texts::tr("A new list is filled with the default patch. Select a patch in the library and press "
                    "\"Default\".");
    return notice(Texts::tr("You have to select a default patch in the library"), text);
}

Alert AlertTexts::mixVersions(const VelgorContent &content, const Editors &editors)
{
    QStringList parts;
    for (auto entry = content.versions().begin(); entry != content.versions().end(); ++entry) {
        parts.append(Texts::tr("%1: %2").arg(FirmwareBadge::shownVersion(entry.key()), QString::number(entry.value())));
    }
    const ContentEditor::Placement &placement = editors.content.lastPlacement();
    QStringList sentences{Texts::tr("Slots by firmware: %1").arg(parts.join(QStringLiteral(", "))),
        StatusText::ofPlacement(placement),
        StatusText::ofHidden(editors.library.hiddenCount(placement.patches), placement.patches.size()),
        Texts::tr("The badges of the slots show which ones differ.")};
    sentences.removeAll(QString());
    return notice(Texts::tr("You should not mix various versions of Velgor firmware in a preset file"),
        sentences.join(QStringLiteral(". ")));
}

Alert AlertTexts::readError(const LibraryStorageManager &storage)
{
    return checkable(Texts::tr("Could not access to library directory."),
        inParagraphs(shownProblem(storage.readProblem().value_or(Problem()).text()),
            Texts::tr("The window shows an empty library. The file stays as it is; before the first change is saved "
                      "it is kept under a dated name beside it.")));
}

Alert AlertTexts::writeError(const LibraryStorageManager &storage)
{
    if (isSaved(storage) && !LibraryPlace::isListable(storage.libDirectory())) {
        return movable(inParagraphs(shownPath(storage.libDirectory()),
            Texts::tr("The path of the library folder holds spaces or letters beyond A to Z. Patches are saved there, "
                      "but the files of renamed and deleted patches stay behind. Move the library to a folder "
                      "whose path does without.")));
    }
    if (existence(storage.libDirectory()) == FileExistence::file) {
        return movable(inParagraphs(firstLines(storage.writeProblems()),
            inParagraphs(Texts::tr("A file stands in the place of the library folder, so that nothing can be saved "
                                   "there. Move that file away, or move the library to another folder."),
                isSaved(storage) ? QString() : savedLater())));
    }
    if (isSaved(storage) && isAboutFiles(storage.writeProblems(), storage.libDirectory())) {
        return checkable(Texts::tr("The library is saved, but not every file in its folder is in order"),
            inParagraphs(firstLines(storage.writeProblems()),
                Texts::tr("Every patch is saved. What is named here was left as it is. A file that does not belong to "
                          "the library can be moved to another folder.")));
    }
    const QString advice = isSaved(storage)
        ? Texts::tr("The patches of the library are saved. Only what is named here could not be done.")
        : savedLater();
    return saveProblem(inParagraphs(firstLines(storage.writeProblems()), advice));
}

Alert AlertTexts::deleteConfirm(const VelgorLibrary &library, const LibraryEditor &editor)
{
    Alert alert{.title = {},
        .text = {},
        .acceptLabel = Texts::tr("&Yes"),
        .safeLabel = Texts::tr("&No"),
        .isDestructive = true};
    const QList<VelgorPatch> patches = CommandTargets::several(library);
    const qsizetype hidden = editor.hiddenCount(patches);
    if (CommandTargets::areTicked(library)) {
        QStringList names;
        for (const VelgorPatch &patch : patches) {
            names.append(shownName(patch.name));
        }
        QStringList sentences;
        if (hidden > 0) {
            sentences.append(hidden == names.size() ? Texts::tr("The filter hides all of them.")
                                                    : Texts::tr("The filter hides %1 of these %2.")
                                                          .arg(QString::number(hidden), QString::number(names.size())));
        }
        sentences.append(Texts::tr("The ticked patches are removed from the library and their files are deleted. Slots "
                                   "that use them keep their copies."));
        alert.title = Texts::tr("Do you really want to delete %1 patches?").arg(names.size());
        alert.text = inParagraphs(firstLines(names), sentences.join(u' '));
        return alert;
    }
    alert.title = Texts::tr("Do you really want to delete 1 patch?");
    if (!patches.isEmpty()) {
        const VelgorPatch &patch = patches.first();
        QStringList sentences{
            Texts::tr("\"%1\" is removed from the library and its file is deleted.").arg(shownName(patch.name))};
        if (hidden > 0) {
            sentences.append(Texts::tr("The filter hides it."));
        }
        const qsizetype uses = editor.inContentPatch(patch.id()).size();
        if (uses == 1) {
            sentences.append(Texts::tr("The slot that uses it keeps its copy."));
        } else if (uses > 1) {
            sentences.append(Texts::tr("The %1 slots that use it keep their copies.").arg(uses));
        }
        alert.text = sentences.join(u' ');
    }
    return alert;
}

Alert AlertTexts::confirmExport(const VelgorContent &content)
{
    const qsizetype slotCount = content.velgorContentPatchList().size();
    return {.title = Texts::tr("I know that this file has not been created by a genuine Ostrel product and I assume "
                               "taking the risk of using it."),
        .text = slotCount == 1
            ? Texts::tr("1 slot will be written to a new preset file. Keep a backup made with the editor "
                        "of your Velgor.")
            : Texts::tr("%1 slots will be written to a new preset file. Keep a backup made with the "
                        "editor of your Velgor.")
                  .arg(slotCount),
        .acceptLabel = Texts::tr("&OK"),
        .safeLabel = Texts::tr("I &don't accept"),
        .isDestructive = true};
}

Alert AlertTexts::replaceUnexported(const QString &path)
{
    return losing(Texts::tr("The list has changes that were not exported"),
        path.isEmpty() ? Texts::tr("They are lost when a new list takes its place.")
                       : Texts::tr("They are lost when %1 takes its place.").arg(shownFileName(path)),
        path.isEmpty() ? Texts::tr("&New List") : Texts::tr("&Import"));
}

Alert AlertTexts::severalFiles(const QStringList &paths, bool isListModified)
{
    QStringList left;
    for (const QString &path : paths.sliced(1)) {
        left.append(shownFileName(path));
    }
    QStringList paragraphs{
        Texts::tr("%1 takes the place of the list. These are left out:").arg(shownFileName(paths.first())) + u'\n'
            + firstLines(left),
        Texts::tr("Drop the files on the library to keep the patches of all of them.")};
    if (isListModified) {
        paragraphs.insert(1, Texts::tr("The list has changes that were not exported. They are lost."));
    }
    return {.title = Texts::tr("Only one of %1 files can be imported into the list").arg(paths.size()),
        .text = paragraphs.join(QStringLiteral("\n\n")),
        .acceptLabel = Texts::tr("&Import the First"),
        .safeLabel = Texts::tr("&Cancel"),
        .isDestructive = isListModified};
}

Alert AlertTexts::filesNotKept(const QStringList &problems, qsizetype count)
{
    const QString rest = count == problems.size()
        ? Texts::tr("A preset file (.prst) exported by the editor of your Velgor is expected. The library was not "
                    "changed.")
        : Texts::tr("The patches of the other files are in the library.");
    return notice(Texts::tr("Could not import file"), inParagraphs(firstLines(problems), rest));
}

Alert AlertTexts::closeUnexported()
{
    return losing(Texts::tr("The list has changes that were not exported"),
        Texts::tr("They are lost when the window closes. Patches of the library are not affected."),
        Texts::tr("Close without &Exporting"));
}

Alert AlertTexts::closeUnsaved(const LibraryStorageManager &storage)
{
    return losing(Texts::tr("Could not save one or more library files"),
        inParagraphs(firstLines(storage.writeProblems()),
            Texts::tr("Changes of the library are lost when the window closes now.")),
        Texts::tr("Close without &Saving"));
}

Alert AlertTexts::directoryInUse(const QString &reason)
{
    return notice(Texts::tr("Could not access to library directory."), shownProblem(reason));
}

Alert AlertTexts::cannotShowDirectory(const QString &directory)
{
    return notice(Texts::tr("Could not show the library folder"),
        Texts::tr("No program of the desktop opens folders. The library is in %1").arg(shownPath(directory)));
}

Alert AlertTexts::cannotOpenPage(const QString &address)
{
    return notice(Texts::tr("Could not show the page"),
        inParagraphs(Texts::tr("No program of the desktop opens pages of the web. The address is:"), address));
}

Alert AlertTexts::cannotMoveLibrary(const QString &problem)
{
    return notice(Texts::tr("Could not move the library"),
        inParagraphs(firstLines(problem.split(u'\n')), Texts::tr("The library is where it was.")));
}

Alert AlertTexts::keptFiles(const LibraryStorageManager &storage)
{
    const QString reason = storage.wasChangedByOthers()
        ? Texts::tr("Another program changed the library file after it was loaded here. What it wrote is kept; the "
                    "library file now holds what this window shows.")
        : Texts::tr("They hold what could not be loaded or is not understood, or what stood in the place of a patch's "
                    "file. Of former library files the last twenty stay, and each for thirty days.");
    return checkable(
        Texts::tr("The former files of the library are kept"), inParagraphs(firstLines(storage.keptFiles()), reason));
}

Alert AlertTexts::incompleteLibrary(const LibraryStorageManager &storage)
{
    const bool areAllUnread = storage.unreadPatches() == storage.droppedPatches().size();
    const QString advice = areAllUnread
        ? Texts::tr("They stay in the library file with everything that was said about them, and are back once their "
                    "files can be read.")
        : Texts::tr("The library file that names them is kept under a dated name in the library folder before the "
                    "first change is saved.");
    return checkable(Texts::tr("Some patches of the library could not be loaded"),
        inParagraphs(firstLines(storage.droppedProblems()), advice));
}
