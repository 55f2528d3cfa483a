"""A simulated logger and the command beside it, for the scripts that run the real programs."""

import os
import pathlib
import subprocess
import tempfile

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
