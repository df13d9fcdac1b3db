"""Builds the user guide: ``python -m sphinx -W python/docs build/python-docs``."""

import json
from pathlib import Path
from typing import Any

from docutils import nodes
from docutils.parsers.rst import Directive

import teskorient

project = "teskorient"
copyright = "The authors of TeskSDKTriangleOrient"
version = release = teskorient.__version__

extensions = ["sphinx.ext.autodoc", "sphinx.ext.viewcode", "numpydoc"]
html_theme = "alabaster"
html_theme_options = {
    "description": "Build orientations and smallest boxes of parts for 3D printing",
    "fixed_sidebar": True,
    "page_width": "1100px",
}
html_static_path: list[str] = []
html_copy_source = False

autodoc_member_order = "bysource"
autodoc_typehints = "none"
numpydoc_show_class_members = False
python_display_short_literal_types = True
nitpicky = False
exclude_patterns = ["README.md"]


class NotebookCells(Directive):
    """Shows the cells of a notebook, named relative to this folder, without their outputs."""

    required_arguments = 1

    def run(self) -> list[Any]:
        """Return a node for each cell."""
        path = Path(__file__).parent / self.arguments[0]
        shown: list[Any] = []
        for cell in json.loads(path.read_text("utf-8"))["cells"]:
            text = "".join(cell["source"])
            if cell["cell_type"] == "code":
                shown.append(nodes.literal_block(text, text, language="python"))
            else:
                paragraphs = text.replace("# ", "").split("\n\n")
                shown += [nodes.paragraph(words, words) for words in paragraphs]
        return shown


def setup(app: Any) -> None:
    """Tell Sphinx of the directive."""
    app.add_directive("notebook-cells", NotebookCells)
