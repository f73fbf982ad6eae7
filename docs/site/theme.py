"""Mends the files of the theme furo as Debian 12 packs them, which expect to be bundled: from a folder of files a
browser would not load the style sheet that furo.css imports nor run furo.js, and pages would stay light where the
system is dark. A file without the fault stays as it is."""

import re
from pathlib import Path

IMPORTED = re.compile(r"@import url\(/javascript/([\w./]+)\);")
DARK = re.compile(r'^  body\[data-theme="dark"\] (\{[^{}]*?\})', re.MULTILINE)
MODULE = re.compile(r'^import \w+ from "\./([\w.-]+)";$', re.MULTILINE)


def mended_style(text):
    text = IMPORTED.sub(lambda found: Path("/usr/share/javascript", found[1]).read_text(encoding="utf-8"), text)
    dark = DARK.search(text)
    if dark and "prefers-color-scheme" not in text:
        text += f'\n@media screen and (prefers-color-scheme: dark) {{ body:not([data-theme="light"]) {dark[1]} }}\n'
    return text


def mended_script(text, folder):
    return MODULE.sub(lambda found: (folder / found[1]).read_text(encoding="utf-8"), text)


def mend(app, exception):
    if exception or app.builder.name != "html":
        return
    static = Path(app.outdir, "_static")
    style, script = static / "styles/furo.css", static / "scripts/furo.js"
    style.write_text(mended_style(style.read_text(encoding="utf-8")), encoding="utf-8")
    script.write_text(mended_script(script.read_text(encoding="utf-8"), script.parent), encoding="utf-8")
