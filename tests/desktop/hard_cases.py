#!/usr/bin/python3
"""What must not harm the list, the library or the window: hard_cases.py PROGRAM VELGOR SAMPLES ARTIFACTS"""

import struct

from session import CONTENT, LIBRARY, Session, check_equal, content_title, run

from windowdriver import Failure

# Beside the window, where the pointer changes nothing.
PARKED = (1, 1)


def parked_picture(session):
    session.desktop.mouse.move(*PARKED)
    return session.desktop.still_screenshot().tobytes()


def check_cancelled_drags(session):
    """Escape leaves rows, selection and every pixel as they were before the drag."""
    program = session.program
    ways = [
        ("slot to library", program.row(CONTENT, 7), program.find("list", LIBRARY)),
        ("slot to slot", program.row(CONTENT, 7), program.row(CONTENT, 12)),
        ("library to slot", program.row(LIBRARY, 1), program.row(CONTENT, 5)),
        ("library to library", program.row(LIBRARY, 2), program.row(LIBRARY, 0)),
    ]
    for way, source, target in ways:
        program.click(source)
        rows = program.rows_of(CONTENT), program.rows_of(LIBRARY)
        picture = parked_picture(session)
        shown = []
        program.drag(source, target, cancel=True, over_target=lambda: shown.append(session.desktop.screenshot()))
        check_equal(shown[0].tobytes() != picture, True, f"the drag {way} is seen")
        check_equal((program.rows_of(CONTENT), program.rows_of(LIBRARY)), rows, f"rows after a cancelled drag {way}")
        # What a drag leaves on the screen may go a moment after it.
        session.desktop.wait(lambda: parked_picture(session) == picture, f"the same picture after a cancelled drag {way}")


def check_foreign_payload(session):
    """Text that is dragged out of the comment is no patch, and stays where it is."""
    program = session.program
    program.click(program.row(LIBRARY, 0))
    comment = program.find("text", "Comment")
    program.set_text(comment, "Text on its way to nowhere")
    rows = program.rows_of(CONTENT), program.rows_of(LIBRARY)
    left, top, _, _ = comment.rectangle
    for target in (program.row(CONTENT, 3), program.row(LIBRARY, 1)):
        program.click(comment)
        program.press("ctrl+a")
        program.drag((left + 40, top + 14), target)
        check_equal((program.rows_of(CONTENT), program.rows_of(LIBRARY)), rows, "rows after a foreign drop")
        check_equal(comment.text, "Text on its way to nowhere", "the dragged text")


def check_malformed_import(session):
    program = session.program
    broken = session.home / "Broken list.prst"
    whole = session.demo.read_bytes()
    broken.write_bytes(whole[: len(whole) // 2])
    rows = program.rows_of(CONTENT), program.rows_of(LIBRARY)
    session.import_file(broken)
    dialog = program.dialog("Could not import file")
    texts = [label.name for label in dialog.find_all("label") if label.name != "Could not import file"]
    if not any(broken.name in text and len(text) > len(str(broken)) + 10 for text in texts):
        raise Failure(f"the alert does not say which file and why: {texts}")
    program.press("Escape")
    program.wait_closed(dialog)
    check_equal((program.rows_of(CONTENT), program.rows_of(LIBRARY)), rows, "rows after a refused import")


def check_second_start(session):
    """The second start ends at once, and its file is shown by the first one."""
    program = session.program
    other = session.samples / "demo-new-firmware.prst"
    second = session.desktop.start([session.executable, other], session.home)
    check_equal(second.wait_exit(), 0, "exit status of the second start")
    program.find("label", content_title(len(session.velgor.patches(other))))
    check_equal(len(program.windows), 1, "windows after the second start")


def check_second_start_behind_a_message(session):
    """A file that is handed over waits until the message is answered that is about the list shown now."""
    program = session.program
    shown = program.rows_of(CONTENT)
    program.press("ctrl+s")
    dialog = program.dialog()
    second = session.desktop.start([session.executable, session.demo], session.home)
    check_equal(second.wait_exit(), 0, "exit status of the second start")
    check_equal(program.rows_of(CONTENT), shown, "slots behind the message")
    program.press("Escape")
    program.wait_closed(dialog)
    program.find("label", content_title(len(session.velgor.patches(session.demo))))


def check_termination(session):
    """An edit that was made a moment ago is not lost."""
    program = session.program
    program.click(program.row(LIBRARY, 1))
    field = program.find("text", "Name")
    program.click(field)
    program.press("ctrl+a")
    session.desktop.keyboard.type("Last words")
    program.wait(lambda: field.text == "Last words", "the name")
    program.terminate()
    check_equal(program.wait_exit(), 0, "exit status after SIGTERM")
    names = [patch["name"] for patch in session.velgor.library(session.library_directory)]
    check_equal(names[1], "Last words", "name on disk after SIGTERM")


def check_library_move(session):
    """A library in a folder that cannot be listed moves to another one from the message that says so."""
    awkward, target = session.home / "My Library", session.home / "sounds"
    settings = session.home / "config" / "velgor" / "velgor-library-manager.conf"
    settings.parent.mkdir(parents=True)
    settings.write_text(f"[General]\nlibraryDirectory={awkward}\n")
    target.mkdir()
    program = session.start()
    session.import_demo()
    program.drag(program.row(CONTENT, 3), program.find("list", LIBRARY))
    program.answer("Could not save one or more library files", "Move Library...")
    program.choose_file(target)
    program.find("label", "Library moved to ~/sounds")
    names = [patch["name"] for patch in session.velgor.library(target)]
    check_equal(names, [session.demo_patches[3]["name"]], "patches in the new folder")
    check_equal(f"libraryDirectory={target}" in settings.read_text(), True, "the folder in the preferences")
    program.drag(program.row(CONTENT, 5), program.find("list", LIBRARY))
    program.wait(lambda: len(session.velgor.library(target)) == 2, "the next patch in the new folder")
    check_equal(len(session.velgor.library(awkward)), 1, "patches in the former folder")
    session.quit()


def check_lost_window(session):
    """A window that was closed on a screen which is gone comes back wholly on the one that is there."""
    left, top, width, height = 3000, 2000, 1380, 1100
    rectangle = struct.pack(">4i", left, top, left + width - 1, top + height - 1)
    screen = session.desktop.screen.screen()
    geometry = struct.pack(">IHH", 0x1D9D0CB, 3, 0) + rectangle * 2
    geometry += struct.pack(">iBBi", 0, False, False, screen.width_in_pixels) + rectangle
    state = session.home / "state" / "org.example.VelgorLibraryManager" / "state.ini"
    state.parent.mkdir(parents=True)
    escaped = "".join(f"\\x{byte:02x}" for byte in geometry)
    state.write_text(f"[window]\ncolumns=600, 1200, 640\ngeometry=@ByteArray({escaped})\n")
    window = session.start().windows[0]
    left, top, width, height = window.rectangle
    is_inside = left >= 0 and top >= 0 and left + width <= screen.width_in_pixels
    if not is_inside or top + height > screen.height_in_pixels or width < 1300:
        raise Failure(f"the window is at {window.rectangle}")
    session.quit()


def hard_cases(session):
    program = session.start()
    session.import_demo()
    program.click(program.row(CONTENT, 0))
    program.click(program.row(CONTENT, 2), "shift")
    program.drag(program.row(CONTENT, 1), program.find("list", LIBRARY))
    program.wait(lambda: len(program.rows_of(LIBRARY)) == 3, "three patches in the library")
    check_cancelled_drags(session)
    check_foreign_payload(session)
    check_malformed_import(session)
    check_second_start(session)
    check_second_start_behind_a_message(session)
    check_termination(session)
    for check in (check_library_move, check_lost_window):
        check(Session(session.desktop, session.executable, session.velgor, session.samples))


if __name__ == "__main__":
    run(hard_cases)
