# A walk through the program's pages on a virtual display; sourced after drive.sh, never run.
# shellcheck shell=bash

# walk FILE.cdb: starts the program with the database, visits the pages Tables, Form, List and Queries,
# writes a picture of the window on each into out/ and closes the program.
walk() {
  local names shown=yes
  begin_pictures "$root/out"
  start_program "$(windows_path "$1")"
  # The window stands before the database is open: its tables are waited for.
  names=$(drive texts) || shown=
  photograph 1-tables.png
  if [[ ! $shown ]]; then
    fail "the program does not show the tables of $1: see out/1-tables.png"
  fi
  if [[ $names ]]; then
    drive select-table 0
    drive tab 1
    photograph 2-form.png
    drive tab 2
    photograph 3-list.png
  else
    say "the database has no tables: the pages Form and List are left out"
  fi
  drive tab 3
  photograph 4-queries.png
  end_program
}
