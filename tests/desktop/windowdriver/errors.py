class Failure(Exception):
    """What was waited for did not come about, or was found otherwise."""


class Gone(Exception):
    """The widget is no longer there, or its program did not answer in time."""
