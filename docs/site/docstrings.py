"""Turns the docstrings of the Python package, which are plain text for help(), into the markup of the site."""

import re

ROW = re.compile(r"(\S+(?:,? \S+)*?) {2,}(\S.*)")
SIGNATURE = re.compile(r"\d+\. \w+\(.*\) -> .*")


def escaped(text):
    """Plain text as markup that shows the same characters."""
    text = re.sub(r"([\\*`|])", r"\\\1", text)
    return re.sub(r"_(?=\W|$)", r"\\_", text)


def paragraphs(lines):
    block = []
    for line in [*lines, ""]:
        if line.strip():
            block.append(line)
        elif block:
            yield block
            block = []


def rows(block):
    """The rows of a table of names and meanings, or None when the paragraph is no such table."""
    found = []
    pending = ""  # a name too long for its column stands in a line of its own
    for line in block:
        row = ROW.fullmatch(line)
        if row and not line.startswith(" "):
            found.append([pending + row[1], [row[2]]])
            pending = ""
        elif line.startswith(" ") and pending:
            found.append([pending, [line.strip()]])
            pending = ""
        elif line.startswith(" ") and found:
            found[-1][1].append(line.strip())
        elif not pending and (line.endswith(",") or found):
            pending = line
        else:
            return None
    if found and pending:
        found.append([pending, []])
    return found or None


def markup(lines):
    """The lines of a docstring as lines of markup."""
    result = []
    for block in paragraphs(lines):
        indent = min(len(line) - len(line.lstrip()) for line in block)
        table = rows([line[indent:] for line in block])
        if table:
            for name, text in table:
                result += [f"``{name}``", f"    {escaped(' '.join(text))}", ""]
        elif SIGNATURE.fullmatch(block[0]):
            result += [f"``{block[0].split('. ', 1)[1]}``", ""]
        elif indent:
            result += ["::", "", *(f"    {line[indent:]}" for line in block), ""]
        else:
            result += [*map(escaped, block), ""]
    return result


def to_markup(app, what, name, subject, options, lines):
    lines[:] = markup(lines)


def without_self(app, what, name, subject, options, signature, returns):
    """The signature of a compiled method as a caller sees it."""
    return re.sub(r"^\(self: [\w.]+(, )?", "(", signature or "") or None, returns


def skips(app, what, name, subject, skip, options):
    """Leaves out what only repeats the class: the fields of named tuples."""
    return True if (getattr(subject, "__doc__", None) or "").startswith("Alias for field number") else None
