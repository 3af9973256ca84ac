"""The program is killed at random moments and at each system call of what writes; the next run has to have it all."""
import functools
import time

import injection
import kind_save
import locale_reader
import troubles
import unsaved
from kind_soak import Soak
from watched import Fault

AGAIN = 0.3  # how often the run that restores is killed too, and the next one asked


class State:
    """What has to be there after a death: the document as it was, and the file under it."""

    def __init__(self, window):
        self.path = window.path
        self.document = window.document.told()
        self.file = locale_reader.told(window.path.read_bytes())

    def certain(self):
        """There are changes that have to be offered."""
        return not unsaved.same_but_doubtful(self.file, self.document)

    def doubtful(self):
        """Entries without a text have come, which may count as changes or not."""
        return not self.certain() and bool(unsaved.differences(self.file["entries"], self.document["entries"])[1])


def killed_run(bench, chance):
    """Random operations until the death; what was told of by then."""
    program = bench.program()
    run = Soak(bench.folder, chance, program)
    run.open()
    for _ in range(chance.randrange(1, 25)):
        run.step()
    return run


def moment(bench, name):
    """After a reply."""
    chance = bench.chance(name)
    run = killed_run(bench, chance)
    run.program.kill()
    check(bench, chance, [State(window) for window in run.windows])


def check(bench, chance, states):
    """In a new run, and at times in one more after the death of that."""
    while True:
        program = reopen(bench, chance, states)
        for state in states:
            bring_to_front(program, state.path)
            check_document(program, state)
        if chance.random() > AGAIN:
            return program.end()
        program.kill()


def reopen(bench, chance, states):
    """With the files, or without any by the question at the start."""
    program = bench.program(start=False)
    asking = [state for state in states if state.certain()]
    by_question = bool(asking) and not any(state.doubtful() for state in states) and chance.random() < 0.5
    for _ in range(len(states) + by_question):
        program.answer("action")
    reply = program.raw("start", files=[] if by_question else [str(state.path) for state in states])
    shown = reply["shown"]
    if by_question:
        if not shown:
            raise Fault("nothing was asked at the start, though changes to %d documents were lost" % len(asking))
        unsaved.check_start_question(shown.pop(0), len(asking), "action")
    check_questions(shown, states)
    for state in states if by_question else ():
        if state not in asking:
            program.open(state.path)
    return program


def check_questions(shown, states):
    """One for each document that has changes, whatever the order."""
    for state in states:
        named = [dialog for dialog in shown if "“%s”" % state.path.name in dialog.get("explanation", "")]
        wanted = (1,) if state.certain() else (0, 1) if state.doubtful() else (0,)
        if len(named) not in wanted:
            raise Fault("%s is asked about %d times: %r" % (state.path.name, len(named), named))
        if named:
            rows = unsaved.rows_between(state.file["entries"], state.document["entries"])
            unsaved.check_question(named[0], state.path.name, rows, "action")
            shown.remove(named[0])
    if shown:
        raise Fault("it is asked besides: %r" % shown)


def bring_to_front(program, path):
    paths = [window["path"] for window in program.windows()]
    if str(path) not in paths:
        raise Fault("%s is not open" % path.name)
    program.activate(paths.index(str(path)))


def check_document(program, state):
    if state.certain():
        unsaved.restored(program, state.file, state.document)
    else:
        unsaved.same_document(program.document(), state.document)


# --- In the middle of an operation ---

def before_reply(bench, name):
    """Dies while it types or saves: what was told of is there, and the last operation wholly or not at all."""
    chance = bench.chance(name)
    run = killed_run(bench, chance)
    while not run.windows:
        run.open()
    program, front = run.program, run.front
    states = [State(window) for window in run.windows]
    old = front.path.read_bytes()
    row = last_operation(chance, program)
    time.sleep(chance.choice([0, 0.0002, 0.001, 0.004]))
    program.kill()
    if front.path.read_bytes() not in (old, front.document.file()):
        raise Fault("the file is neither the old nor the new")
    if row:
        typed_or_not(bench, front, states, row)
    else:
        states[0].file = locale_reader.told(front.path.read_bytes())
        check(bench, chance, states)


def last_operation(chance, program):
    """Sends it without waiting for the reply. The row that is typed into; None for a save."""
    rows = program.rows()["rows"]
    if rows and chance.random() < 0.5:
        index = chance.randrange(len(rows))
        program.select(index)
        send(program, b'{"op":"type","text":"typed at last"}')
        return rows[index]
    send(program, b'{"op":"menu","name":"FileSave"}')
    return None


def send(program, line):
    program.process.stdin.write(line + b"\n")
    program.process.stdin.flush()


def typed_or_not(bench, window, states, row):
    """Restores the front document and puts the last text in by hand where it is missing: then it must fit."""
    program = bench.program(start=False)
    program.answer("action")
    program.raw("start", files=[str(window.path)])
    seen = program.document()
    key = row["identifier"], row["platform"]
    if unsaved.texts(seen["entries"]).get(key, ("", ""))[1] == "typed at last":
        window.document.type(*key, "typed at last")
    unsaved.same_document(seen, window.document.told(), "what was restored")


# --- At a system call ---

class KilledCase(kind_save.Case):
    def die(self):
        self.prepare()
        try:
            reply = self.perform()
        except AssertionError:
            reply = None
        if reply is not None:
            raise ValueError("nothing killed it")  # a fault of this driver
        self.program.drop()

    def run(self, new):
        self.die()
        self.next_run(False)
        if self.path.read_bytes() not in (self.before[self.path.name], new[self.path.name]):
            raise Fault("the document's file is neither the old nor the new")


class Death(troubles.Injected):
    """By SIGKILL, in place of the call."""

    def __init__(self, call):
        super().__init__("%s:signal=KILL:when=%d" % (call.name, call.number))


def die_at(bench, operation, call, text, new):
    KilledCase(bench, operation, Death(call), text=text).run(new)


def cases_of_calls(bench, name, operation, text):
    if injection.why_not():
        yield name + ": each system call", functools.partial(injection.words, "")
        return
    new, calls = kind_save.plain(bench, operation, True, text)
    for call in bench.sample(calls, 12, name):
        yield ("%s: dies at %s %d" % (name, call.name, call.number),
               functools.partial(die_at, bench, operation, call, text, new))


def cases(bench):
    for index in range(40 if bench.quick else 1000):
        yield "moment %d" % index, functools.partial(moment, bench, "moment %d" % index)
    for index in range(20 if bench.quick else 500):
        yield "before a reply %d" % index, functools.partial(before_reply, bench, "before a reply %d" % index)
    kind_save.warm(bench)
    for name in ("save", "save of a version", "close", "rows"):
        yield from cases_of_calls(bench, name, kind_save.OPERATIONS[name], kind_save.TYPED)
    yield from cases_of_calls(bench, "shorter save", kind_save.OPERATIONS["save"], "")
