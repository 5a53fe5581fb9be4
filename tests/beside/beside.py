#!/usr/bin/python3
"""Lets three programs write one database at the same time, and looks whether anything was lost.

    beside.py --wine TOOLS/WINE --windows WRITER.EXE --native WRITER --mode MODE [--kill VICTIM]

The store as a Windows program, the store as a native one, and SQLite itself in the journal mode MODE add,
change, read and rebuild for some seconds. With --kill the one that is named is killed in the midst of its
work and started again, several times. Afterwards every change that any of them acknowledged must be there,
none by halves, and the file must be sound. Ends with 1 and says what is wrong if it is not so.
"""
import argparse
import os
import random
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time

SECONDS = 3
KILLS = 2
ROUNDS_BEFORE_A_KILL = 3
ROWS_OF_A_ROUND = 31
ROUNDS_BETWEEN_REBUILDS = 7
LONGEST_PAUSE = 0.03  # seconds between two changes, so that each comes to its turn between two of another
PATIENCE = 60  # seconds, for what takes a moment on a machine that has nothing else to do

problems = []


def problem(text):
    problems.append(text)
    print("beside:", text, file=sys.stderr, flush=True)


class Participant:
    """A writer in a process of its own, and what it acknowledged."""

    def __init__(self, name, command):
        self.name = name
        self.acknowledged = {"added": set(), "changed": set()}
        self.was_killed = False
        self._changed = threading.Condition()
        self._is_ready = False
        self._has_ended = False
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._reader = threading.Thread(target=self._read)
        self._reader.start()

    def _read(self):
        for line in self.process.stdout:
            words = line.split()
            with self._changed:
                if words == ["ready"]:
                    self._is_ready = True
                elif len(words) == 2 and words[0] in self.acknowledged:
                    self.acknowledged[words[0]].add(int(words[1]))
                else:
                    problem(f"{self.name} says {line!r}")
                self._changed.notify_all()
        with self._changed:
            self._has_ended = True
            self._changed.notify_all()

    def _wait_for(self, what, condition):
        with self._changed:
            self._changed.wait_for(lambda: self._has_ended or condition(), PATIENCE)
            if not condition():
                problem(f"{self.name} was never {what}")

    def begin(self):
        self._wait_for("ready", lambda: self._is_ready)
        try:
            self.process.stdin.write("go\n")
            self.process.stdin.flush()
        except BrokenPipeError:
            problem(f"{self.name} ended before it began")

    def wait_for_rounds(self, count):
        self._wait_for(f"at round {count}", lambda: len(self.acknowledged["changed"]) >= count)

    def kill(self):
        self.was_killed = True
        for pid in working_processes(self.process.pid):
            os.kill(pid, signal.SIGKILL)

    def finish(self):
        try:
            code = self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            problem(f"{self.name} does not end")
            self.kill()
            code = self.process.wait()
        self._reader.join()
        if code != 0 and not self.was_killed:
            problem(f"{self.name} ended with {code}")


def working_processes(pid):
    """The process itself, or behind the script and the timekeeper that start Windows programs, these."""
    with open(f"/proc/{pid}/task/{pid}/children", encoding="ascii") as file:
        children = [int(child) for child in file.read().split()]
    if not children:
        return [pid]
    return [found for child in children for found in working_processes(child)]


def retried(connection, sql):
    """Runs `sql` until no other program is in the way. Gives up an error of another kind."""
    while True:
        try:
            return connection.execute(sql)
        except sqlite3.OperationalError as error:
            if "locked" not in str(error):
                raise


def write_by_sqlite(path, name, seconds, mode):
    """The part of SQLite itself, in a process of its own; says the same as the store's writers."""
    connection = sqlite3.connect(path, timeout=2, isolation_level=None)
    got = retried(connection, f"PRAGMA journal_mode={mode}").fetchone()[0]
    if got != mode:
        sys.exit(f"asked for the journal mode {mode}, got {got}")
    # Without a journal a transaction that fails on its way can't be undone.
    begin = "BEGIN EXCLUSIVE" if mode == "off" else "BEGIN IMMEDIATE"
    print("ready", flush=True)
    sys.stdin.readline()
    end = time.monotonic() + seconds
    number = 0
    while time.monotonic() < end:
        number += 1
        time.sleep(random.uniform(0, LONGEST_PAUSE))
        retried(connection, begin)
        connection.executemany(
            "INSERT INTO t (writer, round, part, content) VALUES (?, ?, ?, ?)",
            [(name, number, part, str(part) * (9000 if part == 0 else 700)) for part in range(ROWS_OF_A_ROUND)])
        retried(connection, "COMMIT")
        print("added", number, flush=True)
        time.sleep(random.uniform(0, LONGEST_PAUSE))
        retried(connection, begin)
        connection.execute("UPDATE t SET state = 'changed' WHERE writer = ? AND round = ?", (name, number))
        retried(connection, "COMMIT")
        print("changed", number, flush=True)
        if number % ROUNDS_BETWEEN_REBUILDS == 0:
            try:
                connection.execute("VACUUM")
            except sqlite3.OperationalError as error:
                if "locked" not in str(error):
                    raise
    connection.close()


def check(path, participants):
    connection = sqlite3.connect(path, timeout=PATIENCE)
    answer = connection.execute("PRAGMA integrity_check").fetchall()
    if answer != [("ok",)]:
        problem(f"the file is damaged: {answer[:3]}")
        return
    rows = {}
    for name, number, count, changed in connection.execute(
            "SELECT writer, round, count(*), sum(state IS 'changed') FROM t GROUP BY writer, round"):
        rows[name, number] = (count, changed)
    for participant in participants:
        for number in sorted(participant.acknowledged["added"]):
            count = rows.get((participant.name, number), (0, 0))[0]
            if count != ROWS_OF_A_ROUND:
                problem(f"{participant.name}: {count} of {ROWS_OF_A_ROUND} rows of round {number} are there")
        for number in sorted(participant.acknowledged["changed"]):
            changed = rows.get((participant.name, number), (0, 0))[1]
            if changed != ROWS_OF_A_ROUND:
                problem(f"{participant.name}: {changed} of {ROWS_OF_A_ROUND} rows of round {number} are changed")
        told = ", ".join(f"{len(numbers)} {what}" for what, numbers in participant.acknowledged.items())
        print(f"beside: {participant.name}: {told}", flush=True)
    # The store's writer adds the first row of a round by itself.
    for (name, number), (count, changed) in rows.items():
        if count not in (1, ROWS_OF_A_ROUND - 1, ROWS_OF_A_ROUND) or changed not in (0, count):
            problem(f"{name}: round {number} is there by halves: {count} rows, {changed} changed")
    connection.close()


def run(arguments, folder):
    path = os.path.join(folder, "data.cdb")
    connection = sqlite3.connect(path, isolation_level=None)
    if arguments.mode == "wal":
        connection.execute("PRAGMA journal_mode=wal")
    connection.execute("CREATE TABLE t (id INTEGER PRIMARY KEY, writer TEXT, round INTEGER, part INTEGER, "
                       "content TEXT, state TEXT)")
    connection.execute("CREATE INDEX byWriter ON t (writer, round)")
    connection.close()

    windows_path = "Z:" + path.replace("/", "\\")
    commands = {
        "windows": lambda name: [arguments.wine, arguments.windows, windows_path, name, str(SECONDS)],
        "native": lambda name: [arguments.native, path, name, str(SECONDS)],
        "sqlite": lambda name: [sys.executable, __file__, "--write", path, name, str(SECONDS), arguments.mode],
    }
    participants = [Participant(kind, command(kind)) for kind, command in commands.items()]
    for participant in participants:
        participant.begin()
    if arguments.kill:
        victim = next(each for each in participants if each.name == arguments.kill)
        for number in range(1, KILLS + 1):
            victim.wait_for_rounds(ROUNDS_BEFORE_A_KILL)
            victim.kill()
            name = f"{arguments.kill}-{number}"
            victim = Participant(name, commands[arguments.kill](name))
            participants.append(victim)
            victim.begin()
    for participant in participants:
        participant.finish()
        if not participant.acknowledged["changed"]:
            problem(f"{participant.name} changed nothing")
    check(path, participants)


def main():
    if sys.argv[1:2] == ["--write"]:
        path, name, seconds, mode = sys.argv[2:]
        write_by_sqlite(path, name, float(seconds), mode)
        return 0
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--wine", required=True)
    parser.add_argument("--windows", required=True)
    parser.add_argument("--native", required=True)
    parser.add_argument("--mode", required=True, choices=["delete", "truncate", "persist", "memory", "off", "wal"])
    parser.add_argument("--kill", choices=["windows", "native", "sqlite"])
    arguments = parser.parse_args()
    for program in (arguments.windows, arguments.native):
        if not os.path.exists(program):
            sys.exit(f"beside: {program} is missing; build the target store_writer")
    os.environ.update(QUIVANE_PREFIX="fresh", QUIVANE_TIMEOUT=str(PATIENCE))
    with tempfile.TemporaryDirectory(prefix="quivane beside ") as folder:
        run(arguments, folder)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
