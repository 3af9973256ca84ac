"""Random operations in several windows, compared with plain data that goes through the same; memory is watched."""
import functools

import locale_file
import locale_reader
import model
from watched import Fault

WINDOWS = 3
STEPS = 400  # of a round, after which all windows are closed
GROWTH = 4  # MiB that the memory may have grown from the middle of the rounds to their end
TEXTS = ["", "a", "Ende", "Grüße\n", "tab\t\"quoted\"", "𝄞 \\n", "a longer text " * 8, "\udcff"]


class Window:
    def __init__(self, path, document):
        self.path = path
        self.document = document


class Soak:
    def __init__(self, folder, chance, program):
        self.folder = folder
        self.chance = chance
        self.program = program
        self.windows = []  # front to back
        self.made = 0
        self.operations = {
            self.type: 30, self.tick: 6, self.undo: 8, self.redo: 6, self.save: 3, self.import_locale: 2,
            self.import_text: 2, self.import_other_language: 1, self.export: 1, self.export_into: 1,
            self.activate: 3, self.search: 3, self.only_untranslated: 2, self.expand: 4, self.look: 4,
            self.version: 2, self.open: 1, self.close: 1, self.broken: 1}

    @property
    def front(self):
        return self.windows[0]

    def step(self):
        if not self.windows:
            return self.open()
        operation = self.chance.choices([*self.operations], [*self.operations.values()])[0]
        operation()
        return operation.__name__

    def new_path(self, ending):
        self.made += 1
        return self.folder / ("%d.%s" % (self.made, ending))

    def entries(self):
        return [["key %d" % index, [[platform, self.chance.choice(TEXTS), self.chance.choice(TEXTS)]
                                    for platform in self.chance.sample(range(4), self.chance.randrange(1, 4))]]
                for index in self.chance.sample(range(40), self.chance.randrange(1, 30))]

    # --- Windows ---
    def open(self):
        if len(self.windows) == WINDOWS:
            return
        entries, history = self.entries(), [["2000-01-01 00:00:00", self.entries()]]
        path = self.new_path("nvl")
        path.write_bytes(locale_file.to_bytes(entries, history=history))
        self.program.open(path)
        document = model.Document(entries, history)
        document.ticks = self.windows[0].document.ticks if self.windows else 0
        self.windows.insert(0, Window(path, document))

    def close(self):
        window, expected = self.front, self.front.path.read_bytes()
        if window.document.dirty():
            button = self.chance.choice(["action", "alternate", "cancel"])
            self.program.answer(button)
            self.program.close(shown=1)
            if button == "cancel":
                return
            if button == "action":
                expected = window.document.file()
        else:
            self.program.close()
        if window.path.read_bytes() != expected:
            raise Fault("closing left a wrong file")
        window.path.unlink()
        del self.windows[0]

    def activate(self):
        index = self.chance.randrange(len(self.windows))
        self.program.activate(index)
        self.windows.insert(0, self.windows.pop(index))

    def broken(self):
        path = self.new_path("nvl")
        path.write_bytes(self.front.path.read_bytes()[:-1])
        self.program.open(path, shown=1)
        path.unlink()

    # --- Editing ---
    def row(self):
        rows = self.program.rows()["rows"]
        index = self.chance.randrange(-1, len(rows))
        return (index, rows[index]) if index >= 0 else (-1, None)

    def type(self):
        index, row = self.row()
        if self.chance.random() < 0.2:
            self.program.click(index)
            return
        self.program.select(index)
        text = self.chance.choice(TEXTS) + str(self.chance.randrange(100))
        if self.program.type(text) != (row is not None):
            raise Fault("a field was enabled that should not be, or the reverse")
        if row:
            self.front.document.type(row["identifier"], row["platform"], text)

    def tick(self):
        count = self.chance.choice([1, 29, 30, 1000])
        self.program.tick(count)
        for window in self.windows:
            window.document.ticks += count

    def undo(self):
        self.program.menu("EditUndo")
        self.front.document.undo()

    def redo(self):
        self.program.menu("EditRedo")
        self.front.document.redo()

    def save(self):
        dirty = self.front.document.dirty()
        before = self.front.path.read_bytes()
        self.program.menu("FileSave")
        expected = self.front.document.save() if dirty else before
        if self.front.path.read_bytes() != expected:
            raise Fault("a wrong file was saved")

    # --- Exchange ---
    def bring_in(self, path, data):
        path.write_bytes(data)
        self.program.answer_file(path)
        self.program.menu("FileImportExistingFile", shown=1)
        path.unlink()

    def import_locale(self):
        data = locale_file.to_bytes(self.entries(), self.front.document.language)
        self.bring_in(self.new_path("nvl"), data)
        self.front.document.import_locale(locale_reader.read(data))

    def import_other_language(self):
        """The question takes the other language, or gives the import up."""
        language = self.chance.choice(["fr", "de", ""])
        if language == self.front.document.language:
            return
        path = self.new_path("nvl")
        path.write_bytes(locale_file.to_bytes(self.entries(), language))
        button = self.chance.choice(["alternate", "cancel"])
        self.program.answer_file(path)
        self.program.answer(button)
        self.program.menu("FileImportExistingFile", shown=2)
        if button == "alternate":
            self.front.document.import_locale(locale_reader.read(path.read_bytes()))
        path.unlink()

    def import_text(self):
        data = model.to_text(self.entries())
        self.bring_in(self.new_path("csv"), data)
        self.front.document.import_text(data)

    def export(self):
        path = self.new_path("tsv")
        self.program.answer_file(path)
        self.program.menu("ExportExportTabDelimited", shown=1)
        if path.read_bytes() != model.to_text(self.front.document.entries.listed()):
            raise Fault("a wrong text was exported")
        path.unlink()

    def export_into(self):
        """The application is a part of the document from then on, without a step."""
        path = self.folder / self.chance.choice(["a.exe", "b.exe"])
        (self.folder / "Resources").mkdir(exist_ok=True)
        path.touch()
        self.program.answer_file(path)
        self.program.menu("ExportExporttoApplication", shown=1)
        self.front.document.application = str(path)

    # --- Looking changes nothing ---
    def search(self):
        self.program.search(self.chance.choice(["", "e", "key 1", "Grü", "zzz"]))

    def only_untranslated(self):
        self.program.menu("LocalizationOnlyShowNonlocalizedStrings")

    def expand(self):
        index, row = self.row()
        if row and row["folder"]:
            (self.program.expand if self.chance.random() < 0.7 else self.program.collapse)(index)

    def look(self):
        self.program.paint()
        self.program.panes()
        self.program.menus()

    def version(self):
        self.program.version(self.chance.randrange(len(self.program.versions()["items"])))

    # --- What it comes to ---
    def compare(self, after):
        told = self.program.windows()
        if [window["path"] for window in told] != [str(window.path) for window in self.windows]:
            raise Fault("the windows are %r" % told)
        for _ in self.windows:
            model.compare(self.program.document(), self.front.document.told(), after)
            self.program.activate(len(self.windows) - 1)
            self.windows.insert(0, self.windows.pop())

    def close_all(self):
        while self.windows:
            self.close()


def soak(bench, name, rounds, steps):
    program = bench.program()
    run = Soak(bench.folder, bench.chance(name), program)
    sizes = []
    for number in range(rounds):
        run.open()
        for index in range(steps):
            done = run.step()
            if index % 20 == 0:
                run.compare("%s, step %d of round %d" % (done, index, number))
        run.compare("round %d" % number)
        run.close_all()
        sizes.append(program.memory())
    judge_growth(sizes)


def judge_growth(sizes):
    """With all windows closed the memory comes back to what it was; at first there is more to learn."""
    middle, last = sizes[len(sizes) // 2], sizes[-1]
    if last - middle > GROWTH:
        raise Fault("the memory grew from %.1f to %.1f MiB: %s" % (middle, last, " ".join("%.0f" % size
                                                                                         for size in sizes)))


def cases(bench):
    for index in range(2 if bench.quick else 10):
        name = "soak %d" % index
        yield name, functools.partial(soak, bench, name, 4 if bench.quick else 30, STEPS)
