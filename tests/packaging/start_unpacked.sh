#!/bin/bash
# start_unpacked.sh EXAMPLE.cdb
#
# Tests that the packed program runs from wherever it is unpacked: makes a zip of what was built, unpacks it in a folder
# with a difficult name, starts the program there with the example and looks for its tables and its licences.
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
export WINEPREFIX=$fresh_prefix
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
start_program 'C:\a b #1 ü日\Quivane\library.cdb'
tables=$(drive texts | tr -d '\r')
end_program
grep -qx Books <<<"$tables" || fail "the unpacked program does not show the tables but: $tables"
say "passed"
