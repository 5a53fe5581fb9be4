#!/bin/bash
# launcher_test.sh EXAMPLE.cdb
#
# Tests the command quivane of the Debian package, from a copy of the package's folders: what it says when it can't
# start, and a first, a second and a third start with a virtual display and a home of its own, and one after another
# Wine was installed.
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

  for _ in {1..1500}; do
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

# Of Wine's own files the prefix has links: nearly nothing is in it, and nothing was written through them.
expect_links() {
  local own=$WINELOADER size changed
  size=$(du -sm "$prefix" | cut -f1)
  [[ $size -lt 20 ]] || fail "the prefix takes $size MB"
  local -a wine_folders
  find_wine_folders
  changed=$(find "${wine_folders[@]}" "${own%/*}" -newer "$work/begun" -print -quit)
  [[ ! $changed ]] || fail "Wine's own file $changed was changed"
  [[ $(find "$prefix/drive_c/windows/system32" -type l | wc -l) -gt 300 ]] || fail "there are few links in the prefix"
}

# Who has the home of another user, as with sudo -E, is told so.
expect_other_user() {
  local code=0 said
  said=$(setpriv --reuid=nobody --regid=nogroup --clear-groups "$work/bin/quivane" 2>&1 >/dev/null) || code=$?
  if [[ $code != 1 || $said != "quivane: $prefix belongs to another user; "* || $said == *$'\n'* ]]; then
    fail "quivane of another user ended with $code and said: $said"
  fi
}

# Puts a program there that a desktop shows pages with.
note_browser() {
  mkdir "$work/programs"
  cat >"$work/programs/xdg-open" <<'END'
#!/bin/sh
printf '%s\n' "${FONTCONFIG_FILE:-all fonts}" "$PATH" "$1" >"$HOME/shown.new" && mv "$HOME/shown.new" "$HOME/shown"
END
  chmod +x "$work/programs/xdg-open"
}

await_browser() {
  local second shown
  for second in {1..300}; do
    if [[ -e $HOME/shown ]]; then
      mapfile -t shown <"$HOME/shown"
      [[ ${shown[0]} == "all fonts" ]] || fail "the browser is shown the fonts of ${shown[0]}"
      [[ ${shown[1]} == "$work/programs:"* ]] || fail "the browser looks for programs in ${shown[1]}"
      [[ ${shown[2]} == */Quivane.htm* ]] || fail "the browser is asked for ${shown[2]}"
      return
    fi
    read -r -t 0.1 <>"$work/never" || true
  done
  fail "no browser is started"
}

mkfifo "$work/never"
touch "$work/begun"
begun=$(date +%s%N)
(cd "$work/home/a b ü" && exec setsid "$work/bin/quivane" library.cdb) 2>"$work/said" &
started=$!
await_prefix
say "the prefix was made in $((($(date +%s%N) - begun) / 1000000)) ms"
drive wait-window
tables=$(drive texts | tr -d '\r')
grep -qx Books <<<"$tables" || fail "the first start does not show the tables but: $tables"
said=$(<"$work/said")
if [[ $said != "quivane: preparing Wine for Quivane in $prefix "* || $said == *$'\n'* ]]; then
  fail "the first start said: $said"
fi
expect 0 "" "$work/home/a b ü/library.cdb"
if [[ $EUID == 0 ]]; then
  chmod a+rx "$work"
  expect_other_user
fi
drive close >>"$work/drive.log"
await_end
expect_links

# The browser with the manual has the user's own fonts, not the few that Wine is shown.
note_browser
PATH=$work/programs:$PATH setsid "$work/bin/quivane" 2>"$work/said" &
started=$!
drive wait-window
drive help
await_browser
drive close >>"$work/drive.log"
await_end
[[ ! -s $work/said ]] || fail "the third start said: $(cat "$work/said")"

# Another Wine updates the prefix, and the settings stay.
echo "wine-0.1" >"$prefix/.quivane"
stop_wine_server "$prefix"
grep -q MorvaleSoftware "$prefix/user.reg" || fail "the program has left no settings"
setsid "$work/bin/quivane" 2>"$work/said" &
started=$!
await_prefix
until prefix_is_current "$prefix"; do
  kill -0 "$started" 2>/dev/null || fail "quivane ended: $(cat "$work/said")"
  read -r -t 0.1 <>"$work/never" || true
done
drive wait-window
drive close >>"$work/drive.log"
await_end
[[ $(cat "$work/said") == "quivane: preparing Wine for Quivane in $prefix "* ]] || fail "the update said: $(cat "$work/said")"
expect_links
stop_wine_server "$prefix"
grep -q MorvaleSoftware "$prefix/user.reg" || fail "the update has lost the settings"
say "passed"
