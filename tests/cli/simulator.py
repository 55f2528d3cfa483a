"""A simulated logger and the command beside it, for the scripts that run the real programs."""

import os
import pathlib
import pty
import select
import subprocess
import tempfile
import threading
import tty

# Far above anything that a busy machine needs; reached only when something hangs.
PATIENCE_S = 240


class Desk:
    """A folder of its own, with a logger at logger(): COM9 of every command that runs here."""

    def __init__(self, tessmar, simulator):
        self.tessmar = os.path.abspath(tessmar)
        self.simulator = os.path.abspath(simulator)
        self.process = None
        self.folder_handle = tempfile.TemporaryDirectory(prefix="tessmar-")
        self.folder = pathlib.Path(self.folder_handle.name)
        self.environment = {
            **os.environ,
            "LC_ALL": os.environ.get("LC_ALL", "C.UTF-8"),
            "XDG_CONFIG_HOME": str(self.folder / "config"),
            "XDG_DATA_HOME": str(self.folder / "data"),
            "XDG_STATE_HOME": str(self.folder / "state"),
            "TESSMAR_PORTS": f"COM9={self.link},Simulated logger",
        }
        self.environment.pop("TESSMAR_ARCHIVE", None)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end_logger()
        self.folder_handle.cleanup()

    @property
    def link(self):
        return self.folder / "line"

    def file(self, name):
        return str(self.folder / name)

    def logger(self, *options):
        """Switches a new logger on."""
        self.end_logger()
        self.process = subprocess.Popen([self.simulator, "--link", str(self.link), *options],
                                        stdout=subprocess.PIPE, text=True)
        line = self.process.stdout.readline()
        assert line.startswith("ready: "), line

    def end_logger(self):
        if self.process is None:
            return
        self.process.terminate()
        self.process.wait(PATIENCE_S)
        self.process.stdout.close()
        self.process = None

    def start(self, *arguments, **more):
        """Starts the command and does not wait for it."""
        return subprocess.Popen([self.tessmar, *arguments], stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                env=self.environment, **more)

    def run(self, *arguments, **more):
        """Runs the command. Gives its exit status, its data and its words."""
        process = self.start(*arguments, **more)
        try:
            data, words = process.communicate(timeout=PATIENCE_S)
        except subprocess.TimeoutExpired:
            process.kill()
            raise
        return process.returncode, data, words


class Tap:
    """A line of its own to a desk's logger: port() for the command, and somebody who listens.

    on_request(opcode) is called for each frame of the command before the logger gets it; it gives
    DEAD when the logger is to get that frame and all that follows no more, and GONE when the device
    is to vanish."""

    START = 0xF8
    DEAD = "dead"
    GONE = "gone"

    def __init__(self, desk, on_request):
        self.on_request = on_request
        self.near, self.far = pty.openpty()
        self.logger = os.open(desk.link, os.O_RDWR | os.O_NOCTTY)
        tty.setraw(self.far)
        tty.setraw(self.logger)
        self.head = b""
        self.over = False
        self.thread = threading.Thread(target=self.carry)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.over = True
        self.thread.join()
        self.vanish()
        for end in (self.far, self.logger):
            os.close(end)

    def port(self):
        return os.ttyname(self.far)

    def vanish(self):
        if self.near is not None:
            os.close(self.near)
        self.near = None

    def carry(self):
        dead = False
        while not self.over and self.near is not None:
            ready, _, _ = select.select([self.near, self.logger], [], [], 0.05)
            if self.logger in ready:
                os.write(self.near, os.read(self.logger, 4096))
            if self.near in ready:
                data = os.read(self.near, 4096)
                wish = self.heard(data)
                dead = dead or wish == self.DEAD
                if wish == self.GONE:
                    self.vanish()
                elif not dead:
                    os.write(self.logger, data)

    def heard(self, data):
        """Start, length and opcode are the first three bytes of a frame; the start byte stands
        nowhere else."""
        for byte in data:
            if byte == self.START:
                self.head = b""
            self.head += bytes([byte])
            if len(self.head) == 3 and self.head[0] == self.START:
                wish = self.on_request(byte)
                if wish is not None:
                    return wish
        return None
