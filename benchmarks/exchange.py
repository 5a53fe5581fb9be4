#!/usr/bin/python3
"""Measures the import and export of CSV by cdbtool beside those of SQLite's own shell.

    exchange.py CDBTOOL DATABASE FOLDER

DATABASE has the table Measurements; FOLDER is empty and takes the files. Both programs take turns on the same
file, and medians count: the time of the whole process, and the most memory that it held. The shell detects
nothing and makes every column a text. Ends with 3 when a figure is over its limit.
"""
import os
import statistics
import subprocess
import sys
import time

ROUNDS = 5
MOST_OF_IMPORT = 1.2  # times the shell's
MOST_OF_EXPORT = 1.0
MOST_MEGABYTES = 64
SHELL = "sqlite3"


def run(command, stdin=None, stdout=None):
    """The seconds that the command takes and the megabytes that it holds at most."""
    start = time.monotonic()
    process = subprocess.Popen(command, stdin=stdin, stdout=stdout)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command[0]} ended with {process.returncode}")
    return time.monotonic() - start, usage.ru_maxrss / 1024


def remove(path):
    for suffix in ("", "-journal", "-wal", "-shm"):
        if os.path.exists(path + suffix):
            os.remove(path + suffix)


def import_by_shell(source, target):
    remove(target)
    return run([SHELL, target, f".import --csv {source} Measurements"])


def import_by_tool(tool, source, target):
    remove(target)
    subprocess.run([tool, "new", target], check=True)
    return run([tool, "import", target, source, "--table", "Measurements", "--quiet"])


def export_by_shell(database, target):
    with open(target, "wb") as output:
        return run([SHELL, "-csv", "-header", database, "SELECT * FROM Measurements"], stdout=output)


def export_by_tool(tool, database, target):
    with open(target, "wb") as output:
        return run([tool, "export", database, "Measurements", "--quiet"], stdout=output)


def report(title, tool, shell, limit):
    seconds = statistics.median(row[0] for row in tool)
    beside = statistics.median(row[0] for row in shell)
    memory = max(row[1] for row in tool)
    slow = seconds / beside > limit
    large = memory > MOST_MEGABYTES
    print(f"  {title:30} {seconds:10.3f} s  shell {beside:10.3f} s   ratio {seconds / beside:5.2f}   "
          f"(at most {limit:.1f}){'   OVER THE LIMIT' if slow else ''}")
    print(f"  {'memory of it':30} {memory:10.1f} MB  shell {max(row[1] for row in shell):9.1f} MB"
          f"                 (at most {MOST_MEGABYTES}){'   OVER THE LIMIT' if large else ''}")
    return slow or large


def main():
    tool, database, folder = sys.argv[1:]
    source = os.path.join(folder, "measurements.csv")
    export_by_shell(database, source)
    scratch = os.path.join(folder, "scratch")
    turns = {"export of CSV": ([], []), "import of CSV": ([], [])}
    for _ in range(ROUNDS):
        turns["import of CSV"][0].append(import_by_tool(tool, source, scratch + ".cdb"))
        turns["import of CSV"][1].append(import_by_shell(source, scratch + ".db"))
        turns["export of CSV"][0].append(export_by_tool(tool, database, scratch + ".csv"))
        turns["export of CSV"][1].append(export_by_shell(database, scratch + ".csv"))
    over = report("import of CSV", *turns["import of CSV"], MOST_OF_IMPORT)
    over |= report("export of CSV", *turns["export of CSV"], MOST_OF_EXPORT)
    sys.exit(3 if over else 0)


if __name__ == "__main__":
    main()
