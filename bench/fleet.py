#!/usr/bin/env python3
"""fleet.py TESSMAR SIMULATOR [LOGGERS] [--short]: an office's loggers, brought in by several laptops at once.

Runs beside tests/support/with-postgres. A year at 15 minutes for each logger, uploaded and cleared each month, by whichever
laptop came along. The number of loggers grows by ten each step, up to LOGGERS (1000). Each step: the time of all pushes
together beside a plain COPY of the same records and blocks by as many at once, the size, and the office's questions of
docs/sharing.md. With --short three loggers and some days, and nothing is measured: everything has to be there.
"""

import argparse
import json
import os
import pathlib
import re
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time
import uuid

import psycopg2

sys.dont_write_bytecode = True
TOP = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(TOP / "tests" / "cli"))
from simulator import Desk  # noqa: E402

LAPTOPS = 4
LOGGER_SPACE = uuid.UUID("6f1d1a52-2a1c-5c0e-9d43-7d0c6b0e5a11")
PROGRAMS = sorted(pathlib.Path("/usr/lib/postgresql").glob("*/bin"))[-1]
ROUNDS = 5
COPIED = ("record", "block")


def figure(name, result, unit="", beside="", ratio=None):
    print(f"{name:<58} {result:>10} {unit:<9} {beside:<26} {'' if ratio is None else format(ratio, '6.2f')}", flush=True)


def questions():
    """The office's questions by their names."""
    page = (TOP / "docs" / "sharing.md").read_text(encoding="utf-8")
    found = re.findall(r"^```sql\n(-- ([^:]*):.*?)^```", page, re.M | re.S)
    return {name: sql.replace("Mill Pond 3", "Logger 0001") for sql, name in found}


def server(sql, database="fleet"):
    connection = psycopg2.connect(dbname=database)
    connection.autocommit = True
    try:
        with connection.cursor() as cursor:
            cursor.execute(sql)
            return cursor.fetchall() if cursor.description else []
    finally:
        connection.close()


def fresh(database):
    server(f"DROP DATABASE IF EXISTS {database} WITH (FORCE)", "postgres")
    server(f"CREATE DATABASE {database}", "postgres")


def processor_seconds():
    """Of all clients and all of the server's processes that have ended."""
    time.sleep(0.3)
    folder = pathlib.Path(os.environ["TESSMAR_TEST_SERVER"])
    postmaster = (folder / "data" / "postmaster.pid").read_text().split()[0]
    fields = pathlib.Path(f"/proc/{postmaster}/stat").read_text().rpartition(")")[2].split()
    clients = os.times()
    return (int(fields[13]) + int(fields[14])) / os.sysconf("SC_CLK_TCK") + clients.children_user + clients.children_system


class Fleet:
    """The archives of all laptops."""

    def __init__(self, desk, records, months):
        self.desk = desk
        self.months = months
        self.each = records // months
        self.model = desk.file(f"model{records}.sqlite")
        desk.logger("--records", str(records))
        status, _, words = desk.run("upload", "COM9", "--archive", self.model, "--quiet")
        assert status == 0, words
        desk.end_logger()

    def archives(self, loggers):
        """Each upload went to the laptop that came along."""
        paths = [self.archive(f"laptop{i}.sqlite", [(logger, month) for logger in range(loggers)
                                                    for month in range(self.months)
                                                    if (logger + month) % LAPTOPS == i])
                 for i in range(LAPTOPS)]
        return paths

    def archive(self, name, uploads):
        path = self.desk.file(name)
        pathlib.Path(path).unlink(missing_ok=True)
        # The tables as the program makes them.
        with sqlite3.connect(self.model) as model:
            tables = [sql for (sql,) in model.execute(
                "SELECT sql FROM sqlite_master WHERE sql IS NOT NULL ORDER BY type DESC, rowid")]
            application, = model.execute("PRAGMA application_id").fetchone()
            version, = model.execute("PRAGMA user_version").fetchone()
        archive = sqlite3.connect(path, isolation_level=None)
        archive.execute("PRAGMA journal_mode = WAL")
        archive.execute("PRAGMA synchronous = OFF")
        for sql in tables:
            archive.execute(sql)
        archive.execute(f"PRAGMA application_id = {application}")
        archive.execute(f"PRAGMA user_version = {version}")
        archive.execute("ATTACH ? AS model", (self.model,))
        archive.execute("BEGIN")
        for logger, month in uploads:
            self.add(archive, f"Logger {logger + 1:04}", month)
        archive.execute("COMMIT")
        archive.close()
        return path

    def add(self, archive, name, month):
        archive.execute("""INSERT OR IGNORE INTO logger (uuid, name, model, firmware, first_seen, last_seen)
            SELECT ?, ?, model, firmware, first_seen, last_seen FROM model.logger""",
                        (str(uuid.uuid5(LOGGER_SPACE, f"208/{name}")), name))
        logger, = archive.execute("SELECT id FROM logger WHERE name = ?", (name,)).fetchone()
        begin, end = month * self.each, (month + 1) * self.each
        upload = archive.execute("""INSERT INTO upload (uuid, logger_id, kind, started, ended, owner, state, promised,
            records, settings, analog, pulse, clock_offset_s, source, program) SELECT ?, ?, kind, r.logger_time || 'Z',
            r.logger_time || 'Z', owner, state, ?, ?, settings, analog, pulse, ?, source, program FROM model.upload u
            JOIN model.record r ON r.upload_id = u.id AND r.number = ?""",
                                 (str(uuid.uuid4()), logger, self.each, self.each, month * 3, end)).lastrowid
        archive.execute("""INSERT INTO record SELECT ?, number - ?, stamp, logger_time, raw, a1, a2, a3, a4, a5, a6, a7,
            a8, p1, p2 FROM model.record WHERE number > ? AND number <= ?""", (upload, begin, begin, end))
        archive.execute("INSERT INTO block SELECT ?, number - ?, bytes FROM model.block WHERE number > ? AND number <= ?",
                        (upload, begin // 10, begin // 10, end // 10))
        archive.execute("INSERT INTO channel SELECT ?, place, name, unit, decimals, method FROM model.channel", (upload,))
        archive.execute("""INSERT INTO event (uuid, logger_id, at, kind, text) SELECT ?, logger_id, ended, 'uploaded', ''
            FROM upload WHERE id = ?""", (str(uuid.uuid4()), upload))


def push_all(desk, paths):
    """Brings all archives at once. Gives the seconds, and the records."""
    server("CHECKPOINT", "postgres")
    began = time.monotonic()
    processes = [desk.start("archive", "push", "postgresql:///fleet", "--archive", path, "--json") for path in paths]
    told = []
    for process in processes:
        data, words = process.communicate()
        assert process.returncode == 0, words
        told.append(json.loads(data))
    seconds = time.monotonic() - began
    assert all(one["skipped"] == 0 for one in told), told
    return seconds, sum(one["records"] for one in told)


def copy_all(folder, streams):
    """A plain COPY of the same rows into the same tables of another database. Gives the seconds, and
    those of the processor."""
    fresh("plain")
    tables = subprocess.run([PROGRAMS / "pg_dump", "--schema-only", "fleet"], check=True, capture_output=True).stdout
    subprocess.run(["psql", "--quiet", "--dbname=plain"], input=tables, check=True, stdout=subprocess.DEVNULL)
    for table in COPIED:
        for i in range(streams):
            with open(folder / f"{table}{i}", "wb") as rows:
                subprocess.run(["psql", "--quiet", "--dbname=fleet", f"--command=COPY (SELECT * FROM tessmar.{table}"
                                f" WHERE upload_id % {streams} = {i}) TO STDOUT"], check=True, stdout=rows)
    server("CHECKPOINT", "postgres")
    before = processor_seconds()
    began = time.monotonic()
    processes = [subprocess.Popen(["psql", "--quiet", "--dbname=plain",
                                   *(f"--command=\\copy tessmar.{table} FROM '{folder}/{table}{i}'" for table in COPIED)])
                 for i in range(streams)]
    assert all(process.wait() == 0 for process in processes)
    seconds = time.monotonic() - began
    processor = processor_seconds() - before
    for file in folder.iterdir():
        file.unlink()
    return seconds, processor


def ask_all():
    """Each question's milliseconds, and its rows."""
    connection = psycopg2.connect(dbname="fleet", options="-c search_path=tessmar")
    connection.autocommit = True
    answers = {}
    with connection.cursor() as cursor:
        for name, sql in questions().items():
            times = []
            for _ in range(ROUNDS):
                began = time.monotonic()
                cursor.execute(sql)
                rows = cursor.fetchall()
                times.append(1000 * (time.monotonic() - began))
            answers[name] = (statistics.median(times), rows)
    connection.close()
    return answers


def step(fleet, folder, loggers, before):
    """One number of loggers. Gives the questions' times."""
    records = loggers * fleet.months * fleet.each
    fresh("fleet")
    paths = fleet.archives(loggers)
    before_push = processor_seconds()
    pushed, count = push_all(fleet.desk, paths)
    push_processor = processor_seconds() - before_push
    assert count == records, (count, records)
    there, = server("SELECT (SELECT count(*) FROM tessmar.record), (SELECT sum(records) FROM tessmar.upload),"
                    " (SELECT count(DISTINCT logger_id) FROM tessmar.upload)")
    assert there == (records, records, loggers), there
    for path in paths:
        pathlib.Path(path).unlink()
    copied, copy_processor = copy_all(folder, LAPTOPS)
    assert server("SELECT count(*) FROM tessmar.record", "plain") == [(records,)]
    size, = server("SELECT pg_database_size('fleet')")[0]
    server("DROP DATABASE plain WITH (FORCE)", "postgres")
    server("VACUUM ANALYZE")
    figure(f"{loggers} loggers, {records} records by {LAPTOPS} laptops", f"{pushed:.2f}", "s", f"COPY {copied:.2f} s",
           pushed / copied)
    figure("  processor, both sides", f"{push_processor:.2f}", "s", f"COPY {copy_processor:.2f} s",
           push_processor / copy_processor)
    figure("  records a second", f"{records / pushed:.0f}")
    figure("  size of the database", f"{size / 1e6:.0f}", "MB", f"{size / records:.0f} bytes a record")
    for what, function in (("record", "pg_relation_size"), ("its key", "pg_indexes_size")):
        taken, = server(f"SELECT {function}('tessmar.record')")[0]
        figure(f"  of it {what}", f"{taken / 1e6:.0f}", "MB", f"{taken / records:.0f} bytes a record")
    answers = ask_all()
    for name, (ms, rows) in answers.items():
        was = before.get(name)
        figure(f"  {name}, {len(rows)} rows", f"{ms:.1f}", "ms", f"{was:.1f} ms with a tenth" if was else "",
               ms / was if was else None)
    return answers


def push_once(desk):
    """The budget: 200000 records of one laptop to a server on the same machine."""
    fleet = Fleet(desk, 40000, 1)
    fresh("fleet")
    path = fleet.archive("one.sqlite", [(logger, 0) for logger in range(5)])
    before = processor_seconds()
    seconds, count = push_all(desk, [path])
    assert count == 200000
    figure("push of 200000 records", f"{seconds:.2f}", "s", "at most 5", seconds / 5)
    figure("  processor, both sides", f"{processor_seconds() - before:.2f}", "s")


def check(answers, fleet, loggers):
    """What the questions say of the short fleet."""
    rows = {name: rows for name, (_, rows) in answers.items()}
    names = sorted(f"Logger {i + 1:04}" for i in range(loggers))
    assert sorted(row[0] for row in rows["last contact"]) == names, rows["last contact"]
    assert sorted(row[0] for row in rows["battery"]) == names, rows["battery"]
    assert sorted(row[0] for row in rows["clock drift"]) == names, rows["clock drift"]
    assert all(row[2] == 3 * (fleet.months - 1) for row in rows["clock drift"]), rows["clock drift"]
    assert rows["gaps"] == [], rows["gaps"]
    assert sum(row[1] for row in rows["last year"]) == fleet.months * fleet.each, rows["last year"]


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("tessmar")
    parser.add_argument("simulator")
    parser.add_argument("loggers", nargs="?", type=int, default=1000)
    parser.add_argument("--short", action="store_true")
    chosen = parser.parse_args()
    with Desk(chosen.tessmar, chosen.simulator) as desk, tempfile.TemporaryDirectory() as folder:
        # The server's user writes nothing here, psql does.
        folder = pathlib.Path(folder)
        if chosen.short:
            fleet = Fleet(desk, 400, 4)
            check(step(fleet, folder, 3, {}), fleet, 3)
            return
        push_once(desk)
        fleet = Fleet(desk, 35040, 12)
        times = {}
        loggers = 10
        while True:
            times = {name: ms for name, (ms, _) in step(fleet, folder, min(loggers, chosen.loggers), times).items()}
            if loggers >= chosen.loggers:
                break
            loggers *= 10


main()
