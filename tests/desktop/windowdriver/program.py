"""The program under test: its process, windows, dialogs and menus."""

import os
import signal
import threading
from subprocess import PIPE, STDOUT

from .accessible import ITEM_ROLES
from .errors import Failure, Gone

BUTTON_ROLES = {"push button", "check box", "toggle button", "button"}
MENU_ROLES = {"menu item", "check menu item", "radio menu item", "menu"}
DIALOG_ROLES = {"alert", "alert message", "dialog", "file chooser"}


class Program:
    def __init__(self, desktop, command, environment, home):
        self.desktop, self.command, self.home = desktop, command, home
        self.lines = []
        self.process = desktop.run(command, environment, "KILL", stdout=PIPE, stderr=STDOUT, cwd=home)
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        self._root = None

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.decode(errors="replace").rstrip("\n"))

    # The process

    @property
    def is_running(self):
        return self.process.poll() is None

    def outcome(self):
        return "running" if self.is_running else f"ended with {self.process.returncode}"

    def wait_exit(self, seconds=None):
        self.desktop.wait(lambda: not self.is_running, "the end of the program", seconds)
        self.reader.join()
        return self.process.returncode

    def terminate(self):
        os.kill(self.process.pid, signal.SIGTERM)

    def end(self):
        if self.is_running:
            os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        self.reader.join()
        self.process.stdout.close()

    # What is on the screen

    @property
    def root(self):
        if self._root is None:
            for program in self.desktop.bus.programs():
                if self.desktop.bus.process_of(program.owner) == self.process.pid:
                    self._root = program
        return self._root

    def wait(self, condition, what, seconds=None):
        def checked():
            if not self.is_running:
                raise Failure(f"the program {self.outcome()} while waiting for {what}")
            return condition()

        return self.desktop.wait(checked, what, seconds)

    @property
    def windows(self):
        return [window for window in self.root.children if window.has("showing")] if self.root else []

    def wait_window(self):
        """The main window, as soon as it is there and takes keys."""
        return self.wait(
            lambda: next((w for w in self.windows if w.role not in DIALOG_ROLES and w.has("active")), None),
            "the main window",
        )

    def find(self, role, name, within=None, states=("showing",)):
        def first():
            found = (within or self.root).find_all(role, name, states) if self.root else []
            return found[0] if found else None

        return self.wait(first, f'{role} "{name}"')

    def button(self, name, within=None):
        return self.find(BUTTON_ROLES, name, within)

    def rows_of(self, name):
        return self.find("list", name).row_names

    def row(self, view, name):
        """The first row of the named list with this name, or with this number."""
        def first():
            rows = self.find("list", view).rows
            if isinstance(name, int):
                return rows[name] if name < len(rows) else None
            return next((row for row in rows if row.name == name), None)

        return self.wait(first, f'row "{name}" of the list "{view}"')

    def focused(self):
        """The widget that takes the keys; of a list, the list and not its current row."""
        for node in self.root.walk_shown():
            try:
                if node.has("focused") and node.role not in ITEM_ROLES | {"application"}:
                    return node
            except Gone:
                continue
        return None

    def sync(self):
        """Returns when the program has taken what was sent to it so far."""
        self.desktop.screen.sync()
        try:
            if self.root is not None:
                self.root.read("Accessible", "ChildCount")
                self.root.read("Accessible", "ChildCount")
        except Gone:
            return

    # Keys and mouse

    def press(self, *combinations):
        for combination in combinations:
            self.desktop.keyboard.press(combination)
            self.sync()

    def tab_to(self, role, name):
        """Presses Tab until the widget has the focus."""
        target = self.find(role, name)
        for _ in range(100):
            if target.has("focused"):
                return
            self.press("Tab")
        raise Failure(f'{role} "{name}" cannot be reached with Tab')

    def type(self, text):
        self.desktop.keyboard.type(text)
        self.sync()

    def point(self, node, down=0.5):
        """A point of the widget; rows are scrolled into view, and taken at their text. A point is itself."""
        if isinstance(node, tuple):
            return node
        if node.role in ITEM_ROLES:
            self.scroll_to(node)
        left, top, width, height = self.wait(
            lambda: node.rectangle if min(node.rectangle[2:]) > 0 else None, f"the place of {node}"
        )
        return left + width * (0.3 if node.role in ITEM_ROLES else 0.5), top + height * down

    def scroll_to(self, row):
        view = row.parent
        while view.role not in {"list", "table", "tree"}:
            view = view.parent
        for _ in range(100):
            left, top, width, height = view.rectangle
            _, row_top, _, row_height = row.rectangle
            if top <= row_top and row_top + row_height <= top + height:
                return
            self.desktop.mouse.wheel(left + width // 2, top + height // 2, -1 if row_top < top else 1)
            self.sync()
        raise Failure(f"{row} cannot be scrolled to")

    def click(self, node, modifier=None):
        self.desktop.mouse.click(*self.point(node), modifier)
        self.sync()

    def set_text(self, field, text):
        self.click(field)
        self.press("ctrl+a")
        self.type(text)
        self.wait(lambda: field.text == text, f'the text "{text}" in {field}')

    def drag(self, source, target, down=0.5, cancel=False, over_target=None):
        """Drags one widget, row or point onto another. `down` is where in the target: 0 its upper edge, 0.5 its middle.
        `over_target` is called before the button is let go; Escape is pressed first where `cancel` is set."""
        self.point(target)
        start, end = self.point(source), self.point(target, down)
        try:
            if not self.desktop.mouse.lift(start, end, self.sync):
                raise Failure(f"no drag began at {source}")
            self.desktop.mouse.carry(start, end, self.sync)
            if over_target:
                over_target()
            if cancel:
                self.press("Escape")
        finally:
            self.desktop.mouse.release()
        self.sync()

    # Dialogs

    @property
    def dialogs(self):
        return [window for window in self.windows if window.role in DIALOG_ROLES]

    def dialog(self, text=None):
        """The dialog that has a label or a title with this text, or any."""
        def is_meant(window):
            return text is None or window.name == text or any(text in n.name for n in window.find_all("label"))

        return self.wait(
            lambda: next((w for w in self.dialogs if w.has("active") and is_meant(w)), None), f'a dialog "{text}"'
        )

    def wait_closed(self, dialog):
        """The end of the program closes its dialogs too."""
        self.desktop.wait(lambda: not self.is_running or dialog not in self.dialogs, f"{dialog} to close")

    def answer(self, text, button):
        dialog = self.dialog(text)
        self.click(self.find(BUTTON_ROLES, button, within=dialog))
        self.wait_closed(dialog)

    def choose_file(self, path):
        """Types the path into the file dialog that comes up."""
        dialog = self.dialog()
        field = self.find("text", None, within=dialog, states=("showing", "editable"))
        self.wait(lambda: field.has("focused"), "the focus in the file name")
        self.press("ctrl+a")
        self.type(str(path))
        self.wait(lambda: field.text == str(path), "the typed path")
        # A list of completions may lie over the dialog, and takes Return just as well.
        self.press("Return")
        self.wait_closed(dialog)

    # Menus

    def menu_bar(self):
        return self.find("menu bar", None)

    def menu_entry(self, *path):
        """An entry by its labels from the menu bar down, whether its menu is open or not."""
        node = self.menu_bar()
        for label in path:
            node = self.wait(lambda n=node, wanted=label: _entry(n, wanted), f'menu entry "{label}"')
        return node

    def menu(self, *path):
        """Opens the menu with its mnemonic and goes down to the entry, with keys alone."""
        top = self.menu_entry(path[0])
        mnemonic = next(key for key in top.keys if key.startswith("alt+"))
        self.press(mnemonic)
        for depth in range(2, len(path) + 1):
            self._go_down_to(self.menu_entry(*path[:depth]))
            self.press("Return" if depth == len(path) else "Right")

    def _go_down_to(self, entry):
        for _ in range(40):
            if entry.has("focused"):
                break
            self.press("Down")
        else:
            raise Failure(f"{entry} cannot be reached with the arrow keys")
        if not entry.has("enabled"):
            raise Failure(f"{entry} is disabled")


def _entry(node, label):
    below = (child for child in node.walk() if child != node)
    return next((child for child in below if child.role in MENU_ROLES and child.name == label), None)
