#!/usr/bin/python3
"""The way of a list from import to export, with the mouse: main_job.py PROGRAM VELGOR SAMPLES ARTIFACTS"""

import job
from session import CONTENT, LIBRARY, run


class Mouse:
    @staticmethod
    def import_file(session, file):
        session.import_file(file)

    @staticmethod
    def keep(session, indexes):
        program = session.program
        for index in indexes:
            program.click(program.row(CONTENT, index), None if index == indexes[0] else "ctrl")
        program.drag(program.row(CONTENT, indexes[1]), program.find("list", LIBRARY))

    @staticmethod
    def classify(session, flags, comment):
        program = session.program
        for name in flags:
            program.click(program.button(name))
        program.set_text(program.find("text", "Comment"), comment)

    @staticmethod
    def place(session, index, slot):
        program = session.program
        program.drag(program.row(LIBRARY, index), program.row(CONTENT, slot))

    @staticmethod
    def export(session, file):
        session.program.click(session.program.button("Export"))
        session.export(file)

    @staticmethod
    def select(session, index):
        session.program.click(session.program.row(LIBRARY, index))

    @staticmethod
    def quit(session):
        session.program.press("ctrl+q")


if __name__ == "__main__":
    run(lambda session: job.do(session, Mouse))
