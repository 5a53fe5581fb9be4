#!/bin/bash
# refusals_test.sh
#
# Tests that the commands of the source tree say in one line why they can't begin: in a folder without write permission,
# with a file that is not there, and with arguments that they don't know.
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
  local code=0 said
  said=$(as_somebody "${@:3}" 2>&1 >/dev/null) || code=$?
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
