# What ./run and ./test have in common: everything that must be there before a program can start.
# Sourced, never run. Every function does what is missing and says so in one line; when nothing is
# missing it costs a few milliseconds and says nothing. A step that fails ends the script.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
logs=$root/build/logs
source "$root/tools/prefix.sh"

# --- Debian packages -------------------------------------------------------------------------------

# The fonts have the letters of all living scripts (prefix.sh). The libraries are those that Wine's X driver loads only
# if it finds them.
packages_headers=(libcli11-dev nlohmann-json3-dev)
# Those of ODBC; the cross compiler has its own.
packages_odbc_headers=(unixodbc-dev)
packages_fonts=(fontconfig fonts-wine fonts-dejavu-core fonts-noto-core fonts-noto-ui-core fonts-wqy-microhei fonts-symbola)
packages_program=(cmake ninja-build g++-mingw-w64-x86-64-posix mingw-w64-tools ccache "${packages_headers[@]}"
  wine wine64 libwine-dev "${packages_fonts[@]}" libxrender1 libxcursor1 libxi6 libxrandr2 libxinerama1 libxcomposite1 python3)
packages_display=(xvfb imagemagick)
packages_native=(g++ "${packages_headers[@]}" "${packages_odbc_headers[@]}")
# A server and the way to it; the server's own first cluster, which its package makes and starts, is left alone.
packages_server=(openssl unixodbc odbc-postgresql postgresql)
# The manual's. Of Debian's browsers the one that brings least along, and no system bus.
packages_browser=(chromium-headless-shell)
packages_test=(googletest clang-format "${packages_server[@]}" "${packages_browser[@]}")
packages_benchmark=(libbenchmark-dev libpq-dev sqlite3)
packages_fuzz=(cmake ninja-build ccache clang "${packages_headers[@]}" "${packages_odbc_headers[@]}")
packages_npm=(npm nodejs)

# --- SQLite ----------------------------------------------------------------------------------------

sqlite_package=better-sqlite3@12.11.1
sqlite_package_sha512=76af40b40a608393c616d0733c54819771d94231e893981a40233ace1d989346\
929830acd426e7548f3f1e001242434ab16169b1e20ef5b7a0e71c696216c87c

sqlite_folder=$root/build/dependencies/sqlite-3.53.2
sqlite_sha256='60d2f39a3726cd6b9021da6f4e868608d66fbb6528a9f513dc8ffcc640493422  sqlite3.c
9e69a1353a4288450b0d5239ede11fc7f1f4c8e5eb07491fc8317eacb5b7de7e  sqlite3.h'

# --- What a step says ------------------------------------------------------------------------------

say() {
  echo "${0##*/}: $*"
}

fail() {
  echo "${0##*/}: $*" >&2
  exit 1
}

# step NAME TEXT COMMAND...: says TEXT and runs the command, whose output goes to build/logs/NAME.log.
# If it fails, shows the end of that log and ends the script.
step() {
  local log=$logs/$1.log
  say "$2"
  "${@:3}" >"$log" 2>&1 </dev/null 5>&- || fail_step "$1" "$2"
}

fail_step() {
  local log=$logs/$1.log
  tail -n 20 "$log" | sed 's/^/    /' >&2
  fail "failed at: $2 (the lines above end ${log#"$root/"})"
}

# Keeps a second ./run or ./test in this folder waiting until end_setup, or until this script ends.
begin_setup() {
  if ! mkdir -p "$logs" 2>/dev/null || [[ ! -w $logs ]]; then
    fail "there is no writing into $root, where what is built belongs: copy it to a folder of your own"
  fi
  exec 5>"$root/build/lock"
  if ! flock -n 5; then
    say "waiting for another run or test that is building in this folder"
    flock 5
  fi
}

end_setup() {
  exec 5>&-
}

# --- The steps -------------------------------------------------------------------------------------

# Installs those of the packages "$@" that are missing.
ensure_packages() {
  local installed package as_root=()
  local -a missing=()
  if ! command -v dpkg-query >/dev/null; then
    say "this is not a Debian system; going on as if it had the equivalents of: $*"
    return
  fi
  installed=" $(dpkg-query -W -f '${Package}:${db:Status-Status} ' "$@" 2>/dev/null || true)"
  for package in "$@"; do
    if [[ $installed != *" $package:installed "* ]]; then
      missing+=("$package")
    fi
  done
  if [[ ${#missing[@]} == 0 ]]; then
    return
  fi
  if [[ $EUID != 0 ]]; then
    if ! command -v sudo >/dev/null; then
      fail "packages are missing; as root: apt-get update && apt-get install --no-install-recommends ${missing[*]}"
    fi
    as_root=(sudo)
  fi
  step packages "installing the packages ${missing[*]}" install_packages "${missing[@]}"
}

install_packages() {
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 -y)
  "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "$@"
}

# Fetches SQLite's source if it is missing or damaged. Its hashes are computed only when sizes or times
# are not those of the last time.
ensure_sqlite() {
  local checked=$sqlite_folder/checked
  if [[ -s $checked && $(sqlite_state) == "$(<"$checked")" ]]; then
    return
  fi
  if ! (cd "$sqlite_folder" && sha256sum --check --quiet <<<"$sqlite_sha256") >/dev/null 2>&1; then
    if ! command -v npm >/dev/null; then
      ensure_packages "${packages_npm[@]}"
    fi
    step sqlite "fetching SQLite's source" fetch_sqlite
  fi
  sqlite_state >"$checked"
}

sqlite_state() {
  stat -c '%n %s %y' "$sqlite_folder"/sqlite3.{c,h} 2>&1
}

# The folder gets its name when what is in it was checked.
fetch_sqlite() (
  parent=${sqlite_folder%/*}
  mkdir -p "$parent" && temporary=$(mktemp -d "$parent/new.XXXXXX") || exit
  trap 'rm -rf "$temporary"' EXIT
  cd "$temporary" && mkdir source &&
    npm pack "$sqlite_package" --ignore-scripts &&
    sha512sum --check <<<"$sqlite_package_sha512  $(echo ./*.tgz)" &&
    tar -xzmf ./*.tgz -C source --strip-components=3 package/deps/sqlite3/sqlite3.{c,h} &&
    (cd source && sha256sum --check <<<"$sqlite_sha256") &&
    rm -rf "$sqlite_folder" && mv source "$sqlite_folder"
)

# Makes the Wine prefix $1 ("user" or "template") if it is missing or of another version of Wine.
ensure_wine_prefix() {
  local trouble
  find_wine 2>/dev/null || fail "Wine is not installed, or does not start (tried Debian's place, /opt and the PATH)"
  set_wine_environment
  case $1 in
    user) set -- "the Wine prefix" "$user_prefix" ;;
    template) set -- "the template of Wine prefixes for tests" "$template_prefix" test ;;
  esac
  trouble=$(prefix_trouble "$2")
  if [[ $trouble ]]; then
    fail "$trouble"
  fi
  if ! prefix_is_current "$2"; then
    step wine-prefix "making $1, $2" ensure_prefix "${@:2}"
  fi
}

# ensure_built PRESET TARGET...: configures and builds what is out of date.
ensure_built() {
  local preset=$1 folder=$root/build/$1 log=$logs/build-$1.log text="building ($1)" line said=
  shift
  if ! is_configured "$folder"; then
    step "configure-$preset" "configuring ($preset)" configure "$preset"
  fi
  # Whether there is something to build shows only when it is done.
  : >"$log"
  while IFS= read -r line; do
    if [[ ! $said && $line == \[* && $line != *"globbed directories"* ]]; then
      said=yes
      say "$text"
    fi
    echo "$line" >>"$log"
  done < <(cmake --build "$folder" --target "$@" 2>&1 </dev/null 5>&-)
  wait "$!" || fail_step "build-$preset" "$text"
}

# CMake itself notices every other change. The tests are left out as long as GoogleTest is missing.
is_configured() {
  [[ -e $1/build.ninja && ! $root/CMakePresets.json -nt $1/build.ninja ]] &&
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$1/CMakeCache.txt" 2>/dev/null &&
    { [[ ! -e /usr/src/googletest ]] || grep -qx 'QUIVANE_TESTS:INTERNAL=ON' "$1/CMakeCache.txt"; }
}

# What an unfinished attempt, or this folder under another name, left behind is not used.
configure() {
  cd "$root" && cmake --preset "$1" --fresh
}

# Makes the example database $1; it gets its name when it is complete.
make_example() {
  "$root/examples/make-library" "$root/build/library.cdb" && mv "$root/build/library.cdb" "$1"
}

# --- Paths ----------------------------------------------------------------------------------------

# The Windows path of the absolute path $1.
windows_path() {
  echo "Z:${1//\//\\}"
}
