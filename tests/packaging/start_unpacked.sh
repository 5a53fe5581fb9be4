#!/bin/bash
# start_unpacked.sh EXAMPLE.cdb
#
# Tests that the packed program runs from wherever it is unpacked: makes a zip of what was built, unpacks it in a folder
# with a difficult name, starts the program there with the example and looks for its tables and its licences. With a file
# "Quivane.portable" beside it, it changes not a line of the registry.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/setup.sh"
source "$root/tools/drive.sh"
source "$root/packaging/product.sh"

find_wine
set_wine_environment
ensure_prefix "$template_prefix" test
trap 'exit 130' INT
trap 'exit 143' TERM
trap clean_up EXIT
make_fresh_prefix
use_prefix "$fresh_prefix"
unset DISPLAY WAYLAND_DISPLAY
drive_log=$fresh_prefix/drive.log

stage_product "$root/build/wine/bin" "$fresh_prefix/staged/Quivane"
stage_licences "$fresh_prefix/staged/Quivane/licences"
cp "$1" "$fresh_prefix/staged/Quivane/library.cdb"
"$root/packaging/pack_zip.py" "$fresh_prefix/staged/Quivane" "$fresh_prefix/packed.zip" 1700000000
folder="$fresh_prefix/drive_c/a b #1 ü日"
python3 -m zipfile -e "$fresh_prefix/packed.zip" "$folder"

for licence in Quivane "GCC run-time" "GPL 3" "mingw-w64 run-time" SQLite; do
  [[ -s $folder/Quivane/licences/$licence.txt ]] || fail "the licence $licence.txt is empty"
done
grep -q "disclaims copyright" "$folder/Quivane/licences/SQLite.txt" || fail "SQLite's notice is not what it was"

program="$folder/Quivane/Quivane Pocket PC.exe"

# registry NAME: the registry as it is in the files, once all of it is there, without the times of its keys and without
# the branch where Wine itself writes its displays down at each start.
registry() {
  stop_wine_server "$fresh_prefix" >/dev/null 2>&1
  awk '/^\[/ { shown = !/^\[System\\/ } shown && !/^#time=/ { sub(/\] [0-9]+$/, "]"); print }' \
    "$fresh_prefix"/{system,user,userdef}.reg >"$fresh_prefix/$1.registry"
}

touch "$folder/Quivane/Quivane.portable"
# The first start in a prefix puts the files of the registry in order.
"$WINELOADER" "$driver" >>"$drive_log" 2>&1 || true
registry before
start_program 'C:\a b #1 ü日\Quivane\library.cdb'
tables=$(drive texts | tr -d '\r')
grep -qx Books <<<"$tables" || fail "the portable program does not show the tables but: $tables"
drive select-table 3
drive tab 1
drive tab 2
drive size 500 600
end_program
registry after
tr -d '\0' <"$folder/Quivane/Quivane.settings" | grep LastDBOnStartup >/dev/null || fail "the settings are not in their file"
diff "$fresh_prefix/before.registry" "$fresh_prefix/after.registry" >&2 || fail "the portable program leaves that in the registry"
rm "$folder/Quivane/Quivane.portable" "$folder/Quivane/Quivane.settings"

start_program 'C:\a b #1 ü日\Quivane\library.cdb'
tables=$(drive texts | tr -d '\r')
end_program
grep -qx Books <<<"$tables" || fail "the unpacked program does not show the tables but: $tables"
registry later
grep -q MorvaleSoftware "$fresh_prefix/later.registry" || fail "the program without that file leaves nothing in the registry"
say "passed"
