#!/usr/bin/python3
"""The way of a list from import to export without a mouse: keyboard_job.py PROGRAM VELGOR SAMPLES ARTIFACTS"""

import job
from session import CONTENT, DISCLAIMER, LIBRARY, run


def go_to_row(program, view, index):
    program.tab_to("list", view)
    # A list that just got the focus stands on its first row, which only a move to it selects.
    program.press("End", "Home", *["Down"] * index)


class Keyboard:
    @staticmethod
    def import_file(session, file):
        session.program.menu("File", "Import...")
        session.program.choose_file(file)

    @staticmethod
    def keep(session, indexes):
        program = session.program
        go_to_row(program, CONTENT, indexes[0])
        for before, index in zip(indexes, indexes[1:]):
            program.press(*["ctrl+Down"] * (index - before), "ctrl+space")
        program.menu("Edit", "Keep Selected Slots in Library")

    @staticmethod
    def classify(session, flags, comment):
        program = session.program
        program.menu("Edit", "Classify Library Patch", flags[0])
        for name in flags[1:]:
            program.tab_to("check box", name)
            program.press("space")
        program.tab_to("text", "Comment")
        program.type(comment)

    @staticmethod
    def place(session, index, slot):
        program = session.program
        go_to_row(program, LIBRARY, index)
        go_to_row(program, CONTENT, slot)
        program.menu("Edit", "Put Library Patch into Slot")

    @staticmethod
    def export(session, file):
        program = session.program
        program.press("ctrl+s")
        dialog = program.dialog(DISCLAIMER)
        program.tab_to("push button", "OK")
        program.press("space")
        program.wait_closed(dialog)
        program.choose_file(file)

    @staticmethod
    def select(session, index):
        go_to_row(session.program, LIBRARY, index)

    @staticmethod
    def quit(session):
        session.program.menu("File", "Quit")


if __name__ == "__main__":
    run(lambda session: job.do(session, Keyboard))
