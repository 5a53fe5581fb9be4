# A walk through the program's pages on a virtual display; sourced after setup.sh, never run.
# shellcheck shell=bash

driver=$root/build/wine/tests/drive.exe
pictures=$root/out
log=$logs/walk.log
running=

clean_up() {
  trap '' INT TERM HUP
  if [[ $running ]]; then
    kill -TERM "$running" 2>/dev/null || true
  fi
  if [[ ${fresh_prefix:-} ]]; then
    remove_fresh_prefix "$fresh_prefix"
  fi
}

# drive VERB [N]: one step of tests/ui/drive.cpp, which waits until the program has done it.
drive() {
  local code=0
  if "$WINELOADER" "$driver" "$@" 2>>"$log" 8>&-; then
    return
  fi
  if ! kill -0 "$running" 2>/dev/null; then
    wait "$running" || code=$?
    fail "failed at: $*: the program ended with exit code $code"
  fi
  fail "failed at: $*: $(tail -n 1 "$log")"
}

# The window as it is on the display, when it no longer changes.
photograph() {
  local x y width height try
  read -r x y width height < <(drive rect | tr -d '\r')
  for try in {1..50}; do
    import -silent -window root -crop "${width}x$height+$x+$y" +repage -strip \
      -define png:exclude-chunks=date,time "$fresh_prefix/new.png"
    if cmp -s "$fresh_prefix/new.png" "$fresh_prefix/last.png"; then
      break
    fi
    mv "$fresh_prefix/new.png" "$fresh_prefix/last.png"
  done
  if [[ $(identify -format %k "$fresh_prefix/last.png") -lt 2 ]]; then
    fail "failed at: the picture $1 shows nothing"
  fi
  mv "$fresh_prefix/last.png" "$pictures/$1"
  say "wrote ${pictures#"$root/"}/$1"
}

# walk PROGRAM FILE.cdb: starts the program with the database, visits the pages Tables, Form, List and
# Queries, writes a picture of the window on each into out/ and closes the program. It runs in a fresh
# Wine prefix, so that nobody's settings take part.
walk() {
  local code=0 names shown=yes
  mkdir -p "$pictures"
  rm -f "$pictures"/*.png
  : >"$log"
  trap 'exit 130' INT
  trap 'exit 143' TERM
  trap 'exit 129' HUP
  trap clean_up EXIT
  make_fresh_prefix
  export WINEPREFIX=$fresh_prefix
  unset WAYLAND_DISPLAY
  use_display "$fresh_prefix"

  "$WINELOADER" "$1" "$(windows_path "$2")" >>"$log" 2>&1 </dev/null 8>&- &
  running=$!
  drive wait-window
  # The window stands before the database is open: its tables are waited for.
  names=$(drive texts) || shown=
  photograph 1-tables.png
  if [[ ! $shown ]]; then
    fail "the program does not show the tables of $2: see out/1-tables.png"
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
  drive close >>"$log"

  wait "$running" || code=$?
  running=
  if [[ $code != 0 ]]; then
    fail "the program ended with exit code $code"
  fi
}
