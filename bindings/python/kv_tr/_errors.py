"""What the package raises besides Python's own exceptions."""


class FileError(Exception):
    """A file that cannot be read, is not what its name says, or cannot be written.

    file    its name
    line    the number of the bad line, from 1, or None when no single one is to blame
    cause   what is wrong, as text
    """

    __module__ = "kv_tr"

    def __init__(self, file, line, cause):
        super().__init__(file, line, cause)
        self.file = file
        self.line = line
        self.cause = cause

    def __str__(self):
        place = self.file if self.line is None else f"{self.file}, line {self.line}"
        return f"{place}: {self.cause}"


class NoInverseError(ValueError):
    """A transformation, or a single point, that has no inverse."""

    __module__ = "kv_tr"


class NoInverseWarning(UserWarning):
    """Says how many points of an array have no inverse; ExactInverse.reasons tells why."""

    __module__ = "kv_tr"


class FitError(ValueError):
    """A fit that is not to be trusted; `result` is the FitResult."""

    __module__ = "kv_tr"

    def __init__(self, result):
        super().__init__(result)
        self.result = result

    def __str__(self):
        return self.result.complaint


class FitWarning(UserWarning):
    """Says that a fit is not to be trusted; FitResult.complaint says why."""

    __module__ = "kv_tr"
