#!/usr/bin/python3
"""Measures the export from and the import into a server's table by cdbtool beside psql's \\copy.

    server_exchange.py RECORDS FOLDER PROGRAM...

Run by tests/server/with-server. PROGRAM is cdbtool, with its arguments in front; FOLDER is empty and takes the files. Both
take turns, and medians count: the time of the whole process, and the most memory that it held. Ends with 3 when a figure
is over its limit.
"""
import os
import statistics
import subprocess
import sys
import time

ROUNDS = 5
MOST_OF_EXPORT = 1.5  # times psql's
MOST_OF_IMPORT = 2.0
MOST_MEGABYTES = 64
COLUMNS = """id integer PRIMARY KEY, name text, street text, town text, n1 bigint, n2 bigint, flag boolean, born date, note text,
  price double precision"""
ROWS = """SELECT i, 'Name ' || i, 'Street ' || i::bigint * 7919 % 1000000, 'Town ' || i % 1000, i::bigint * 37 % 100000,
  i::bigint * 41 % 100000, i % 2 = 0, date '2000-01-01' + i % 3000, 'a note about the record ' || i, i * 0.5
  FROM generate_series(1, {}) i"""
PORT = os.environ["QUIVANE_TEST_SERVER"]
PSQL = ["psql", "-qX", "-h", "127.0.0.1", "-p", PORT, "-U", "quivane", "-v", "ON_ERROR_STOP=1", "-c"]


def run(command):
    """The seconds that the command takes and the megabytes that it holds at most."""
    start = time.monotonic()
    process = subprocess.Popen(command)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command[0]} ended with {process.returncode}")
    return time.monotonic() - start, usage.ru_maxrss / 1024


def on_server(*statements, database="exchange"):
    for statement in statements:
        subprocess.run([*PSQL, statement, database], check=True)


def report(title, tool, copy, limit):
    seconds = statistics.median(row[0] for row in tool)
    beside = statistics.median(row[0] for row in copy)
    memory = max(row[1] for row in tool)
    slow = seconds / beside > limit
    large = memory > MOST_MEGABYTES
    print(f"  {title:30} {seconds:10.3f} s  \\copy {beside:10.3f} s   ratio {seconds / beside:5.2f}   "
          f"(at most {limit:.1f}){'   OVER THE LIMIT' if slow else ''}")
    print(f"  {'memory of it':30} {memory:10.1f} MB {'':35} (at most {MOST_MEGABYTES})"
          f"{'   OVER THE LIMIT' if large else ''}")
    return slow or large


def main():
    count, folder, *program = sys.argv[1:]
    link = os.path.join(folder, "link.cdb")
    with open(link, "w", encoding="utf-8") as made:
        made.write("[ODBC]\nDRIVER=PostgreSQL Unicode\nSERVER=127.0.0.1\nPORT=" + PORT +
                   "\nDATABASE=exchange\nUID=quivane\nSSLmode=disable\n")
    on_server("CREATE DATABASE exchange", database="postgres")
    on_server(f"CREATE TABLE big ({COLUMNS})", "INSERT INTO big " + ROWS.format(count), "VACUUM ANALYZE big",
              f"CREATE TABLE target ({COLUMNS})")
    exported = os.path.join(folder, "exported.csv")
    copied = os.path.join(folder, "copied.csv")
    turns = {"export": ([], []), "import": ([], [])}
    for _ in range(ROUNDS):
        # Relative names, which Windows programs take as well.
        turns["export"][0].append(run([*program, "export", "link.cdb", "big", "--quiet", "--force", "-o", "exported.csv"]))
        turns["export"][1].append(run([*PSQL, f"\\copy big TO '{copied}' CSV HEADER", "exchange"]))
        if sum(1 for _ in open(exported, "rb")) != int(count) + 1:
            sys.exit("the export has another number of records")
        on_server("TRUNCATE target")
        # Each its own file: psql writes truth values as cdbtool doesn't take them.
        turns["import"][0].append(run([*program, "import", "link.cdb", "exported.csv", "--table", "target", "--quiet"]))
        on_server("TRUNCATE target")
        turns["import"][1].append(run([*PSQL, f"\\copy target FROM '{copied}' CSV HEADER", "exchange"]))
    over = report("export to CSV", *turns["export"], MOST_OF_EXPORT)
    over |= report("import of CSV", *turns["import"], MOST_OF_IMPORT)
    sys.exit(3 if over else 0)


if __name__ == "__main__":
    os.chdir(sys.argv[2])
    main()
