#!/usr/bin/env python3
"""Fail if a source file includes a folder that its layer may not use.

usage: check_layers.py SRC      The table in SRC/README.md says what is allowed.
"""
import pathlib
import re
import sys


def read_table(readme):
    """{layer: set of allowed layers}, from the rows of the README's table."""
    allowed = {}
    for line in readme.read_text(encoding="utf-8").splitlines():
        cells = [c.strip() for c in line.strip().strip("|").split("|")]
        if len(cells) == 3 and cells[0].startswith("`"):
            allowed[cells[0].strip("`")] = set(re.findall(r"`([^`]+)`", cells[2]))
    return allowed


def layer_of(path, allowed):
    """The layer of a path below SRC: a file named in the table by itself, else its folder."""
    stem = str(path.with_suffix(""))
    return stem if stem in allowed else str(path.parent)


def main():
    src = pathlib.Path(sys.argv[1])
    allowed = read_table(src / "README.md")
    if len(allowed) < 5:
        sys.exit("check_layers.py: no table of layers in %s/README.md" % src)
    failures = []
    for file in sorted([*src.rglob("*.cpp"), *src.rglob("*.h")]):
        here = layer_of(file.relative_to(src), allowed)
        if here not in allowed:
            failures.append("%s: the folder is not in the table of README.md" % file)
            continue
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            found = re.match(r'\s*#\s*include\s*"([^"]+)"', line)
            if not found:
                continue
            target = pathlib.Path(found.group(1))
            if not (src / target).exists():
                failures.append("%s:%d: include \"%s\" from the root of src/" % (file, number, target))
                continue
            there = layer_of(target, allowed)
            may = allowed[here] | {here}
            if there not in may and str(target.with_suffix("")) not in may:
                failures.append("%s:%d: %s may not include %s" % (file, number, here, there))
    print("\n".join(failures), end="\n" if failures else "")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
