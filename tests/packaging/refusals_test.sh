#!/bin/bash
# refusals_test.sh
#
# Tests that the commands of the source tree say in one line why they can't begin: in a folder without write permission,
# with a file that is not there, with arguments that they don't know, in the home of another user, and without Wine.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'chmod -R u+w "$work" && rm -rf "$work"' EXIT
cp -r "$root"/{run,test,tools,examples} "$work/"
chmod -R a-w,a+rX "$work"

# Whoever may write everywhere tries it as somebody who may not.
as_somebody() {
  if [[ $EUID == 0 ]]; then
    setpriv --reuid=nobody --regid=nogroup --clear-groups "$@"
  else
    "$@"
  fi
}

# expect CODE TEXT COMMAND...: ends with CODE and says one line on standard error, in which TEXT is.
expect() {
  expect_of as_somebody "$@"
}

# expect_of RUNNER CODE TEXT COMMAND...: the same of what RUNNER runs.
expect_of() {
  local runner=$1 code=0 said
  shift
  said=$("$runner" "${@:3}" 2>&1 >/dev/null) || code=$?
  if [[ $code != "$1" || $said != *"$2"* || $said == *$'\n'* ]]; then
    echo "${*:3} ended with $code and said: $said" >&2
    exit 1
  fi
}

expect 1 "there is no writing into $work" "$work/run"
expect 1 "there is no writing into $work" "$work/test"
expect 1 "there is no writing into $work" "$work/tools/tour"
expect 1 "there is no file $work/none.cdb" "$work/run" "$work/none.cdb"
expect 2 "usage: ./run [FILE.cdb]" "$work/run" --unknown
expect 2 "usage: tools/wine PROGRAM" "$work/tools/wine"

# In a folder of their own the set-up goes on, until it comes to Wine's folder in the home.
own=$work/own
home=$work/home
chmod u+w "$work"
mkdir -p "$own"/{build,examples} "$home/.cache/quivane" "$home/.local/share/quivane/wine"
cp -r "$root"/{run,tools} "$own/"
cp -r "$root/build/dependencies" "$own/build/"
touch "$own/examples/library.cdb"
chmod -R a+rX "$own" "$home"
if [[ $EUID == 0 ]]; then
  chown -R nobody:nogroup "$own"
fi
# Which packages the build still wants is not what is tried: all are there.
mkdir "$work/bin"
cat >"$work/bin/dpkg-query" <<'END'
#!/bin/bash
printf '%s:installed ' "${@:4}"
END
chmod a+rx,u+w "$work/bin" "$work/bin/dpkg-query"
export PATH=$work/bin:$PATH
in_home() {
  as_somebody env -u DISPLAY -u WAYLAND_DISPLAY -u WINEPREFIX -u XDG_DATA_HOME -u XDG_CACHE_HOME HOME="$home" "$@"
}

chmod a-w "$home/.cache/quivane"
expect_of in_home 1 "there is no writing into $home/.cache/quivane; make it writable, or set XDG_CACHE_HOME" "$own/run"
if [[ $EUID == 0 ]]; then
  mkdir "$home/.cache/quivane/wine-template-$(sed -n 's/^prefix_revision=//p' "$root/tools/prefix.sh")"
  expect_of in_home 1 "belongs to another user; Wine takes only a folder of your own (HOME is $home)" "$own/run"
  expect_of in_home 1 "$home/.local/share/quivane/wine belongs to another user" "$own/tools/wine" cmd
fi
rmdir "$home/.local/share/quivane/wine"
chmod a+w "$home/.cache/quivane"
chmod a-w "$home/.local/share/quivane"
expect_of in_home 1 "there is no writing into $home/.local/share/quivane, where" "$own/tools/wine" cmd

# Where nothing is in the places of Wine's programs.
without_wine() {
  # shellcheck disable=SC2016
  unshare --mount bash -c '
    set -e
    for loader in /usr/lib/wine/wine* /usr/bin/wine*; do
      mount --bind /dev/null "$loader"
    done
    exec "$@"' without_wine "$@"
}
if [[ $EUID == 0 ]] && unshare --mount true 2>/dev/null; then
  expect_of without_wine 1 "Wine is not installed, or does not start" "$root/tools/wine" cmd
  expect_of without_wine 1 "Wine is not installed, or does not start" "$own/run"
else
  echo "refusals: a system without Wine can't be tried here"
fi
