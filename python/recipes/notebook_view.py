"""In a notebook a document, a group or an entry as the last line of a cell shows itself as a folding tree."""

import bk_parser

scene = bk_parser.load("harbour.bkd", search=["library", "shots"])
html = scene["world/wind"]._repr_html_()
print(html.replace("<ul>", "<ul>\n").replace("</li>", "</li>\n"))
