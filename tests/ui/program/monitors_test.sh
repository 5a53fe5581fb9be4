#!/bin/bash
# monitors_test.sh EXAMPLE.cdb
#
# Tests where the program's window stands on one and on two monitors: each arrangement has its own place, a window that
# was left on a monitor that has gone comes onto one that is there, and one that is moved to a monitor with another zoom
# takes along what is being typed.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/../../../tools/setup.sh"
source "$root/tools/drive.sh"

find_wine
set_wine_environment
ensure_prefix "$template_prefix" test
trap 'exit 130' INT
trap 'exit 143' TERM
trap clean_up EXIT
make_fresh_prefix
export WINEPREFIX=$fresh_prefix
unset WAYLAND_DISPLAY
drive_log=$fresh_prefix/drive.log
sed -i 's/^"Graphics"="null"/"Graphics"="x11"/; s/^"Size"=dword:00000001/"Size"=dword:00000000/' "$fresh_prefix/user.reg"
# Xvfb has one output: it tells programs of several monitors, but a Wine newer than 8 puts those without an output of
# their own all into one place.
if [[ $wine_version == wine-8.* ]]; then
  sed -i 's/^"Managed"="N"/&\n"UseXRandR"="N"/' "$fresh_prefix/user.reg"
  start_display "$fresh_prefix" 1824x768
  divide_screen=("$root/tests/ui/remote/set_monitors.py")
elif type -P Xvnc >/dev/null; then
  start_divisible_display "$fresh_prefix" 1824x768
  divide_screen=("$root/tests/ui/remote/set_outputs.py" "$fresh_prefix/display-socket")
else
  say "skipped: without Xvnc (tigervnc-standalone-server) there is one monitor alone under $wine_version"
  exit 77
fi
cp "$1" "$fresh_prefix/drive_c/library.cdb"

# monitors PLACE...: what the next start finds.
monitors() {
  stop_wine_server "$fresh_prefix"
  "${divide_screen[@]}" "$@"
}

start() {
  start_program 'C:\library.cdb'
}

# expect_place PLACE: x, y, width and height, or with "." what must not be compared.
expect_place() {
  local place
  place=$(drive place | tr -d '\r')
  # shellcheck disable=SC2053
  [[ $place == $1 ]] || fail "line ${BASH_LINENO[0]}: the window is at $place instead of $1"
}

two=(1024x768+0+0 800x600+1024+0)

# On two monitors it is left on the second, and found there.
monitors "${two[@]}"
start
drive size 300 400
drive move 1300 50
left=$(drive place | tr -d '\r')
[[ $left == "1300 50 "* ]] || fail "it is not where it was moved: $left"
end_program
start
expect_place "$left"
end_program

# Without that monitor there is no place yet: it stands on the one that is there, and is left elsewhere.
monitors 1024x768+0+0
start
read -r x y width height _ <<<"$(drive place | tr -d '\r')"
((x >= 0 && y >= 0 && x + width <= 1024 && y + height <= 768)) || fail "it is not on the monitor: $x $y $width $height"
drive move 20 30
drive maximise
end_program

# Each arrangement has its own.
monitors "${two[@]}"
start
expect_place "$left"
end_program
monitors 1024x768+0+0
start
expect_place "* maximised"
end_program

# The second monitor may be smaller than the window, or lie elsewhere, with the same number of monitors.
monitors "${two[@]}"
start
drive size 700 500
drive move 1060 40
end_program
monitors 1024x768+0+0 400x500+1024+0
start
read -r x y width height _ <<<"$(drive place | tr -d '\r')"
((x >= 0 && y >= 0 && (x + width <= 1024 || (x >= 1024 && x + width <= 1424)) && y + height <= 768)) ||
  fail "it is not on one of the monitors: $x $y $width $height"
end_program

# expect_inside_zoom PER_CENT: the window is as wide as 240 handheld pixels and its frame.
expect_inside_zoom() {
  local width
  read -r _ _ width _ <<<"$(drive place | tr -d '\r')"
  ((width >= 240 * $1 / 100 && width <= 240 * $1 / 100 + 12)) ||
    fail "line ${BASH_LINENO[0]}: the window is $width wide, not as at $1 per cent"
}

# The second monitor has no room for the zoom of the first. A caption is 37 to 51 pixels high at this resolution.
"$WINELOADER" reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d 192 /f >>"$drive_log" 2>&1 8>&-
monitors 1024x768+0+0 400x520+1024+0
start
drive wait-names
drive move 10 10
drive size 480 588
expect_inside_zoom 200
drive select-table 3
drive tab 1
first_text=1200
drive click $((first_text + 1))
drive keys 'typed on two'
drive move 1025 10
drive resolution 192
expect_inside_zoom 150
drive keys ' monitors'
drive move 10 10
drive resolution 192
expect_inside_zoom 200
end_program
stored=$(python3 -c 'import sqlite3, sys
print(sqlite3.connect(sys.argv[1]).execute("SELECT count(*) FROM Books WHERE Title LIKE ?", ["%typed on two monitors%"]).fetchone()[0])' \
  "$fresh_prefix/drive_c/library.cdb")
[[ $stored == 1 ]] || fail "what was typed on both monitors is in $stored records"
say "passed"
