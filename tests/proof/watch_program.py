"""watch_program.py BIN SECONDS: what tests/proof/hour does once there is a display.

Starts BIN/tessmar-sim and BIN/TessmarLogger with a home of their own, connects and samples by the
keyboard, lets the program settle, and then looks at it at the beginning and at the end of the time.
"""

import contextlib
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time

# What the program may have more of at the end. A run of samples is held until its records are in
# the archive, which is at its end: some 90 bytes a sample, 0.3 MB an hour. The rest is for the page
# cache of SQLite, which fills up to 2 MB.
RESIDENT_KB = 3072
HEAP_KB = 2560
# SQLite keeps the descriptor of the archive's first checkpoint for the next. What comes and goes with
# a checkpoint is no growth: the smallest number of several looks counts.
DESCRIPTORS = 1
LOOKS = 5
# Three timers of ten ticks a second, which mostly come together, and the bytes of three exchanges.
# A program that spins is woken thousands of times.
WAKE_UPS = 60
# Of wake-ups a second from the first part of the time to its last.
WAKE_UPS_GROWTH = 1.25
# Samples that may be missing or too many: the ends of the time fall between two samples, and an
# exchange that a busy machine holds up over a tick makes its cycle a tick longer.
SAMPLES_OFF = 2
SAMPLES_SHARE = 0.02
PATIENCE = 60


class Failed(Exception):
    pass


def wait_for(what, condition, patience=PATIENCE):
    end = time.monotonic() + patience
    while time.monotonic() < end:
        if condition():
            return
        time.sleep(0.1)
    raise Failed(f"{what} did not come within {patience} s")


def windows():
    listed = subprocess.run(["wmctrl", "-l"], capture_output=True, text=True).stdout
    return [line.split(maxsplit=3)[-1] for line in listed.splitlines()]


def press(key):
    subprocess.run(["xdotool", "key", key], check=True)


class Program:
    def __init__(self, folder, programs):
        self.archive = folder / "archive.sqlite"
        self.home = folder / "home"
        self.start = time.monotonic()
        store = self.home / "Tessmar"
        store.mkdir(parents=True)
        (store / "Tessmar Logger.ini").write_text(
            "[Configuration]\nDirectPort=COM9\nDirectBaud=115200\n")
        environment = dict(os.environ, LC_ALL="C.UTF-8", TESSMAR_PORTS=f"COM9={folder / 'logger'},Logger",
                           TESSMAR_ARCHIVE=str(self.archive))
        for variable in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"):
            environment[variable] = str(self.home)
        self.process = subprocess.Popen([programs / "TessmarLogger"], env=environment)
        self.proc = pathlib.Path("/proc") / str(self.process.pid)

    def samples(self):
        """How many live samples the archive holds."""
        if not self.archive.exists():
            return 0
        with contextlib.closing(sqlite3.connect(f"file:{self.archive}?mode=ro", uri=True)) as file:
            try:
                return file.execute("SELECT count(*) FROM block JOIN upload ON upload.id = upload_id"
                                    " WHERE kind = 'live'").fetchone()[0]
            except sqlite3.OperationalError:
                return 0  # It is being made.

    def sample_continuously(self):
        wait_for("the connection dialog", lambda: "Connect" in windows())
        press("Return")
        wait_for("the end of the dialog", lambda: "Connect" not in windows())

        def samples_come():
            press("ctrl+a")
            wait = time.monotonic() + 5
            while time.monotonic() < wait:
                if self.samples() > 0:
                    return True
                time.sleep(0.2)
            return False

        # A key that comes while the connection is still being read does nothing.
        wait_for("a sample", samples_come)

    def wait(self, seconds):
        """Lets time pass; a program that ends meanwhile has failed."""
        begin = time.monotonic()
        while (left := begin + seconds - time.monotonic()) > 0:
            try:
                self.process.wait(left)
            except subprocess.TimeoutExpired:
                continue
            log = sorted(self.home.rglob("*.log"))
            said = log[-1].read_text(errors="replace").splitlines()[-12:] if log else []
            raise Failed("\n    ".join(
                [f"the program ended with {self.process.returncode} by itself, {time.monotonic() - self.start:.0f} s"
                 f" after its start, with {self.samples()} samples", *said]))

    def number(self, file, name):
        for line in (self.proc / file).read_text().splitlines():
            if line.startswith(name + ":"):
                return int(line.split()[1])
        raise Failed(f"{file} of the process has no {name}")

    def descriptors(self):
        return len(list((self.proc / "fd").iterdir()))

    def wake_ups(self):
        total = 0
        for thread in (self.proc / "task").iterdir():
            try:
                total += self.number(f"task/{thread.name}/status", "voluntary_ctxt_switches")
            except (FileNotFoundError, ProcessLookupError):
                pass  # A thread that has ended since.
        return total

    def look(self):
        """All figures at a moment; descriptors and threads as the least of some looks."""
        descriptors, threads = [], []
        for _ in range(LOOKS):
            descriptors.append(self.descriptors())
            threads.append(self.number("status", "Threads"))
            time.sleep(0.1)
        return {"resident": self.number("status", "VmRSS"), "heap": self.number("smaps_rollup", "Anonymous"),
                "descriptors": min(descriptors), "threads": min(threads),
                "wake-ups": self.wake_ups(), "samples": self.samples(), "at": time.monotonic()}

    def end(self):
        self.process.terminate()
        try:
            self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise Failed("the program does not end") from None
        return self.process.returncode


class Verdict:
    def __init__(self):
        self.short = False

    def say(self, what, kept):
        self.short |= not kept
        print(f"hour: {what}{'' if kept else ' FALLS SHORT'}", flush=True)

    def growth(self, what, first, last, allowed, unit=""):
        self.say(f"{what}: {first}{unit} at first, {last}{unit} at last, {allowed}{unit} more allowed",
                 last - first <= allowed)


def rate(first, last, what):
    return (last[what] - first[what]) / (last["at"] - first["at"])


def watch(program, seconds):
    settle = min(120, seconds // 4)
    program.wait(settle)
    part = max(5, min(300, seconds // 5))
    looks = [program.look()]
    program.wait(part)
    looks.append(program.look())
    program.wait(max(0, seconds - 2 * part))
    looks.append(program.look())
    program.wait(part)
    looks.append(program.look())
    first, last = looks[0], looks[-1]
    passed = last["at"] - first["at"]
    verdict = Verdict()
    verdict.say(f"{passed:.0f} s of sampling, {settle} s after its beginning", True)
    verdict.growth("resident memory", first["resident"], last["resident"], RESIDENT_KB, " kB")
    verdict.growth("heap and other memory of its own", first["heap"], last["heap"], HEAP_KB, " kB")
    verdict.growth("descriptors", first["descriptors"], last["descriptors"], DESCRIPTORS)
    verdict.growth("threads", first["threads"], last["threads"], 0)
    early, late = (rate(*pair, "wake-ups") for pair in ((looks[0], looks[1]), (looks[2], looks[3])))
    verdict.say(f"wake-ups: {early:.1f} a second at first, {late:.1f} at last, {WAKE_UPS} allowed,"
                f" and {WAKE_UPS_GROWTH} times the first", late <= min(WAKE_UPS, early * WAKE_UPS_GROWTH))
    samples = last["samples"] - first["samples"]
    off = SAMPLES_OFF + SAMPLES_SHARE * passed
    verdict.say(f"samples in the archive: {samples} in {passed:.1f} s, one a second is due,"
                f" {off:.0f} off allowed", abs(samples - passed) <= off)
    return verdict


def main():
    programs, seconds = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    folder = pathlib.Path(tempfile.mkdtemp(prefix="tessmar-hour-"))
    simulator = subprocess.Popen([programs / "tessmar-sim", "--link", folder / "logger", "--records", "5000"],
                                 stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    program = None
    try:
        simulator.stdout.readline()
        program = Program(folder, programs)
        program.sample_continuously()
        verdict = watch(program, seconds)
        before = program.samples()
        status = program.end()
        verdict.say(f"the end by a signal: status {status}, 0 expected", status == 0)
        after = program.samples()
        verdict.say(f"samples at the end: {after}, none fewer than {before}", after >= before)
        return 1 if verdict.short else 0
    except Failed as failure:
        print(f"hour: {failure} FALLS SHORT", flush=True)
        return 1
    finally:
        for process in (program.process if program else None, simulator):
            if process is not None and process.poll() is None:
                process.kill()
                process.wait()
        shutil.rmtree(folder, ignore_errors=True)


sys.exit(main())
