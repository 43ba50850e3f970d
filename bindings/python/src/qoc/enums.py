"""What happened at a position, which kind of dictionary entry gave a result, and what came of resolving."""

from enum import IntEnum


class PositionStatus(IntEnum):
    """What happened at one position. Larger is worse."""

    PRIMARY = 1
    """The reading's first candidate is the character."""
    PRIMARY_SWAP = 2
    """The first candidate may be swapped for the character."""
    SECONDARY = 3
    """Another candidate is the character."""
    SECONDARY_SWAP = 4
    """Another candidate may be swapped for the character."""
    SUBSTITUTED = 5
    """The position was replaced by another character."""
    SUBSTITUTED_SPACE = 6
    """The position was replaced by a space."""
    NO_MATCH = 7
    """Nothing fits."""
    INSERTED = 8
    """The character has no position in the reading."""
    DELETED = 9
    """The position of the reading has no character."""
    DELETED_IGNORED = 10
    """The same, and it does not matter."""

    @property
    def label(self) -> str:
        """The name that the program's JSON and the C interface use, such as "primarySwap"."""
        return _label(self.name)

    def __str__(self) -> str:
        return self.label


class Mode(IntEnum):
    """The kind of dictionary entry that gave a result."""

    FIELDING = 1
    LEXICON = 2
    REGULAR_EXPRESSION = 4

    @property
    def label(self) -> str:
        """The name that the program's JSON and the C interface use, such as "regularExpression"."""
        return _label(self.name)

    def __str__(self) -> str:
        return self.label


class Outcome(IntEnum):
    """What came of resolving a reading."""

    NONE = 0
    """There is no text."""
    UNSURE = 1
    """The best text is doubtful."""
    SURE = 2
    """The best text can be taken."""

    @property
    def label(self) -> str:
        """The name that the program and the C interface use, such as "sure"."""
        return _label(self.name)

    def __str__(self) -> str:
        return self.label


def _label(name: str) -> str:
    first, *others = name.lower().split("_")
    return first + "".join(word.capitalize() for word in others)
