"""A virtual screen with a window manager, and the program on it under real keys and mouse clicks."""
import os
import pathlib
import subprocess
import tempfile
import time

PATIENCE = 30  # seconds until something that is waited for counts as failed


def wait_for(what, condition):
    """The first true result of the condition, which is tried again and again."""
    end = time.monotonic() + PATIENCE
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError("In vain waited for: " + what)
        time.sleep(0.05)


class Screen:
    """Close it, or use it with `with`. Programs started on it have a home folder of their own and no session bus."""

    def __init__(self, size="1280x800"):
        self._folder = tempfile.TemporaryDirectory()
        self.home = pathlib.Path(self._folder.name)
        self._processes = []
        reader, writer = os.pipe()
        self.start("Xvfb", "-displayfd", str(writer), "-screen", "0", size + "x24", "-nolisten", "tcp", "-noreset",
                   env=os.environ, pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as number:  # written once the screen is there
            display = number.readline().strip()
        if not display:
            raise AssertionError("Xvfb did not start")
        kept = {name: os.environ[name] for name in ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS") if name in os.environ}
        self.env = {**kept, "DISPLAY": ":" + display, "HOME": str(self.home), "LANG": "C.UTF-8",
                    "XDG_RUNTIME_DIR": str(self.home), "DBUS_SESSION_BUS_ADDRESS": "disabled:"}
        # A window that comes before the manager is ready may stay hidden.
        ready = self.home / "window-manager-is-ready"
        self.start("openbox", "--startup", "touch '%s'" % ready, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for("the window manager", ready.exists)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        for process in reversed(self._processes):
            process.terminate()
            process.wait(PATIENCE)
        self._folder.cleanup()

    def start(self, *command, **options):
        """The process; it is ended with the screen."""
        options.setdefault("env", getattr(self, "env", None))
        self._processes.append(subprocess.Popen(command, **options))
        return self._processes[-1]

    def set_desktop(self, points, dark=False):
        """For programs that start from now on: a desktop with a font of so many points, in light or dark."""
        ground, base, text = ("58,58,58", "32,32,32", "255,255,255") if dark else ("239,239,239", "255,255,255", "0,0,0")
        settings = ["[General]", *("%s=DejaVu Sans,%g,-1,5,50,0,0,0,0,0" % (font, points)
                                   for font in ("font", "menuFont", "toolBarFont")), "[KDE]", "widgetStyle=fusion"]
        for group, colours in (("Window", (ground, text)), ("View", (base, text)), ("Button", (ground, text)),
                               ("Selection", ("48,140,198", "255,255,255"))):
            settings += ["[Colors:%s]" % group, "BackgroundNormal=" + colours[0], "ForegroundNormal=" + colours[1]]
        folder = self.home / ".config"
        folder.mkdir(exist_ok=True)
        (folder / "kdeglobals").write_text("\n".join(settings) + "\n")
        self.env.update({"QT_QPA_PLATFORMTHEME": "kde", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5",
                         "XDG_CURRENT_DESKTOP": "KDE"})

    def try_xdotool(self, *arguments):
        """What it prints, or None if it fails, as it does while a window that it asks for is not there."""
        done = subprocess.run(["xdotool", *map(str, arguments)], env=self.env, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True, timeout=PATIENCE)
        return done.stdout.strip() if done.returncode == 0 else None

    def xdotool(self, *arguments):
        printed = self.try_xdotool(*arguments)
        if printed is None:
            raise AssertionError("xdotool %s failed" % (arguments,))
        return printed

    # --- Windows ---
    def windows(self):
        """{title: X window} of the program's windows on the screen."""
        found = (self.try_xdotool("search", "--onlyvisible", "--class", "^sorbel$") or "").split()
        titles = {window: self.try_xdotool("getwindowname", window) for window in found}
        return {title: window for window, title in titles.items() if title}

    def wait_for_windows(self, *titles):
        wait_for("exactly the windows %s" % (titles,), lambda: sorted(self.windows()) == sorted(titles))

    def active_window(self):
        return self.try_xdotool("getactivewindow")

    def active_title(self):
        return self.try_xdotool("getactivewindow", "getwindowname")

    def activate(self, title):
        # A search fails while another window goes, and then there seems to be none.
        self.xdotool("windowactivate", wait_for(title, lambda: self.windows().get(title)))
        wait_for("%s in front" % title, lambda: self.active_title() == title)

    # --- Input ---
    def key(self, *keys):
        self.xdotool("key", "--delay", 20, *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 20, text)

    def click(self, window, x, y):
        """At a place within the window's content."""
        self.xdotool("mousemove", "--window", window, x, y, "click", 1)

    # --- The focused field ---
    def clipboard(self):
        shown = subprocess.run(["xclip", "-selection", "clipboard", "-o"], env=self.env, capture_output=True)
        return shown.stdout.decode("utf-8") if shown.returncode == 0 else None

    def field(self):
        """The text of the field that has the focus, through the clipboard."""
        marker = "nothing was copied"
        subprocess.run(["xclip", "-selection", "clipboard"], input=marker, env=self.env, text=True, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for("the clipboard", lambda: self.clipboard() == marker)
        self.key("ctrl+a", "ctrl+c")
        wait_for("a copied text", lambda: self.clipboard() not in (None, marker))
        return self.clipboard()
