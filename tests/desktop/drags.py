#!/usr/bin/python3
"""Drags by a real mouse of what is more than one row, and of what is not all shown: drags.py PROGRAM VELGOR SAMPLES
ARTIFACTS"""

from session import CONTENT, LIBRARY, check_equal, count_line, run, spoken

KEPT = 6


def place(slot):
    return f"{slot // 3 + 1}.{slot % 3 + 1} "


def rows_in_order(patches):
    return [spoken(patch["name"], patch["hasUserIR"], place(slot)) for slot, patch in enumerate(patches)]


def library_rows(patches):
    return [spoken(patch["name"], patch["hasUserIR"]) for patch in patches]


def tick_point(program, row):
    left, top, _, height = program.row(LIBRARY, row).rectangle
    return left + 20, top + height // 2


def check_several_slots_to_the_library(session):
    program = session.program
    program.click(program.row(CONTENT, 0))
    program.click(program.row(CONTENT, KEPT - 1), "shift")
    program.drag(program.row(CONTENT, 2), program.find("list", LIBRARY))
    session.wait_rows(LIBRARY, library_rows(session.demo_patches[:KEPT]))
    program.find("label", count_line(KEPT, KEPT))


def check_several_slots_between_the_others(session):
    """Slots that stand apart go together, in their order, to where the line is."""
    program = session.program
    patches = list(session.demo_patches)
    program.click(program.row(CONTENT, 1))
    program.click(program.row(CONTENT, 4), "ctrl")
    program.drag(program.row(CONTENT, 4), program.row(CONTENT, 8), down=0.8)
    moved = [patches[1], patches[4]]
    patches = [patches[0], *patches[2:4], *patches[5:9], *moved, *patches[9:]]
    session.wait_rows(CONTENT, rows_in_order(patches))
    return patches


def check_ticked_patches(session, slots):
    """All that is ticked goes along, from whichever row the drag begins, and the card covers no row that it fills."""
    program = session.program
    program.click(program.button("Select"))
    for row in (4, 0, 3):
        program.click(tick_point(program, row))
    program.wait(lambda: program.button("Select").description == "3 ticked", "three ticks")
    seen = []

    def look():
        program.find("label", "Replaces 3 slots, 2.3 to 3.2")
        left, top, width, _ = program.row(CONTENT, 5).rectangle
        _, bottom_top, _, height = program.row(CONTENT, 7).rectangle
        area = (left, top, left + width, bottom_top + height)
        seen.append(session.desktop.still_screenshot().crop(area).tobytes())
        # Where the pointer is in the row must not matter: the card goes with it.
        session.desktop.mouse.move(left + width - 30, top + 4)
        program.sync()
        seen.append(session.desktop.still_screenshot().crop(area).tobytes())
        session.desktop.mouse.move(left + 30, top + 4)
        program.sync()
        seen.append(session.desktop.still_screenshot().crop(area).tobytes())

    program.drag(program.row(LIBRARY, 1), program.row(CONTENT, 5), over_target=look)
    check_equal(len(set(seen)), 1, "pictures of the rows that are filled")
    placed = [session.demo_patches[row] for row in (0, 3, 4)]
    slots = [*slots[:5], *placed, *slots[8:]]
    session.wait_rows(CONTENT, rows_in_order(slots))
    program.wait(lambda: not program.button("Select").has("checked"), "the end of ticking")
    return slots


def check_ticked_patches_that_do_not_fit(session, slots):
    program = session.program
    program.click(program.button("Select"))
    for row in range(3):
        program.click(tick_point(program, row))
    last = len(slots) - 1
    name = session.demo_patches[2]["name"]
    missing = f'2 of 3 patches fit, no slot is left for "{name}"'
    places = f"{place(last - 1).strip()} to {place(last).strip()}"
    program.drag(
        program.row(LIBRARY, 0),
        program.row(CONTENT, last - 1),
        over_target=lambda: program.find("label", f"Replaces 2 slots, {places}. {missing}"),
    )
    slots = [*slots[: last - 1], *session.demo_patches[:2]]
    session.wait_rows(CONTENT, rows_in_order(slots))
    program.find("label", f"2 patches placed in slots {places}. {missing}")


def check_under_a_filter(session):
    """The line stands between the rows that are shown; where that is in the whole library is said."""
    program = session.program
    patches = session.demo_patches[:KEPT]
    shown = [row for row in range(KEPT) if row % 2 == 0]
    for row in shown:
        program.click(program.row(LIBRARY, row))
        if row == shown[0]:
            program.click(program.button("Solo"))
        else:
            program.press("ctrl+4")
    program.click(program.button("Filter: Solo"))
    session.wait_rows(LIBRARY, library_rows([patches[row] for row in shown]))
    before = patches[1]["name"]
    said = f'Moves "{patches[4]["name"]}" to row 2 of {KEPT} in the whole library, behind "{patches[0]["name"]}"'
    program.drag(
        program.row(LIBRARY, 2),
        program.row(LIBRARY, 0),
        down=0.8,
        over_target=lambda: program.find("label", said),
    )
    order = [0, 4, 1, 2, 3, 5]
    program.click(program.button("Filter: Solo"))
    session.wait_rows(LIBRARY, library_rows([patches[row] for row in order]))
    names = [patches[row]["name"] for row in order]
    session.wait_saved(lambda stored: [patch["name"] for patch in stored] == names)
    check_equal(names[2], before, "the row that was passed")


def drags(session):
    program = session.start()
    session.import_demo()
    check_several_slots_to_the_library(session)
    slots = check_several_slots_between_the_others(session)
    slots = check_ticked_patches(session, slots)
    check_ticked_patches_that_do_not_fit(session, slots)
    check_under_a_filter(session)
    program.terminate()
    check_equal(program.wait_exit(), 0, "exit status")


if __name__ == "__main__":
    run(drags)
