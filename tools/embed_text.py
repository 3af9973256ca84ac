#!/usr/bin/env python3
"""Write a C++ file that holds the language table as a constant.

usage: embed_text.py TABLE OUT.cpp

The file's lines become rows between carriage returns, none behind the last row. Blanks stay as they are.
"""
import pathlib
import sys

TEMPLATE = """#include "language/LanguageTable.h"

namespace sorbel::LocalizationSupport {

namespace {

const unsigned char Bytes[] = {
%s
};

}  // namespace

StringView LanguageText() {
    return {reinterpret_cast<const char*>(Bytes), sizeof(Bytes)};
}

}  // namespace sorbel::LocalizationSupport
"""


def main():
    table, out = map(pathlib.Path, sys.argv[1:])
    data = table.read_bytes().removesuffix(b"\n").replace(b"\n", b"\r")
    lines = (",".join(map(str, data[at:at + 40])) for at in range(0, len(data), 40))
    out.write_text(TEMPLATE % ",\n".join(lines), encoding="ascii")


if __name__ == "__main__":
    main()
