"""Settings of the documentation site; scripts/docs says in the environment where its parts are."""

import os
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

import docstrings
import theme

project = "KV_Tr"
version = release = os.environ["KV_TR_DOCS_VERSION"]
copyright = "the authors of KV_Tr"
language = "en"

extensions = ["breathe", "myst_parser", "sphinx.ext.autodoc", "sphinx.ext.doctest"]
root_doc = "index"
nitpicky = False  # types of the standard libraries have no page here
suppress_warnings = ["misc.highlighting_failure"]  # listings that leave something out with "..."

myst_heading_anchors = 4
myst_enable_extensions = ["deflist"]

breathe_projects = {"kv_tr": os.environ["KV_TR_DOCS_XML"]}
breathe_default_project = "kv_tr"
breathe_default_members = ("members", "undoc-members")
breathe_show_include = False

autodoc_member_order = "bysource"
autodoc_typehints = "none"
doctest_global_setup = "import kv_tr\nimport numpy as np\nnp.set_printoptions(suppress=True)"
doctest_path = []

html_theme = "furo"
html_title = f"KV_Tr {version}"
html_static_path = ["static"]
html_css_files = ["site.css"]
pygments_style = "default"
pygments_dark_style = "monokai"
html_copy_source = False
html_show_sphinx = False
smartquotes = False


def setup(app):
    app.connect("autodoc-process-docstring", docstrings.to_markup)
    app.connect("autodoc-process-signature", docstrings.without_self)
    app.connect("autodoc-skip-member", docstrings.skips)
    app.connect("build-finished", theme.mend)
