"""Puts tables into a page of the documents."""

import re


def write(path, tables):
    """Replaces what stands between `<!-- NAME -->` and `<!-- end -->`."""
    text = path.read_text()
    for name, table in tables.items():
        text = re.sub(f"(<!-- {name} -->\n).*?(<!-- end -->)",
                      lambda found, table=table: found[1] + table + "\n" + found[2], text,
                      flags=re.S)
    path.write_text(text)
