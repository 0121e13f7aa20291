"""Key and mouse events, as they come from the devices."""

import math
import time

from Xlib import XK, X
from Xlib.ext import xtest
from Xlib.protocol import request

MODIFIERS = {"ctrl": "Control_L", "shift": "Shift_L", "alt": "Alt_L"}
DOUBLE_CLICK_SECONDS = 0.5
# A press and its modifier within the same millisecond are not taken for a menu's mnemonic.
KEY_PAUSE = 0.012


class Keyboard:
    def __init__(self, screen):
        self.screen = screen
        self.codes = {}
        first, last = screen.display.info.min_keycode, screen.display.info.max_keycode
        for code, symbols in enumerate(screen.get_keyboard_mapping(first, last - first + 1), first):
            for shift, symbol in enumerate(symbols[:2]):
                if symbol:
                    self.codes.setdefault(symbol, (code, bool(shift)))

    def press(self, *combinations):
        """Keys by their X name with modifiers before them: "ctrl+shift+s", "Return", "alt+f"."""
        for combination in combinations:
            *modifiers, key = combination.split("+")
            self._stroke(XK.string_to_keysym(key), modifiers)

    def type(self, text):
        for character in text:
            self._stroke(XK.string_to_keysym("Return") if character == "\n" else ord(character), [])

    def hold(self, modifier, down):
        code, _ = self.codes[XK.string_to_keysym(MODIFIERS[modifier])]
        self._send(X.KeyPress if down else X.KeyRelease, code)

    def _stroke(self, symbol, modifiers):
        code, shift = self.codes[symbol]
        held = modifiers + (["shift"] if shift and "shift" not in modifiers else [])
        for modifier in held:
            self.hold(modifier, True)
        if held:
            time.sleep(KEY_PAUSE)
        self._send(X.KeyPress, code)
        self._send(X.KeyRelease, code)
        if held:
            time.sleep(KEY_PAUSE)
        for modifier in reversed(held):
            self.hold(modifier, False)
        time.sleep(0.005)

    def _send(self, kind, code):
        xtest.fake_input(self.screen, kind, code)
        self.screen.sync()


class Mouse:
    def __init__(self, screen, keyboard):
        self.screen = screen
        self.keyboard = keyboard
        self.last_press = 0.0

    def move(self, x, y):
        xtest.fake_input(self.screen, X.MotionNotify, x=int(x), y=int(y))
        self.screen.sync()

    def click(self, x, y, modifier=None):
        self._not_a_double_click()
        self.move(x, y)
        if modifier:
            self.keyboard.hold(modifier, True)
        self.press()
        self.release()
        if modifier:
            self.keyboard.hold(modifier, False)

    def press(self):
        self._button(X.ButtonPress, 1)

    def release(self):
        self._button(X.ButtonRelease, 1)
        self.last_press = time.monotonic()

    def wheel(self, x, y, notches):
        """Down, or up where `notches` is negative."""
        self.move(x, y)
        for _ in range(abs(notches)):
            self._button(X.ButtonPress, 5 if notches > 0 else 4)
            self._button(X.ButtonRelease, 5 if notches > 0 else 4)

    def lift(self, source, target, sync):
        """Presses at `source` and moves towards `target` until a drag has begun. `sync` waits for the program."""
        selection = self.screen.intern_atom("XdndSelection")
        request.SetSelectionOwner(
            display=self.screen.display, window=X.NONE, selection=selection, time=X.CurrentTime
        )
        self._not_a_double_click()
        self.move(*source)
        sync()
        self.press()
        sync()
        length = max(1.0, math.dist(source, target))
        step = [(end - start) / length for start, end in zip(source, target)]
        for distance in range(4, 80, 4):
            self.move(source[0] + step[0] * distance, source[1] + step[1] * distance)
            sync()
            if self.screen.get_selection_owner(selection) != X.NONE:
                return True
            time.sleep(0.02)
        return False

    def carry(self, source, target, sync):
        """Moves what was lifted to `target` in small steps, as a hand does."""
        steps = 12
        for step in range(1, steps + 1):
            self.move(*(start + (end - start) * step / steps for start, end in zip(source, target)))
            sync()
        for offset in (1, 0):
            self.move(target[0] + offset, target[1])
            sync()

    def _button(self, kind, number):
        xtest.fake_input(self.screen, kind, number)
        self.screen.sync()

    def _not_a_double_click(self):
        time.sleep(max(0.0, DOUBLE_CLICK_SECONDS - (time.monotonic() - self.last_press)))
