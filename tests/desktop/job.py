"""The way of a list from import to export, with hands that differ: each script brings its own."""

from session import CONTENT, LIBRARY, check_equal, content_title, count_line, spoken

# The slots 1.3, 2.2 and 3.3 go into the library; the last of these patches then goes into slot 2.2.
KEPT = [2, 4, 8]
TARGET = 4
COMMENT = "Neck pickup, tone rolled off"
FLAGS = ["Guitar", "Clean", "Rythm"]


def names(patches):
    return [patch["name"] for patch in patches]


def is_classified(patches):
    first = patches[0] if len(patches) == len(KEPT) else {}
    return bool(first) and first["comment"] == COMMENT and all(first[flag.lower()] for flag in FLAGS)


def check_kept(session):
    kept = [session.demo_patches[index] for index in KEPT]
    session.wait_rows(LIBRARY, [spoken(patch["name"], patch["hasUserIR"]) for patch in kept])
    session.program.find("label", count_line(3, 3))
    library = session.program.find("list", LIBRARY)
    check_equal(library.selected_names, library.row_names[:1], "selection in the library")


def check_details(session):
    program = session.program
    check_equal(program.find("text", "Comment").text, COMMENT, "comment")
    for name in FLAGS + ["Bass"]:
        flag = program.button(name)
        program.wait(lambda of=flag, set_=name in FLAGS: of.has("checked") == set_, f'the state of "{name}"')


def check_placed(session, former_rows):
    placed = session.demo_patches[KEPT[2]]
    former_rows[TARGET] = spoken(placed["name"], placed["hasUserIR"], "2.2 ")
    session.wait_rows(CONTENT, former_rows)


def check_exported(session, file):
    status, output = session.velgor.check(file)
    check_equal(status, 0, f"check of the exported list ({output})")
    expected = names(session.demo_patches)
    expected[TARGET] = expected[KEPT[2]]
    check_equal(names(session.velgor.patches(file)), expected, "names in the exported list")


def do(session, hand):
    """`hand` does the steps, in the window of the session; what comes of them is looked at here."""
    program = session.start()
    program.find("label", content_title(0))
    program.find("label", count_line(0, 0))
    hand.import_file(session, session.demo)
    session.wait_rows(CONTENT, session.demo_rows())
    program.find("label", content_title(99))
    hand.keep(session, KEPT)
    check_kept(session)
    hand.classify(session, FLAGS, COMMENT)
    check_details(session)
    rows = program.rows_of(CONTENT)
    hand.place(session, 2, TARGET)
    check_placed(session, rows)
    exported = session.home / "New list.prst"
    hand.export(session, exported)
    session.desktop.wait(exported.exists, "the exported file")
    check_exported(session, exported)
    saved = session.wait_saved(is_classified)
    check_equal(names(saved), [names(session.demo_patches)[index] for index in KEPT], "the library on disk")
    rows = program.rows_of(LIBRARY)
    hand.quit(session)
    check_equal(program.wait_exit(), 0, "exit status")

    program = session.start()
    session.wait_rows(LIBRARY, rows)
    hand.select(session, 0)
    check_details(session)
    hand.quit(session)
    check_equal(program.wait_exit(), 0, "exit status of the second run")
    check_equal(session.velgor.library(session.library_directory), saved, "the library after the second run")
