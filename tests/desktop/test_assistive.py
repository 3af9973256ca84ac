#!/usr/bin/python3
"""What a client of assistive technology reads of the program on a screen and a bus. SORBEL names the executable.

Needs at-spi2-core, and gir1.2-atspi-2.0 for Debian's own Python."""
import os
import pathlib
import shutil
import subprocess
import sys
import unittest

try:
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
except (ImportError, ValueError) as failure:
    print("skipped, nothing to read with (at-spi2-core, gir1.2-atspi-2.0):", failure)
    sys.exit(int(os.environ.get("SORBEL_SKIP_CODE", 0)))

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from screen import PATIENCE, Screen, wait_for  # noqa: E402

PROGRAM = os.environ["SORBEL"]
DOCUMENT = "Notizbuch.kestrum_locale"


def children(node):
    return [node.get_child_at_index(index) for index in range(node.get_child_count())]


def find(node, role, name):
    """The first object below a node by the end of its role and the start of its name, or None."""
    for child in children(node):
        if child.get_role_name().endswith(role) and (child.get_name() or "").startswith(name):
            return child
        if child.get_role_name() != "list":  # has nothing but rows
            found = find(child, role, name)
            if found:
                return found
    return None


def has(node, state):
    return node.get_state_set().contains(getattr(Atspi.StateType, state))


def related(node, relation):
    return [found.get_target(0).get_name() for found in node.get_relation_set()
            if found.get_relation_type() == getattr(Atspi.RelationType, relation)]


class AssistiveTechnology(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen()
        cls.addClassCleanup(cls.screen.close)
        cls.screen.env["LANG"] = "C.UTF-8"
        bus = cls.screen.start("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True)
        cls.addClassCleanup(bus.stdout.close)
        cls.screen.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        os.environ.update(cls.screen.env)  # for the client
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                        "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status",
                        "ScreenReaderEnabled", "<true>"], check=True, stdout=subprocess.DEVNULL, timeout=PATIENCE)
        file = cls.screen.home / DOCUMENT
        shutil.copy(ROOT / "samples" / DOCUMENT, file)
        cls.screen.start(PROGRAM, file)
        cls.screen.wait_for_windows(DOCUMENT)
        Atspi.init()
        cls.desktop = Atspi.get_desktop(0)
        cls.window = wait_for("the window", lambda: find(cls.desktop, "frame", "Notizbuch"))
        cls.events = []
        cls.listener = Atspi.EventListener.new(
            lambda event: cls.events.append((event.type, event.detail1, event.source.get_name())))
        for kind in ("state-changed:expanded", "state-changed:selected", "property-change:accessible-value"):
            cls.listener.register("object:" + kind)

    def named(self, role, name):
        found = find(self.window, role, name)
        self.assertIsNotNone(found, "%s %s" % (role, name))
        return found

    def wait_for_event(self, event):
        def came():
            while GLib.MainContext.default().iteration(False):
                pass
            return event in self.events
        wait_for("%s among %s" % (event, self.events), came)

    def select(self, row):
        item = self.named("list", "Strings").get_child_at_index(row)
        names = [item.get_action_name(index) for index in range(item.get_n_actions())]
        item.do_action(names.index("Press"))
        wait_for("the selection of a row", lambda: has(item, "SELECTED"))

    def test_the_window_tells_the_progress(self):
        self.assertRegex(self.window.get_description(), r"^\d+ of \d+ translated$")

    def test_texts_for_reading_only_have_no_side_to_edit(self):
        for name, editable in (("Default Value", False), ("Name", False), ("Translation", True)):
            text = self.named("text", name)
            self.assertEqual("EditableText" in text.get_interfaces(), editable, name)
            self.assertEqual(has(text, "EDITABLE"), editable, name)
            self.assertEqual(has(text, "READ_ONLY"), not editable, name)

    def test_labels_and_fields_name_each_other(self):
        for label, field in (("Search:", "Search"), ("Name:", "Name"), ("Default Value:", "Default Value"),
                             ("German Translation:", "Translation")):
            self.assertEqual(related(self.named("text", field), "LABELLED_BY"), [label])
            self.assertEqual(related(self.named("label", label), "LABEL_FOR"), [field])

    def test_splitters_are_values(self):
        splitter = self.named("split pane", "Width of the Strings")
        self.assertEqual((splitter.get_minimum_value(), splitter.get_maximum_value()), (104, 472))
        splitter.set_current_value(200)
        self.wait_for_event(("object:property-change:accessible-value", 0, splitter.get_name()))
        self.assertEqual(splitter.get_current_value(), 200)

    def test_opening_a_folder_is_announced(self):
        self.select(1)
        row = self.named("list", "Strings").get_child_at_index(1).get_name()
        for key, opened in (("Right", 1), ("Left", 0)):
            self.screen.key(key)
            self.wait_for_event(("object:state-changed:expanded", opened, row))

    def test_a_selection_is_announced_and_its_end(self):
        rows = self.named("list", "Strings")
        names = [rows.get_child_at_index(row).get_name() for row in (7, 4)]
        self.select(7)
        self.select(4)
        for event in ((1, names[0]), (0, names[0]), (1, names[1])):
            self.wait_for_event(("object:state-changed:selected", *event))

    def test_what_a_comparison_found_is_told(self):
        versions = self.named("combo box", "All Strings")
        for key in ("alt+s", "Tab", "Tab"):
            self.screen.key(key)
        wait_for("the focus of the versions", lambda: has(versions, "FOCUSED"))
        self.screen.key("Down")
        wait_for("the older version", lambda: find(self.window, "text", "Earlier Default Value") and
                 has(find(self.window, "text", "Earlier Default Value"), "SHOWING"))
        told = []
        for row in range(self.named("list", "Strings").get_child_count()):
            self.select(row)
            for name in ("Default Value", "Earlier Default Value"):
                text = self.named("text", name)
                wait_for("a text", lambda: Atspi.Text.get_text(text, 0, -1) != "(No selection)")
                # The bus knows no attribute for what is new, but where it begins and ends.
                runs, end = 0, 0
                while end < text.get_character_count():
                    _, _, end = text.get_attribute_run(end, False)
                    runs += 1
                told.append((name, text.get_description() or "", runs))
        for name, word in (("Default Value", "added: "), ("Earlier Default Value", "removed: ")):
            self.assertTrue([one for one in told if one[0] == name and word in one[1] and one[2] > 1], told)


if __name__ == "__main__":
    unittest.main()
