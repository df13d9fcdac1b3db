"""Builds the user guide: ``python -m sphinx -W python/docs build/python-docs``."""

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
