#!/usr/bin/python3
"""What a screen reader and the keyboard find in the window: accessibility_walk.py PROGRAM VELGOR SAMPLES ARTIFACTS"""

from collections import Counter

from session import CONTENT, LIBRARY, check_equal, count_line, run

from windowdriver import Failure
from windowdriver.accessible import ITEM_ROLES
from windowdriver.program import BUTTON_ROLES, MENU_ROLES

FLAGS = ["Guitar", "Bass", "Rythm", "Solo", "Clean", "Crunch", "Drive", "Higain"]
ALWAYS_THERE = (
    [("list", name) for name in (CONTENT, LIBRARY)]
    + [("text", name) for name in ("Filter by name", "Filter by comment")]
    + [("button", f"Filter: {name}") for name in FLAGS + ["User IR"]]
    + [("button", name) for name in ("Import", "Export", "Reset", "Sort", "Select", "Delete", "Duplicate")]
)
DETAILS = [("text", name) for name in ("Name", "Comment")] + [("button", name) for name in FLAGS + ["Default"]]

FILE_MENU = {"New Velgor file": set(), "Import...": {"ctrl+o"}, "Open Recent": set(), "Tail bit (beta)": set()}
TAIL_BIT_MENU = ["Normal tail bit", "Inverted tail bit"]
LIBRARY_MENU = [
    ("Show library folder", set()),
    ("Check Library...", set()),
    ("Export One Patch", {"ctrl+shift+s"}),
    ("Set as Default Patch", {"ctrl+return"}),
    ("Duplicate Patch", {"ctrl+d"}),
    ("Find Similar Patches", {"ctrl+f"}),
    ("Select All", {"ctrl+shift+a"}),
    ("Delete patch", {"ctrl+del"}),
]
HELP_MENU = ["Send Mon€y to $upport Development", "Online help", "About Velgor Library Manager"]


def controls(program):
    """Everything in sight that can take the focus, but the rows of lists."""
    nodes = program.root.find_all(states=("showing", "focusable"))
    return [node for node in nodes if node.role not in ITEM_ROLES | MENU_ROLES | {"frame", "application"}]


def check_names(program, situation):
    found = controls(program)
    nameless = [node for node in found if not node.name.strip()]
    check_equal([f"{node.role} at {node.rectangle}" for node in nameless], [], f"controls without a name, {situation}")
    twice = [entry for entry, count in Counter((node.role, node.name) for node in found).items() if count > 1]
    check_equal(twice, [], f"names that occur twice, {situation}")
    handles = [node for node in program.root.find_all("grip") if not node.name]
    check_equal(len(handles), 0, f"splitter handles without a name, {situation}")


def check_fixed_names(program, expected, situation):
    found = {("button" if node.role in BUTTON_ROLES else node.role, node.name) for node in controls(program)}
    # A button that is disabled takes no focus, and keeps its name all the same.
    found |= {("button", node.name) for node in program.root.find_all(BUTTON_ROLES)}
    check_equal([entry for entry in expected if entry not in found], [], f"names that are missing, {situation}")


def check_mnemonics(program):
    pressed = Counter(
        key
        for node in program.root.find_all()
        if node.parent is None or node.parent.role != "popup menu"
        for key in node.keys
        if key.startswith("alt+")
    )
    check_equal([key for key, count in pressed.items() if count > 1], [], "mnemonics that occur twice")
    without = [entry.name for entry in program.menu_bar().children if not any(k.startswith("alt+") for k in entry.keys)]
    check_equal(without, [], "menus without a mnemonic")


def entries(program, *path):
    """The entries of a menu, closed or open, in their order."""
    below = program.menu_entry(*path).children
    return [entry for menu in below for entry in menu.children if entry.role in MENU_ROLES and entry.name]


def shortcuts(entry):
    """Without the mnemonic."""
    return {key for key in entry.keys if "+" in key and not key.startswith("alt+")}


def check_menus(program):
    found = {entry.name: shortcuts(entry) for entry in entries(program, "File")}
    for label, keys in FILE_MENU.items():
        if label not in found:
            raise Failure(f'menu "File": no entry "{label}" in {list(found)}')
        check_equal(found[label], keys, f'shortcut of "{label}"')
    check_equal([label for label, keys in found.items() if "ctrl+s" in keys][0].startswith("Export"), True, "Ctrl+S")
    check_equal([e.name for e in entries(program, "File", "Tail bit (beta)")], TAIL_BIT_MENU, "choices of the tail bit")
    shown = [(entry.name, shortcuts(entry)) for entry in entries(program, "Library")]
    check_equal(shown, LIBRARY_MENU, 'menu "Library"')
    help_labels = [entry.name for entry in entries(program, "Help")]
    check_equal([label for label in HELP_MENU if label not in help_labels], [], 'entries missing in the menu "Help"')


def check_disabled_entries(program, expected):
    labels = {"Export One Patch", "Set as Default Patch", "Duplicate Patch", "Find Similar Patches"}
    found = {entry.name for entry in entries(program, "Library") if not entry.has("enabled")} & labels
    check_equal(found, labels & expected, "disabled entries of the menu \"Library\"")


def column(program, node):
    """0 for the content, 1 for the library, 2 for the details."""
    left = node.rectangle[0]
    bounds = [program.find("list", name).rectangle for name in (CONTENT, LIBRARY)]
    return sum(left >= bound_left + width for bound_left, _, width, _ in bounds)


def check_tab_order(program):
    """From the list on the left, through all columns, and back to where it began."""
    start = program.find("list", CONTENT)
    # The list may have the focus already, and a key would overtake the click.
    row = program.row(CONTENT, 4)
    program.click(row)
    program.wait(lambda: row.has("selected") and start.has("focused"), f"the focus in {start}")
    order = [start]
    while len(order) < 100:
        before = order[-1]
        program.press("Tab")
        following = program.wait(
            lambda last=before: (now := program.focused()) and now != last and now, f"Tab to leave {before}"
        )
        if following == start:
            break
        order.append(following)
    places = [(column(program, node), node.name) for node in order]
    # The walk begins within the first column, so what stands above it there comes last.
    while len(places) > 1 and places[-1][0] == 0:
        places.insert(0, places.pop())
    columns = [place for place, _ in places]
    check_equal(columns, sorted(columns), f"columns in Tab order {places}")
    reached = {node.name for node in order}
    left_out = [node.name for node in controls(program) if node.has("enabled") and node.role != "label"]
    check_equal([name for name in left_out if name not in reached], [], "controls that Tab does not reach")


def check_ticking(program):
    """What is ticked is said beside the name of the button, not in it."""
    select = program.button("Select")
    program.click(select)
    program.press("ctrl+shift+a")
    program.wait(lambda: "3" in select.description, f'"3" in the description of {select}, "{select.description}"')
    check_equal([row.has("checked") for row in program.find("list", LIBRARY).rows], [True] * 3, "ticks")
    check_fixed_names(program, ALWAYS_THERE, "three patches ticked")
    check_names(program, "three patches ticked")
    check_equal(entries(program, "Library")[-1].name, "Delete patches", "last entry of the menu \"Library\"")
    program.click(select)


def check_filter(program):
    """Every keystroke narrows the list; nothing that was named is called otherwise then."""
    field = program.find("text", "Filter by name")
    shown = program.rows_of(LIBRARY)
    program.set_text(field, "warm")
    program.find("label", count_line(1, 3))
    check_equal(program.rows_of(LIBRARY), [row for row in shown if "Warm" in row], "filtered rows")
    check_names(program, "filtered")
    check_fixed_names(program, ALWAYS_THERE, "filtered")
    program.press("Escape")
    program.wait(lambda: program.rows_of(LIBRARY) == shown, "all rows after the filter was cleared")


def check_library_check(program):
    program.menu("Library", "Check Library...")
    dialog = program.dialog("Check Library")
    buttons = ["Add Patches", "Restore", "Show Library Folder", "Close"]
    check_equal([dialog.find_all("list", name) != [] for name in ("Findings", "Former libraries")], [True] * 2, "lists")
    check_fixed_names(program, [("button", name) for name in buttons], "check of the library")
    nameless = [node.role for node in dialog.find_all(states=("showing", "focusable")) if not node.name.strip()]
    check_equal(nameless, [], "controls without a name, check of the library")
    program.press("Escape")
    program.wait_closed(dialog)


def check_about(program):
    """Read from above, and reached with Tab in that order."""
    program.menu("Help", "About Velgor Library Manager")
    dialog = program.dialog("About Velgor Library Manager")
    read = [node.name for node in dialog.find_all({"label", "text"} | BUTTON_ROLES) if node.name]
    places = [read.index(name) for name in ("Library folder", "Messages of this run", "Copy for a Bug Report", "Close")]
    check_equal(places, sorted(places), f"order of {read}")
    order = [dialog.find_all("text", "Messages of this run")[0]]
    order += [program.button(name, within=dialog) for name in ("Copy for a Bug Report", "Close")]
    program.wait(lambda: order[2].has("focused"), f"the focus in {order[2]}")
    for node in order:
        program.press("Tab")
        program.wait(lambda of=node: of.has("focused"), f"the focus in {node}")
    program.press("Escape")
    program.wait_closed(dialog)


def accessibility_walk(session):
    program = session.start()
    check_names(program, "first start")
    check_fixed_names(program, ALWAYS_THERE, "first start")
    check_mnemonics(program)
    check_menus(program)
    check_disabled_entries(program, {label for label, _ in LIBRARY_MENU})

    session.import_demo()
    program.click(program.row(CONTENT, 0))
    program.click(program.row(CONTENT, 2), "shift")
    program.drag(program.row(CONTENT, 1), program.find("list", LIBRARY))
    program.find("text", "Comment")
    check_names(program, "one patch selected")
    check_fixed_names(program, ALWAYS_THERE + DETAILS, "one patch selected")
    check_disabled_entries(program, set())
    check_mnemonics(program)
    check_tab_order(program)
    check_ticking(program)
    check_filter(program)
    check_library_check(program)
    check_about(program)
    # Whoever is asked to end a session is not asked about the list that was not exported.
    program.terminate()
    check_equal(program.wait_exit(), 0, "exit status")


if __name__ == "__main__":
    run(accessibility_walk)
