#!/bin/bash
# launcher_test.sh EXAMPLE.cdb
#
# Tests the command quivane of the Debian package, from a copy of the package's folders: what it says when it can't
# start, and a first, a second and a third start with a virtual display and a home of its own.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/setup.sh"
source "$root/packaging/product.sh"

find_wine
set_wine_environment
work=$(mktemp -d)
export HOME=$work/home XDG_DATA_HOME="$work/home/data ü" XDG_CACHE_HOME=$work/home/cache
unset DISPLAY WAYLAND_DISPLAY WINEPREFIX
mkdir -p "$work/bin" "$work/lib/quivane" "$HOME"
prefix=$XDG_DATA_HOME/quivane/wine

clean_up() {
  trap '' INT TERM HUP
  # All that it has started: it is in a group of its own.
  if [[ ${started:-} ]]; then
    kill -- "-$started" 2>/dev/null || true
  fi
  for place in "$prefix" "$prefix.new"; do
    if [[ -d $place ]]; then
      stop_wine_server "$place" >/dev/null 2>&1
    fi
  done
  stop_display "$work"
  rm -rf "$work"
}
trap 'exit 130' INT
trap 'exit 143' TERM
trap clean_up EXIT

stage_product "$root/build/wine/bin" "$work/lib/quivane"
cp "$root"/tools/{prefix,display}.sh "$work/lib/quivane/"
echo 1.2.3 >"$work/lib/quivane/version"
cp "$root/packaging/quivane" "$work/bin/"
mkdir "$work/home/a b ü"
cp "$1" "$work/home/a b ü/library.cdb"

# expect CODE TEXT ARGUMENT...: the command ends with CODE, and writes one line on standard error in which TEXT is; none
# if TEXT is empty.
expect() {
  local code=0 said
  said=$("$work/bin/quivane" "${@:3}" 2>&1 >/dev/null) || code=$?
  if [[ $code != "$1" || $said != *"$2"* || $said == *$'\n'* || (! $2 && $said) ]]; then
    fail "quivane ${*:3} ended with $code and said: $said"
  fi
}

expect 0 "" --help
expect 0 "" --version
[[ $("$work/bin/quivane" --version) == "quivane 1.2.3" ]] || fail "the version is not told"
expect 2 "usage: quivane [FILE.cdb]" --unknown
expect 2 "usage: quivane [FILE.cdb]" one.cdb two.cdb
expect 1 "there is no file $work/not there.cdb" "$work/not there.cdb"
expect 1 "there is no display here; start Quivane on a desktop, or set DISPLAY" "$1"
DISPLAY=:4711 expect 1 "there is no display here" "$1"
expect 1 "there is no file -x.cdb" -- -x.cdb
if [[ -e $prefix ]]; then
  fail "a start that failed has left $prefix"
fi

start_display "$work"
drive() {
  WINEPREFIX=$prefix "$WINELOADER" "$root/build/wine/tests/drive.exe" "$@" 2>>"$work/drive.log" ||
    fail "failed at: $*: $(tail -n 1 "$work/drive.log"); quivane said: $(cat "$work/said")"
}

await_prefix() {
  local second
  for second in {1..1500}; do
    if [[ -e $prefix/.quivane ]]; then
      return
    fi
    kill -0 "$started" 2>/dev/null || fail "quivane ended: $(cat "$work/said")"
    read -r -t 0.1 <>"$work/never" || true
  done
  fail "no prefix is made: $(cat "$work/said")"
}

await_end() {
  local code=0
  wait "$started" || code=$?
  started=
  [[ $code == 0 ]] || fail "quivane ended with $code: $(cat "$work/said")"
}

mkfifo "$work/never"
(cd "$work/home/a b ü" && exec setsid "$work/bin/quivane" library.cdb) 2>"$work/said" &
started=$!
await_prefix
drive wait-window
tables=$(drive texts | tr -d '\r')
grep -qx Books <<<"$tables" || fail "the first start does not show the tables but: $tables"
said=$(<"$work/said")
if [[ $said != "quivane: preparing Wine for Quivane in $prefix "* || $said == *$'\n'* ]]; then
  fail "the first start said: $said"
fi
expect 0 "" "$work/home/a b ü/library.cdb"
drive close >>"$work/drive.log"
await_end

setsid "$work/bin/quivane" 2>"$work/said" &
started=$!
drive wait-window
drive close >>"$work/drive.log"
await_end
[[ ! -s $work/said ]] || fail "the third start said: $(cat "$work/said")"
say "passed"
