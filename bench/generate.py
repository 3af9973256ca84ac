#!/usr/bin/env python3
"""Writes the same made-up strings in every format that the comparison needs.

usage: generate.py COUNT FOLDER

In FOLDER, each with COUNT strings:
  COUNT.kestrum_locale           the document
  COUNT.versions.kestrum_locale  the document with one earlier version of itself
  COUNT.import.kestrum_locale    the document with every translation changed, to be imported
  COUNT.import.txt               the same as delimited text
  COUNT.po .pot .ts .tab         for other programs; .tab is what text tools search

The strings depend on COUNT alone. One in five has no translation. The others are German-looking and about as
long as the English default texts; some have mnemonics, quoted words, line breaks and placeholders.
"""
import pathlib
import random
import struct
import sys
from xml.sax.saxutils import escape

PLACES = "Main Options Print Mail Chart Ledger Customer Invoice Calendar Archive Team Backup".split()
SUBJECTS = "Open Store Discard Attach Rotate Merge Publish Unlock Measure Repeat Arrange Compare".split()
KINDS = "Caption Question Warning Tip Item Heading Column Notice".split()

ENGLISH = """a an the this that each every no all your file files folder window letter list row column page
 chart customer order number amount total date calendar backup archive printer network user account key
 could cannot was were has been is are will opened stored found removed changed copied printed sent joined
 because before after while without with from into between and or not already still only again please try
 choose enter confirm wait continue cancel unknown missing wrong empty full new old last next""".split()
GERMAN = """ein eine der die das dies jede kein alle Ihre Datei Dateien Ordner Fenster Brief Liste Zeile
 Spalte Seite Diagramm Kundin Auftrag Nummer Betrag Summe Datum Kalender Sicherung Archiv Drucker Netz
 Benutzer Konto Schlüssel konnte nicht war waren wurde ist sind wird geöffnet gesichert gefunden gelöscht
 geändert kopiert gedruckt gesendet verknüpft weil bevor nachdem während ohne mit aus zwischen und oder
 schon noch nur wieder bitte wählen eingeben bestätigen warten fortfahren abbrechen unbekannt fehlend
 falsch leer voll neu alt zuletzt nächste Größe Übersicht öffnen""".split()


def phrase(rng, vocabulary, words):
    picked = rng.choices(vocabulary, k=words)
    picked[0] = picked[0].capitalize()
    return picked


def decorate(rng, english, german):
    """What real texts have besides words, alike in both languages."""
    kind, last = rng.random(), len(english) - 1
    if kind < 0.10:
        english[0], german[0] = "&" + english[0], "&" + german[0]
    elif kind < 0.16:
        english[last], german[last] = '"%s"' % english[last], '"%s"' % german[last]
    elif kind < 0.22 and last > 2:
        english[1] += "\n"
        german[1] += "\n"
    elif kind < 0.30:
        english.append("%1")
        german.append("%1")


def strings(count):
    """(identifier, default text, translation) of each string."""
    rng = random.Random(4711)
    for number in range(count):
        name = "k%s%s%s%d" % (rng.choice(PLACES), rng.choice(SUBJECTS), rng.choice(KINDS), number)
        words = min(rng.randint(1, 14), rng.randint(1, 14))
        english, german = phrase(rng, ENGLISH, words), phrase(rng, GERMAN, words)
        decorate(rng, english, german)
        ending = rng.choice(("", "", "", ".", "…", ":", "?", "!"))
        default, translation = (" ".join(text).replace("\n ", "\n") + ending for text in (english, german))
        yield name, default, translation if rng.random() >= 0.2 else ""


def chunk(tag, payload):
    return tag + struct.pack(">i", len(payload)) + payload


def text_chunk(tag, text):
    return chunk(tag, chunk(b"strn", text.encode()))


def locale_head(date):
    return (b"nvlocale" + chunk(b"vers", chunk(b"long", bytes(4))) + text_chunk(b"date", date)
            + text_chunk(b"nvvs", "") + text_chunk(b"lang", "de"))


def locale_entry(name, default, translation):
    return chunk(b"enty", text_chunk(b"idnt", name) + text_chunk(b"oval", default)
                 + text_chunk(b"tval", translation) + chunk(b"plat", chunk(b"long", bytes(4))))


def escaped(text):
    return text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")


def catalogue_text(key, text):
    if "\n" not in text:
        return '%s "%s"\n' % (key, escaped(text))
    return '%s ""\n' % key + "".join('"%s"\n' % escaped(line) for line in text.splitlines(True))


def write_locales(base, count):
    earlier = locale_head("2001-02-03 04:05:06") + b"".join(
        locale_entry(name, default + (" then" if number % 20 == 0 else ""), translation)
        for number, (name, default, translation) in enumerate(strings(count)))
    head = locale_head("2002-03-04 05:06:07")
    with open(base + ".kestrum_locale", "wb") as document, \
            open(base + ".versions.kestrum_locale", "wb") as versions, \
            open(base + ".import.kestrum_locale", "wb") as other, \
            open(base + ".import.txt", "w", encoding="utf-8", newline="\n") as delimited:
        for file in (document, versions, other):
            file.write(head)
        for name, default, translation in strings(count):
            entry = locale_entry(name, default, translation)
            document.write(entry)
            versions.write(entry)
            other.write(locale_entry(name, default, translation + " neu"))
            delimited.write("%s\tAny\t%s\t%s\n" % (name, escaped(default), escaped(translation + " neu")))
        versions.write(chunk(b"hist", chunk(b"bind", earlier)))


def write_peers(base, count):
    catalogue_head = ('msgid ""\nmsgstr ""\n"Language: de\\n"\n"MIME-Version: 1.0\\n"\n'
                      '"Content-Type: text/plain; charset=UTF-8\\n"\n"Content-Transfer-Encoding: 8bit\\n"\n\n')
    files = {ending: open(base + ending, "w", encoding="utf-8", newline="\n")
             for ending in (".po", ".pot", ".ts", ".tab")}
    files[".po"].write(catalogue_head)
    files[".pot"].write(catalogue_head)
    files[".ts"].write('<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n<TS version="2.1" language="de">\n'
                       '<context>\n    <name>bench</name>\n')
    for name, default, translation in strings(count):
        # The identifier is the context, which keeps equal texts apart.
        head = catalogue_text("msgctxt", name) + catalogue_text("msgid", default)
        files[".po"].write(head + catalogue_text("msgstr", translation) + "\n")
        files[".pot"].write(head + 'msgstr ""\n\n')
        files[".ts"].write('    <message>\n        <source>%s</source>\n        <comment>%s</comment>\n'
                           '        <translation%s>%s</translation>\n    </message>\n'
                           % (escape(default), name, "" if translation else ' type="unfinished"',
                              escape(translation)))
        files[".tab"].write("%s\tAny\t%s\t%s\n" % (name, escaped(default), escaped(translation)))
    files[".ts"].write("</context>\n</TS>\n")
    for file in files.values():
        file.close()


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    count, folder = int(sys.argv[1]), pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    write_locales(str(folder / str(count)), count)
    write_peers(str(folder / str(count)), count)


if __name__ == "__main__":
    main()
