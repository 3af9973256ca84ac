"""What the program says of changes that were not saved, and what it makes of them when they are restored."""
from watched import Fault

NOW = "January 31, 2026, 12:00"  # the moment that the driver gives to every run
RESTORE = "Restore unsaved changes?"
SAVE_FAILED = "Your changes are kept and can be restored when it is opened again."
REPAIRED = "Its last save had been interrupted and is now complete."
NOT_PROTECTED = "Unsaved changes are not protected"


def texts(entries):
    return {(identifier, platform): (default, translated)
            for identifier, platforms in entries for platform, default, translated in platforms}


def translations(entries):
    """The texts that are there; an entry without one is as good as none."""
    return {key: values[1] for key, values in texts(entries).items() if values[1]}


def differences(before, after):
    """The rows that differ for certain, and those that may count as equal: one side has no entry, and the other one
    without a translation."""
    old, new = texts(before), texts(after)
    differing = [key for key in old.keys() | new.keys() if old.get(key) != new.get(key)]
    doubtful = [key for key in differing if not (key in old and key in new) and not (old.get(key) or new.get(key))[1]]
    return sorted(set(differing) - set(doubtful)), doubtful


def rows_between(before, after):
    """How many rows the question may tell."""
    certain, doubtful = differences(before, after)
    return range(len(certain), len(certain) + len(doubtful) + 1)


def explanation(name, rows, when=NOW, foreign=False):
    if rows == 1:
        text = "A change to “%s” was not saved when Sorbel last ended, on %s." % (name, when)
    elif rows == 0:
        text = "Changes to “%s” were not saved when Sorbel last ended, on %s." % (name, when)
    else:
        text = "Changes to “%s” were not saved when Sorbel last ended, %d in all, the last on %s."
        text %= name, rows, when
    return text + "\nThe file has been changed since." * foreign


def check_question(shown, name, rows, pressed, when=NOW, foreign=False):
    """`rows`: the numbers that it may tell."""
    told = {"kind": "MessageDialog", "within": True, "message": RESTORE, "action": "Restore", "cancel": "Not Now",
            "alternate": "Discard", "pressed": pressed}
    wrong = {field: shown.get(field) for field, value in told.items() if shown.get(field) != value}
    if wrong:
        raise Fault("the question has %r: %r" % (wrong, shown))
    lines = [explanation(name, number, when, foreign) for number in rows]
    if shown["explanation"] not in lines:
        raise Fault("the question says %r, not %r" % (shown["explanation"], lines[0]))


def check_start_question(shown, documents, pressed):
    """The one at a start without files."""
    count = "1 document" if documents == 1 else "%d documents" % documents
    told = {"kind": "MessageDialog", "within": False, "message": "There are changes that were not saved.",
            "explanation": "They can be restored in %s." % count, "action": "Open", "cancel": "Not Now",
            "alternate": None, "pressed": pressed}
    if {field: shown.get(field) for field in told} != told:
        raise Fault("the question at the start is %r" % shown)


def failed_save(reply):
    """Whether a notice tells that the save has failed."""
    return any(notice["text"].endswith(SAVE_FAILED) for notice in reply["notices"])


def repaired(reply):
    """Whether a notice tells that an interrupted save has been completed."""
    return any(notice["text"] == REPAIRED for notice in reply["notices"])


def unprotected(notices):
    return any(notice["title"] == NOT_PROTECTED for notice in notices)


def same_but_doubtful(one, other):
    """Whether nothing differs that has to be kept."""
    return not differences(one["entries"], other["entries"])[0] and all(
        one[field] == other[field] for field in ("language", "application", "history"))


def between(seen, before, after):
    """In the middle of a step, which may be one of many changes, each is done or not yet done."""
    for field in ("language", "application", "history"):
        if seen[field] not in (before[field], after[field]):
            raise Fault("it has the %s %r" % (field, seen[field]))
    strange = set(differences(seen["entries"], before["entries"])[0]) & set(
        differences(seen["entries"], after["entries"])[0])
    if strange:
        raise Fault("it has texts from elsewhere: %s" % sorted(strange))


def same_document(seen, expected, what="the document"):
    """All that a journal keeps; the order of entries is that of their coming."""
    for field in ("language", "application", "history"):
        if seen[field] != expected[field]:
            raise Fault("%s has the %s %r, not %r" % (what, field, seen[field], expected[field]))
    certain, _ = differences(seen["entries"], expected["entries"])
    if certain:
        mine, right = texts(seen["entries"]), texts(expected["entries"])
        raise Fault("%s has other texts: %s" % (what, ", ".join(
            "%s: %r, not %r" % (key, mine.get(key), right.get(key)) for key in certain)))


def restored(program, file, expected, steps=1):
    """The changes are one step that is undone: then the texts are those of the file."""
    document = program.document()
    same_document(document, expected, "what was restored")
    if (document["descriptions"], document["dirty"]) != (["Restore"] * steps, True):
        raise Fault("the steps are %r, dirty %r" % (document["descriptions"], document["dirty"]))
    program.menu("EditUndo")
    undone = program.document()
    if translations(undone["entries"]) != translations(file["entries"]) or undone["history"] != file["history"]:
        raise Fault("undo does not give the file's texts back")
    program.menu("EditRedo")
    same_document(program.document(), expected, "the redone document")
