#!/usr/bin/python3
"""The way of a list from import to export, with the mouse: main_job.py PROGRAM VELGOR SAMPLES ARTIFACTS"""

from session import CONTENT, LIBRARY, check_equal, content_title, count_line, run, spoken

# Slots that are dragged into the library, and the slot that one of them then goes to: 1.3, 2.2, 3.3 and 2.2.
DRAGGED = [2, 4, 8]
TARGET = 4
COMMENT = "Neck pickup, tone rolled off"
FLAGS = ["Guitar", "Clean", "Rythm"]


def names(patches):
    return [patch["name"] for patch in patches]


def fill_library(session):
    program = session.program
    for index in DRAGGED:
        program.click(program.row(CONTENT, index), None if index == DRAGGED[0] else "ctrl")
    program.drag(program.row(CONTENT, DRAGGED[1]), program.find("list", LIBRARY))
    kept = [session.demo_patches[index] for index in DRAGGED]
    session.wait_rows(LIBRARY, [spoken(patch["name"], patch["hasUserIR"]) for patch in kept])
    program.find("label", count_line(3, 3))
    check_equal(program.find("list", LIBRARY).selected_names, program.rows_of(LIBRARY)[:1], "selection after the drop")
    return kept


def classify(session):
    program = session.program
    for name in FLAGS:
        flag = program.button(name)
        program.click(flag)
        program.wait(lambda pressed=flag: pressed.has("checked"), f'"{name}" to be set')
    program.set_text(program.find("text", "Comment"), COMMENT)


def place(session, patch):
    """Drags a library row onto a slot, which shows it from then on."""
    program = session.program
    expected = program.rows_of(CONTENT)
    expected[TARGET] = spoken(patch["name"], patch["hasUserIR"], "2.2 ")
    program.drag(program.row(LIBRARY, 2), program.row(CONTENT, TARGET))
    session.wait_rows(CONTENT, expected)


def export(session, placed):
    program = session.program
    exported = session.home / "New list.prst"
    program.click(program.button("Export"))
    session.export(exported)
    status, output = session.velgor.check(exported)
    check_equal(status, 0, f"check of the exported list ({output})")
    expected = names(session.demo_patches)
    expected[TARGET] = placed["name"]
    check_equal(names(session.velgor.patches(exported)), expected, "names in the exported list")


def is_classified(patches):
    return len(patches) == 3 and patches[0]["comment"] == COMMENT and patches[0]["guitar"] and patches[0]["rythm"]


def main_job(session):
    program = session.start()
    program.find("label", content_title(0))
    program.find("label", count_line(0, 0))
    session.import_demo()
    session.wait_rows(CONTENT, session.demo_rows())
    kept = fill_library(session)
    classify(session)
    place(session, kept[2])
    export(session, kept[2])
    saved = session.wait_saved(is_classified, "the library on disk")
    check_equal(names(session.velgor.library(session.library_directory)), names(kept), "the library on disk")
    rows = program.rows_of(LIBRARY)
    session.quit()

    program = session.start()
    session.wait_rows(LIBRARY, rows)
    program.click(program.row(LIBRARY, 0))
    check_equal(program.find("text", "Comment").text, COMMENT, "comment after a new start")
    for name in FLAGS:
        check_equal(program.button(name).has("checked"), True, f'"{name}" after a new start')
    check_equal(program.button("Bass").has("checked"), False, '"Bass" after a new start')
    session.quit()
    check_equal(session.wait_saved(is_classified, "the library on disk"), saved, "the library after the second run")


if __name__ == "__main__":
    run(main_job)
