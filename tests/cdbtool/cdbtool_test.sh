#!/bin/bash
# cdbtool_test.sh native|windows TOOL [TEST...]
#
# Runs every command of cdbtool as a user would, and looks at its output, its messages and its exit code. As a
# native program also what signals, pipes and full disks do to it. Only the given tests, if any: they go on with
# what those before them have made.
set -uo pipefail

kind=$1
program=$2
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
if [[ $kind == windows ]]; then
  cdbtool() { "$root/tools/wine" "$program" "$@"; }
else
  cdbtool() { "$program" "$@"; }
fi
cd "$folder" || exit 1

failures=0
checks=0
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}

# What is called and not there, a test or a step of one, has tested nothing. The shell calls this in a process of
# its own, which can't count.
command_not_found_handle() {
  echo "$1" >>"$folder/not_found"
  return 127
}

# run EXIT-CODE ARGUMENT...: runs the tool; what it writes is in $out and $err. Standard input is the test's.
run() {
  local expected=$1 code=0
  shift
  checks=$((checks + 1))
  cdbtool "$@" >out.txt 2>err.txt || code=$?
  out=$(<out.txt)
  err=$(<err.txt)
  [[ $code == "$expected" ]] || fail "cdbtool $* ended with $code instead of $expected; it said: $err"
}
shows() { [[ $out == "$1" ]] || fail "${FUNCNAME[1]}: the output is: $out"$'\n'"instead of: $1"; }
has() { [[ $out == *"$1"* ]] || fail "\"$1\" is missing in the output: $out"; }
says() { [[ $err == *"$1"* ]] || fail "\"$1\" is missing in the messages: $err"; }
is_silent() { [[ ! $err ]] || fail "it said: $err"; }
ask() { cdbtool query "$@" --csv 2>&1 | tail -n +2; }
same() { [[ $1 == "$2" ]] || fail "\"$1\" instead of \"$2\""; }

printf 'Name,Zip,Age,Born\nAnn,007,5,2001-03-09\n"Bob, Jr",12,,\n' >people.csv

test_usage() {
  run 2
  says "subcommand"
  run 2 nonsense
  run 2 tables
  run 2 import a.cdb people.csv --delimiter ab
  says "not one character"
  run 2 import a.cdb people.csv --encoding klingon
  run 2 import a.cdb people.csv --type Zip
  run 2 import a.cdb people.csv --new --append
  run 2 import a.cdb people.csv --key Name
  run 2 import a.cdb - </dev/null
  says "--table"
  run 2 export a.cdb people --format xml
  run 2 import a.cdb people.csv --type Zip=Klingon
  says "Klingon"
  run 2 import a.cdb people.csv --dry-run --rejects -
  run 0 --help
  is_silent
  run 0 --version
  has "cdbtool "
}

# What is empty is no choice, and a database is no stream.
test_empty_and_dash() {
  local arguments
  for arguments in "import a.cdb people.csv --delimiter" "import a.cdb people.csv --encoding" "import a.cdb people.csv --table" \
    "import a.cdb people.csv --map" "import a.cdb people.csv --type" "import a.cdb people.csv --skip" \
    "import a.cdb people.csv --rejects" "import a.cdb people.csv --replace --key" "import a.cdb" "export a.cdb" \
    "export a.cdb people --output" "export a.cdb people --delimiter" "find a.cdb x --table" "show a.cdb" "backup a.cdb" \
    "new" "tables"; do
    # shellcheck disable=SC2086
    run 2 $arguments ""
    says "cdbtool: "
  done
  run 2 backup a.cdb -
  run 2 new -
  run 2 tables -
  says "standard input"
  [[ ! -e - ]] || fail "there is a file called -"
}

test_help() {
  local command
  for command in tables show find query import export new backup check info; do
    run 0 "$command" --help
    has "Example:"
    has "cdbtool $command "
    is_silent
  done
}

test_new_and_info() {
  run 0 new a.cdb
  is_silent
  run 1 new a.cdb
  says "a.cdb exists already."
  run 0 info a.cdb
  has "tables: 0"
  run 1 info missing.cdb
  says "missing.cdb: "
  run 1 tables people.csv
}

test_import_and_show() {
  run 0 import a.cdb people.csv
  shows ""
  says "read as utf-8, parted by comma, the first line has the names"
  says "people: 2 records added"
  run 0 tables --counts a.cdb
  shows $'people\t2'
  run 0 show a.cdb people
  has "Name     Zip  Age  Born"
  has "Ann      007    5  2001-03-09"
  run 0 show a.cdb people --csv
  shows $'Name,Zip,Age,Born\nAnn,"007",5,2001-03-09\n"Bob, Jr","12",,'
  run 0 show a.cdb "SELECT Age FROM people WHERE Age > 1" --json
  shows $'[\n{"Age":5}\n]'
  run 1 show a.cdb nothing
  says "There is no table, view or saved query called nothing."
  run 0 import a.cdb people.csv --quiet
  is_silent
  run 1 import a.cdb people.csv --new
  run 1 import a.cdb people.csv --append --table other
  run 1 import a.cdb missing.csv
  says "missing.csv"
  run 0 query a.cdb "DELETE FROM people WHERE rowid > 2"
  says "2 records changed"
}

test_dry_run() {
  run 0 import a.cdb people.csv --dry-run --table Other
  has "table: Other (new)"
  has "column: Zip -> Zip Text"
  says "2 records would be added"
  run 0 tables a.cdb
  shows people
}

test_rejects() {
  printf 'Name,Zip,Age,Born\nCy,1,x,\nDi,2,3,\nEd,1\n' >bad.csv
  run 1 import a.cdb bad.csv --table people
  says 'line 2: Age: "x" is no whole number'
  says "line 4: there are 2 fields instead of 4"
  says "2 records can't be taken, so nothing was imported"
  run 3 import a.cdb bad.csv --table people --keep-good --rejects rejects.csv
  says "people: 1 record added, 2 left out"
  same "$(<rejects.csv)" $'Line,Reason,Fields\r\n2,"Age: ""x"" is no whole number that the column holds","Cy","1","x",""\r\n4,"there are 2 fields instead of 4","Ed","1"\r'
  run 1 import a.cdb bad.csv --table people --keep-good --rejects rejects.csv
  says "exists already"
  same "$(ask a.cdb "SELECT count(*) FROM people")" 3
  run 1 import a.cdb bad.csv --table people --rejects a.cdb --force --keep-good
  says "is in use"
  run 1 import a.cdb bad.csv --table people --rejects a.cdb-journal --keep-good
  says "is in use"
  run 3 import a.cdb bad.csv --table people --keep-good --dry-run --rejects rejects.csv --force
  run 1 import a.cdb - --table people --rejects - < <(printf 'Name,Age\nCy,x\nDi,5\n')
  shows $'Line,Reason,Fields\r\n2,"Age: ""x"" is no whole number that the column holds","Cy","x"\r'
  says "1 record can't be taken"
  [[ ! -e - ]] || fail "there is a file called -"
  run 0 query a.cdb "DELETE FROM people WHERE Name = 'Di'"
}

test_choices() {
  printf 'M\xfcller;1,5\n' >umlaut.csv
  run 0 import a.cdb umlaut.csv --no-header --delimiter semicolon --encoding windows-1252 --map Field1=Name --type "Field2=Varchar (10)"
  run 0 show a.cdb umlaut --csv
  shows $'Name,Field2\nM\xc3\xbcller,"1,5"'
  run 0 import a.cdb umlaut.csv --table guessed
  says "read as windows-1252, parted by comma, the first line is a record"
  says "line 1: byte 2 of the file is no UTF-8"
  run 0 import a.cdb umlaut.csv --table guessed --quiet
  is_silent
  run 0 query a.cdb "DROP TABLE guessed"
  printf 'sep=|\nName,first|Age\nAnn,B|5\n' >named.csv
  run 0 import a.cdb named.csv
  says "parted by bar"
  run 0 show a.cdb named --csv
  shows $'"Name,first",Age\n"Ann,B",5'
  run 0 import a.cdb - --table nulls --null NULL --type a=Text --type b=Text --header < <(printf 'a,b\nNULL,\n')
  same "$(ask a.cdb "SELECT a IS NULL, b = '' FROM nulls")" 1,1
  run 0 import a.cdb - --table people --replace --key Name < <(printf '[{"Name":"Ann","Age":6},{"Name":"Fay","Age":7}]')
  says "1 record added, 1 replaced"
  same "$(ask a.cdb "SELECT Zip, Age FROM people WHERE Name = 'Ann'")" '"007",6'
  run 1 import a.cdb - --table people < <(printf 'Name,Extra\nGus,1\n')
  says "Extra"
  run 0 import a.cdb - --table people --skip Extra < <(printf 'Name,Extra\nGus,1\n')
  run 0 import a.cdb - --table people --map x=Name < <(printf 'x\nGus\n')
  says "x -> Name"
}

test_query_and_find() {
  run 0 query a.cdb "SELECT Name FROM people WHERE Age = 6"
  has "Ann"
  run 1 query a.cdb "SELECT nothing FROM people"
  run 1 query a.cdb "SELECT Name FROM nowhere"
  run 0 find a.cdb BOB
  shows $'people\t2\tName\tBob, Jr'
  run 0 find a.cdb M$'\xc3\x9c'LLER
  shows $'umlaut\t1\tName\tM\xc3\xbcller'
  run 0 find a.cdb BOB --case
  shows ""
  run 0 find a.cdb 007 --table people
  has "Zip"
  run 1 find a.cdb 007 --table nowhere
}

test_saved_query() {
  run 0 query a.cdb "CREATE TABLE QuivaneQueries (QueryName Text ,SQL Text)"
  run 0 query a.cdb "INSERT INTO QuivaneQueries VALUES ('the old ones', 'SELECT Name FROM people WHERE Age > 6')"
  run 0 show a.cdb "the old ones" --csv
  shows $'Name\nFay'
}

test_export() {
  run 0 export a.cdb "SELECT Name, Age FROM people WHERE Age > 5 ORDER BY Age" -o out.csv
  same "$(<out.csv)" $'Name,Age\r\nAnn,6\r\nFay,7\r'
  says "2 records exported"
  run 1 export a.cdb people -o out.csv
  says "--force"
  run 0 export a.cdb "SELECT Age FROM people WHERE Age = 6" -o out.csv --force --no-header --line-end lf --bom
  same "$(<out.csv)" $'\xef\xbb\xbf6'
  run 1 export a.cdb people -o a.cdb --force
  says "is in use"
  run 0 export a.cdb people -o out.json
  has ""
  grep -q '^{"Name":"Ann","Zip":"007","Age":6,"Born":"2001-03-09"},$' out.json || fail "out.json: $(<out.json)"
  run 0 export a.cdb people -o out.jsonl --quiet
  is_silent
  run 0 export a.cdb people -o out.html
  grep -q '<th>Name</th>' out.html || fail "out.html: $(<out.html)"
  run 0 export a.cdb people --format sql
  has "INSERT INTO"
  run 0 export a.cdb people --delimiter tab --line-end lf --null NONE
  has $'Bob, Jr\t"12"\tNONE\tNONE'
  run 0 export a.cdb "SELECT Name, Age FROM people WHERE Age = 6" -o out.tsv
  same "$(<out.tsv)" $'Name\tAge\r\nAnn\t6\r'
  run 0 export a.cdb "SELECT Name, Age FROM people WHERE Age = 6" -o out.tsv --force --delimiter comma
  same "$(<out.tsv)" $'Name,Age\r\nAnn,6\r'
  run 1 export a.cdb people -o a.cdb-wal
  says "is in use"
  run 1 export a.cdb "DELETE FROM people"
  run 1 export a.cdb people -o nowhere/out.csv
  [[ ! -e nowhere ]] || fail "nowhere was made"
  run 0 new back.cdb
  run 0 import back.cdb out.json --table people
  same "$(ask back.cdb "SELECT Name, Zip, Age, Born FROM people WHERE Age = 6")" 'Ann,"007",6,2001-03-09'
}

# Values of other kinds than their columns are for.
test_exact() {
  run 0 query a.cdb "CREATE TABLE Odd (Truth Bit, Day Date, Raw Bytea)"
  run 0 query a.cdb "INSERT INTO Odd VALUES ('yes', '01/02/2003', 'text'), (1, 20010309, x'41'), ('true', '2003/01/02', 5)"
  run 0 query a.cdb "CREATE TABLE Back (Truth Bit, Day Date, Raw Bytea)"
  run 0 export a.cdb Odd -o odd.csv
  says "5 values will not come back from this as in the database"
  says "--exact"
  run 0 export a.cdb Odd -o odd.html
  [[ $err != *value* ]] || fail "it said: $err"
  run 1 import a.cdb odd.csv --table Back
  local name
  for name in exact.csv exact.tsv exact.json exact.jsonl; do
    run 0 export a.cdb Odd -o "$name" --exact
    [[ $err != *"come back"* ]] || fail "it said: $err"
    run 0 import a.cdb "$name" --table Back --exact
    same "$(ask a.cdb "SELECT count(*) FROM (SELECT typeof(Truth), Truth, typeof(Day), Day, typeof(Raw), Raw FROM Odd EXCEPT SELECT typeof(Truth), Truth, typeof(Day), Day, typeof(Raw), Raw FROM Back)")" 0
    run 0 query a.cdb "DELETE FROM Back"
  done
}

test_backup_and_check() {
  run 0 backup a.cdb copy.cdb
  is_silent
  run 1 backup a.cdb copy.cdb
  says "exists already"
  run 1 backup a.cdb a.cdb-wal
  says "is in use"
  run 0 check copy.cdb
  shows ok
  same "$(ask copy.cdb "SELECT count(*) FROM people")" "$(ask a.cdb "SELECT count(*) FROM people")"
  run 0 query copy.cdb "CREATE TABLE Parent (Id INTEGER PRIMARY KEY)"
  run 0 query copy.cdb "CREATE TABLE Child (P INTEGER REFERENCES Parent)"
  # Another program that keeps to no rules.
  /usr/bin/python3 -c "
import sqlite3
c = sqlite3.connect('copy.cdb')
c.execute('INSERT INTO Child VALUES (5)')
c.commit()"
  run 1 check copy.cdb
  has "Child: record 1 refers to a record of Parent that is not there"
  says "The file is sound, but"
  /usr/bin/python3 -c "
import sqlite3
c = sqlite3.connect('copy.cdb')
c.execute('CREATE INDEX Names ON people (Name)')
c.execute('PRAGMA writable_schema = ON')
c.execute('''UPDATE sqlite_schema SET sql = 'CREATE INDEX Names ON people (Zip)' WHERE name = 'Names' ''')
c.commit()"
  run 1 check copy.cdb
  has "row 1 missing from index Names"
  has "people: all can be read, "
  says "no more than its indexes: cdbtool query FILE REINDEX"
  run 0 query copy.cdb REINDEX
  run 0 query copy.cdb "DELETE FROM Child"
  run 0 check copy.cdb
}

# What the check says of files in which a page, or the end, is lost; and that what it advises works.
test_damage() {
  /usr/bin/python3 - <<'END'
import sqlite3, struct
c = sqlite3.connect('sound.cdb')
for table in 'Good', 'Bad':
    c.execute(f'CREATE TABLE {table} (A Integer, B Text)')
    c.executemany(f'INSERT INTO {table} VALUES (?, ?)', [(i, 'x' * 50) for i in range(2000)])
c.execute('CREATE INDEX Numbers ON Good (A)')
c.commit()
roots = dict(c.execute('SELECT name, rootpage FROM sqlite_schema'))
size = c.execute('PRAGMA page_size').fetchone()[0]
c.close()
sound = open('sound.cdb', 'rb').read()
def middle(name):
    page = sound[(roots[name] - 1) * size:roots[name] * size]
    at = 12 + struct.unpack('>H', page[3:5])[0] // 2 * 2
    cell = struct.unpack('>H', page[at:at + 2])[0]
    return struct.unpack('>I', page[cell:cell + 4])[0]
def damaged(file, page):
    content = bytearray(sound)
    content[(page - 1) * size:page * size] = bytes([0xAA]) * size
    open(file, 'wb').write(content)
damaged('page.cdb', middle('Bad'))
damaged('index.cdb', middle('Numbers'))
open('cut.cdb', 'wb').write(sound[:-3 * size])
open('letter.cdb', 'wb').write(b'Dear all, this is a letter and no database. ' * 10)
END
  run 0 check sound.cdb
  run 1 check page.cdb
  has "Good: all can be read, 2000 records"
  has "Bad: only the first "
  says "The file is damaged."
  local left
  left=$(sed -n 's/^Bad: only the first \([0-9]*\) can be read$/\1/p' <<<"$out")
  run 0 export page.cdb Good -o good.csv
  same "$(wc -l <good.csv)" 2001
  run 1 export page.cdb Bad -o half.csv
  [[ ! -e half.csv ]] || fail "half a file was left"
  run 1 export page.cdb Bad
  same "$(wc -l <out.txt)" $((left + 1))
  run 1 check index.cdb
  has "Good: all can be read, 2000 records"
  has "Bad: all can be read, 2000 records"
  [[ $err != *REINDEX* ]] || fail "it advised what does not work: $err"
  run 0 export index.cdb Good -o good.csv --force
  run 1 check cut.cdb
  says "bytes are missing"
  run 1 check letter.cdb
  says "not a database."
  [[ $err != *missing* ]] || fail "it missed bytes of what is no database: $err"
  # A table that can't be read for another reason keeps nothing of the rest back.
  /usr/bin/python3 - <<'END'
import sqlite3
c = sqlite3.connect('page.cdb')
c.create_function('elsewhere', 1, lambda value: value, deterministic=True)
c.execute('CREATE TABLE Foreign1 (A, B AS (elsewhere(A)))')
c.execute('INSERT INTO Foreign1 VALUES (1)')
c.commit()
END
  run 1 check page.cdb
  has "Good: all can be read, 2000 records"
  has "Foreign1: only the first 0 can be read: "
  says "The file is damaged."
}

# offered WORD...: what the completion offers for the last word, a line each.
offered() {
  COMP_WORDS=(cdbtool "$@")
  COMP_CWORD=$#
  _cdbtool
  printf '%s\n' "${COMPREPLY[@]}"
}

# The options that the program has for a command, the short ones too.
options_of() {
  run 0 "$1" --help
  grep -oE '^ *(-[a-z],)?--[a-z-]+' out.txt | tr -d ' ' | tr ',' '\n' | sort -u
}

# The manual page, the user's manual and the completion know every option that the program knows, and no other.
test_manual_and_completion() {
  local command option manual chapter all=$'--version\n'
  manual=$(sed 's/\\-/-/g' "$root/packaging/cdbtool.1")
  chapter=$(sed -n '/<h3>The command line/,/<\/section>/p' "$root/help/Quivane.htm")
  source "$root/packaging/cdbtool.bash"
  same "$(offered ex)" export
  same "$(offered tables a.cd)" a.cdb
  same "$(offered show a.cdb peo)" people
  same "$(offered show --csv a.cdb peo)" people
  same "$(offered import a.cdb people.csv --encoding win)" windows-1252
  cp a.cdb "with a blank.cdb"
  cdbtool query "with a blank.cdb" "CREATE TABLE [Two words] (a)" --quiet
  same "$(offered show "with\ a\ blank.cdb" Two)" "Two words"
  same "$(offered export "'with a blank.cdb'" Two)" "Two words"
  same "$(offered import "with\ a\ blank.cdb" people.csv --table Two)" "Two words"
  for command in tables show find query import export new backup check info; do
    mapfile -t options < <(options_of "$command")
    [[ ${#options[@]} -ge 2 ]] || fail "$command has no options"
    all+=$(printf '%s\n' "${options[@]}")$'\n'
    same "$(offered "$command" - | sort -u)" "$(printf '%s\n' "${options[@]}")"
    for option in "${options[@]}"; do
      grep -qE -- "(^|[^a-z-])$option([^a-z-]|\$)" <<<"$manual" || fail "the manual page lacks $option of $command"
    done
    [[ $chapter == *"cdbtool $command "* ]] || fail "the user's manual lacks an example of $command"
  done
  while IFS= read -r option; do
    grep -qx -- "$option" <<<"$all" || fail "there is no option $option, of which a manual tells"
  done < <(grep -oE -- '(^|[^a-z-])--[a-z][a-z-]*' <<<"$manual$chapter" | grep -oE -- '--[a-z-]+' | sort -u)
}

# The examples of the user's manual, as they stand there, one after the other.
test_examples_of_the_manual() {
  local example count=0
  cp "$QUIVANE_EXAMPLE" library.cdb
  while IFS= read -r example; do
    count=$((count + 1))
    eval "run 0 ${example#cdbtool }"
  done < <(sed -n 's/^<pre class="tool">\(.*\)<\/pre>$/\1/p' "$root/help/Quivane.htm" | sed 's/&gt;/>/g; s/&lt;/</g')
  [[ $count -ge 8 ]] || fail "the manual has only $count examples"
  same "$(ask library.cdb "SELECT count(*) FROM Guests")" "$(ask library.cdb "SELECT count(*) FROM Members")"
  run 0 import library.cdb members.csv --table Members2 --dry-run
  has "header: yes"
}

# --- What only systems with signals have -------------------------------------------------------------

make_large() {
  /usr/bin/python3 -c "
text = 'some text ' * 25
for i in range(100000):
    print(f'{i},{text}{i},{i * 7}.5')" >large.csv
}

is_unchanged() {
  same "$(ask a.cdb "SELECT count(*) FROM sqlite_schema WHERE name = 'large'")" 0
  run 0 check a.cdb
}

test_pipe_that_nobody_reads() {
  run 0 import a.cdb large.csv --table Many --quiet
  (cdbtool export a.cdb Many 2>pipe.txt; echo $? >code.txt) | head -n 1 >first.txt
  same "$(<code.txt)" 1
  same "$(<first.txt)" $'Field1,Field2,Field3\r'
  run 0 query a.cdb "DROP TABLE Many"
}

test_full_disk() {
  if [[ -e /dev/full ]]; then
    local code=0
    cdbtool export a.cdb people >/dev/full 2>err.txt || code=$?
    same "$code" 1
    err=$(<err.txt)
    says "can't be written"
  fi
  # (Larger than what is kept in memory, so that it is written to the file before its end.) No file may grow beyond 2 MB here: neither the database nor an output.
  local limited=0
  (trap '' XFSZ; ulimit -f 2048; cdbtool import a.cdb large.csv >out.txt 2>err.txt) || limited=$?
  same "$limited" 1
  is_unchanged
  [[ ! -s a.cdb-journal ]] || fail "a journal was left"
  limited=0
  (trap '' XFSZ; ulimit -f 100; cdbtool export a.cdb "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) SELECT i FROM n" -o big.csv >out.txt 2>err.txt) || limited=$?
  same "$limited" 1
  [[ ! -e big.csv ]] || fail "half a file was left"
}

# interrupt SIGNAL: sends it to an import that has begun to write.
interrupt() {
  local child code=0
  "$program" import a.cdb large.csv >out.txt 2>err.txt &
  child=$!
  until [[ -s a.cdb-journal ]] || ! kill -0 "$child" 2>/dev/null; do :; done
  kill -s "$1" "$child" 2>/dev/null
  wait "$child" || code=$?
  echo "$code"
}

test_interrupts() {
  same "$(interrupt INT)" 1
  err=$(<err.txt)
  says "Nothing was changed."
  is_unchanged
  same "$(interrupt TERM)" 1
  is_unchanged
  same "$(interrupt KILL)" 137
  is_unchanged
  run 0 import a.cdb people.csv --table people --quiet
}

test_interrupt_while_waiting_for_input() {
  local code=0 child
  mkfifo pipe
  "$program" import a.cdb - --table waiting <pipe >out.txt 2>err.txt &
  child=$!
  exec 7>pipe
  # A signal that comes before it reads would be noted, and it would go on to wait.
  until [[ $(<"/proc/$child/syscall") == "0 0x0 "* ]] || ! kill -0 "$child" 2>/dev/null; do :; done
  kill -s INT "$child"
  wait "$child" || code=$?
  exec 7>&-
  same "$code" 1
}

test_progress() {
  run 0 import a.cdb large.csv --table Shown
  [[ $err != *%* ]] || fail "there was a bar: $err"
  /usr/bin/python3 - "$program" <<'END' >shown.txt || fail "there was no bar on a terminal"
import os, pty, sys
shown = b""
def read(fd):
    global shown
    data = os.read(fd, 4096)
    shown += data
    return data
status = pty.spawn([sys.argv[1], "import", "a.cdb", "large.csv", "--table", "Bar"], read)
sys.exit(0 if status == 0 and b"%" in shown else 1)
END
}

tests=(test_usage test_empty_and_dash test_help test_new_and_info test_import_and_show test_dry_run test_rejects test_choices test_query_and_find
  test_saved_query test_export test_exact test_backup_and_check test_damage test_examples_of_the_manual)
if [[ $kind == native ]]; then
  make_large
  tests+=(test_manual_and_completion test_pipe_that_nobody_reads test_full_disk test_interrupts test_interrupt_while_waiting_for_input test_progress)
fi
if [[ $# -gt 2 ]]; then tests=("${@:3}"); fi
for test in "${tests[@]}"; do
  before=$failures
  "$test"
  [[ ! -e $folder/not_found ]] || fail "there is no $(<"$folder/not_found")"
  rm -f "$folder/not_found"
  if [[ $failures == "$before" ]]; then echo "ok $test"; else echo "not ok $test"; fi
done
echo "$checks runs, $failures failures"
[[ $failures == 0 ]]
