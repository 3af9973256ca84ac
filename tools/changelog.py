#!/usr/bin/env python3
"""Reads CHANGELOG.md, and prints it as the changelog of a Debian package.

usage: changelog.py EPOCH      The newest release is dated by EPOCH, in seconds since 1970, the others by their day.

A release is a heading `## VERSION (YYYY-MM-DD)`, words to it and a list of changes. The newest comes first.
"""
import datetime
import email.utils
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parents[1]
HEADING = re.compile(r"## (\d+(?:\.\d+)+) \((\d{4}-\d\d-\d\d)\)")


class Release:
    def __init__(self, version, date):
        self.version, self.date = version, datetime.date.fromisoformat(date)
        self.changes = []

    def take(self, line):
        if line.startswith("- "):
            self.changes.append(line[2:])
        elif line.startswith("  ") and self.changes:
            self.changes[-1] += " " + line.strip()
        elif line:
            self.changes.append(line)


def releases(text):
    """Newest first. A heading that is not like the others is an error, a release without a change too."""
    found = []
    for line in text.splitlines():
        heading = HEADING.fullmatch(line)
        if heading:
            found.append(Release(*heading.groups()))
        elif line.startswith("##"):
            raise ValueError("CHANGELOG.md: no heading of a release: %s" % line)
        elif found:
            found[-1].take(line)
    empty = [release.version for release in found if not release.changes]
    if empty or not found:
        raise ValueError("CHANGELOG.md: no changes in %s" % (", ".join(empty) or "it"))
    return found


def debian(release, moment, maintainer):
    changes = "\n".join(textwrap.fill(change.replace("`", ""), 78, initial_indent="  * ", subsequent_indent="    ")
                        for change in release.changes)
    return "sorbel (%s) unstable; urgency=medium\n\n%s\n\n -- %s  %s\n" % (
        release.version, changes, maintainer, email.utils.format_datetime(moment))


def main():
    epoch = int(sys.argv[1])
    control = (ROOT / "packaging" / "debian" / "control").read_text(encoding="utf-8")
    maintainer = re.search(r"^Maintainer: (.+)$", control, re.MULTILINE).group(1)
    found = releases((ROOT / "CHANGELOG.md").read_text(encoding="utf-8"))
    utc = datetime.timezone.utc
    midnight = datetime.time(tzinfo=utc)
    moments = [datetime.datetime.combine(release.date, midnight) for release in found]
    moments[0] = datetime.datetime.fromtimestamp(epoch, utc)
    print("\n".join(debian(*entry, maintainer) for entry in zip(found, moments)), end="")


if __name__ == "__main__":
    main()
