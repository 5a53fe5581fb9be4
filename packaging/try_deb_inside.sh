#!/bin/bash
# The part of try-deb that runs inside the root. The argument is the folder of the project.
set -euo pipefail
root=$1
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
log=/tmp/try-deb.log
source "$root/tools/display.sh"

say() {
  echo "try-deb: $*"
}

fail() {
  echo "try-deb: $*" >&2
  tail -n 20 "$log" >&2
  exit 1
}

# All that is there but what apt and its caches keep of their own doings.
files() {
  find / -xdev \( -path /proc -o -path /dev -o -path /tmp -o -path /home -o -path "$root" -o -path /var/lib/dpkg \
    -o -path /var/lib/apt -o -path /var/cache -o -path /var/log -o -path /run \) -prune -o -print | LC_ALL=C sort
}

as_user() {
  setpriv --reuid=tester --regid=tester --clear-groups env HOME=/home/tester "$@"
}

# The command of the desktop entry for the file $1, as a desktop would run it.
start_by_desktop_entry() {
  local command
  command=$(sed -n 's/^Exec=//p' /usr/share/applications/quivane.desktop)
  local -a words
  read -r -a words <<<"$command"
  as_user "${words[@]/\%f/$1}"
}

# expect TEXT COMMAND...: ends with 1 and says one line, in which TEXT is.
expect() {
  local code=0 said
  said=$("${@:2}" 2>&1) || code=$?
  if [[ $code != 1 || $said != *"$1"* || $said == *$'\n'* ]]; then
    fail "${*:2} ended with $code and said: $said"
  fi
  say "said as it should: $said"
}

apt-get update >>"$log" 2>&1 || fail "apt-get update"
# First what the package needs, so that only the package itself is compared.
needs=$(dpkg-deb -f /quivane.deb Depends | sed 's/([^)]*)//g; s/,/ /g')
# shellcheck disable=SC2086
apt-get install -y --no-install-recommends $needs >>"$log" 2>&1 || fail "its needs are not to be had"
useradd --create-home tester
files >/tmp/before
apt-get install -y --no-install-recommends /quivane.deb >>"$log" 2>&1 || fail "apt does not install it"
desktop-file-validate /usr/share/applications/quivane.desktop >>"$log" 2>&1 || fail "the desktop entry is not valid"
man --version >/dev/null 2>&1 && man -l /usr/share/man/man1/quivane.1.gz >>"$log"

place="/home/tester/a b ü"
as_user mkdir "$place"
as_user cp /usr/share/doc/quivane/examples/library.cdb "$place/library.cdb"
type=$(as_user gio info -a standard::content-type "$place/library.cdb" | sed -n 's/.*content-type: //p')
[[ $type == application/x-quivane-database ]] || fail "the desktop takes a database for $type"

# The command line, on a copy.
man --version >/dev/null 2>&1 && man -l /usr/share/man/man1/cdbtool.1.gz >>"$log"
as_user cp "$place/library.cdb" "$place/copy.cdb"
version=$(as_user cdbtool --version) || fail "cdbtool does not start"
as_user cdbtool export "$place/copy.cdb" Members -o "$place/members.csv" >>"$log" 2>&1 || fail "cdbtool does not export"
as_user cdbtool import "$place/copy.cdb" "$place/members.csv" --table Guests >>"$log" 2>&1 || fail "cdbtool does not import"
guests=$(as_user cdbtool query "$place/copy.cdb" "SELECT count(*) FROM Guests" --csv | tail -n 1)
[[ $guests -gt 0 ]] || fail "cdbtool has imported nothing"
say "$version moved $guests records"
as_user rm "$place/copy.cdb" "$place/members.csv"

expect "there is no display here" as_user quivane
expect "there is no file" as_user quivane /home/tester/none.cdb
start_display /tmp
chmod 555 /home/tester
expect "there is no writing into /home/tester" as_user quivane
chmod 755 /home/tester
as_user mkdir -p /home/tester/.local/share/quivane /home/tester/.cache
mkdir /home/tester/.local/share/quivane/wine
expect "belongs to another user" as_user quivane
rmdir /home/tester/.local/share/quivane/wine
mv /usr/lib/wine/wine64 /usr/lib/wine/wine64.away
expect "Wine is not installed, or does not start" as_user quivane
mv /usr/lib/wine/wine64.away /usr/lib/wine/wine64

prefix=/home/tester/.local/share/quivane/wine
drive() {
  as_user env WINEPREFIX="$prefix" WINEDEBUG=-all /usr/lib/wine/wine64 "$root/build/wine/tests/drive.exe" "$@" 2>>"$log" ||
    fail "failed at: $*"
}
# The whole screen, when all is painted and nothing changes any more.
photograph() {
  local try
  drive area >>"$log"
  for try in {1..50}; do
    import -silent -window root /tmp/new.png
    if cmp -s /tmp/new.png /tmp/last.png; then
      break
    fi
    mv /tmp/new.png /tmp/last.png
  done
  mv /tmp/last.png "$root/out/deb/$1.png"
}

begun=$(date +%s%N)
start_by_desktop_entry "$place/library.cdb" 2>/tmp/said &
started=$!
until [[ -e $prefix/.quivane ]]; do
  kill -0 "$started" 2>/dev/null || fail "it ended: $(cat /tmp/said)"
  sleep 0.05
done
say "made its prefix in $((($(date +%s%N) - begun) / 1000000)) ms, saying: $(cat /tmp/said)"
drive wait-window
tables=$(drive texts | tr -d '\r')
grep -qx Books <<<"$tables" || fail "it does not show the tables but: $tables"
drive select-table 3
drive tab 1
photograph form
drive tab 2
photograph list
drive close >>"$log"
wait "$started" || fail "it ended with $?: $(cat /tmp/said)"
[[ $(wc -l </tmp/said) == 1 ]] || fail "it said more than one line: $(cat /tmp/said)"
stop_display /tmp

apt-get purge -y quivane >>"$log" 2>&1 || fail "apt does not remove it"
files >/tmp/after
diff /tmp/before /tmp/after >>"$log" || fail "removing it left something behind, or took something along"
[[ -s $place/library.cdb ]] || fail "the user's database is gone"
