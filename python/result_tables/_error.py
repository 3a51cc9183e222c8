"""What the module raises."""

from typing import Optional


class Error(ValueError):
    """Something that could not be done.

    Its text is one line that says what, where, what was expected and what was found, in the language of the environment.
    """

    def __init__(self, message: str, path: Optional[str] = None, place: Optional[str] = None) -> None:
        super().__init__(message, path, place)
        self.message = message
        """The line."""
        self.path = path
        """The file or the study that it is about, as it was named; None where it is about none."""
        self.place = place
        """Where in the file: a JSON pointer, or the line with its column; None where it is about all of it."""

    def __str__(self) -> str:
        return self.message
