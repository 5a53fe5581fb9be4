# What the packages have in common; sourced after tools/setup.sh, never run.
# shellcheck shell=bash

product_modules=("Quivane Pocket PC.exe" adoce31.dll aygshell.dll peghelp.exe cdbtool.exe)
product_targets=(quivane adoce31 aygshell peghelp cdbtool manual)
product_version=$(sed -n 's/^project(Quivane VERSION \([0-9.]*\) .*/\1/p' "$root/CMakeLists.txt")

# The compiler's run-time and two libraries of headers are in our modules: their licences, and SQLite's, as this system's
# packages have them.
licence_of_compiler=/usr/share/doc/gcc-mingw-w64-base/copyright
licence_of_runtime=/usr/share/doc/mingw-w64-common/copyright
licence_of_json=/usr/share/doc/nlohmann-json3-dev/copyright
licence_of_options=/usr/share/doc/libcli11-dev/copyright
licence_gpl=/usr/share/common-licenses/GPL-3

# Builds the commit that is checked out in a folder of its own, so that what is not committed takes no part, and leaves
# the folder of the programs in product_bin. The time of the commit stands for that of the building.
build_commit() {
  local source=$root/build/package/source
  SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct)
  export SOURCE_DATE_EPOCH
  if [[ $(git -C "$root" status --porcelain) ]]; then
    say "what is not committed does not get into the package"
  fi
  step package-source "taking the commit $(git -C "$root" log -1 --format=%h)" take_commit "$source"
  step package-build "building it" build_source "$source"
  product_bin=$source/build/wine/bin
}

take_commit() {
  rm -rf "$1" && mkdir -p "$1" && git -C "$root" archive HEAD | tar -x -C "$1"
}

build_source() (
  cd "$1" && cmake --preset wine -DQUIVANE_BENCHMARKS=OFF "-DQUIVANE_DEPENDENCIES=$root/build/dependencies" &&
    cmake --build build/wine --target "${product_targets[@]}"
)

# stage_product BIN FOLDER: the modules without their symbols, and the manual.
stage_product() {
  local module
  mkdir -p "$2/pictures"
  for module in "${product_modules[@]}"; do
    x86_64-w64-mingw32-strip -o "$2/$module" "$1/$module"
  done
  cp "$1"/Quivane.htm "$2/"
  cp "$1"/pictures/*.png "$2/pictures/"
}

# stage_licences FOLDER: of everything that is in the modules.
stage_licences() {
  mkdir -p "$1"
  cp "$root/LICENSE" "$1/Quivane.txt"
  cp "$licence_of_compiler" "$1/GCC run-time.txt"
  cp "$licence_of_json" "$1/nlohmann-json.txt"
  cp "$licence_of_options" "$1/CLI11.txt"
  cp "$licence_gpl" "$1/GPL 3.txt"
  cp "$licence_of_runtime" "$1/mingw-w64 run-time.txt"
  sed -n '/^\*\* The author disclaims/,/^\*\*    May you share/s/^\*\* \{0,1\}//p;/^\*\*    May you share/q' \
    "$sqlite_folder/sqlite3.h" >"$1/SQLite.txt"
}
