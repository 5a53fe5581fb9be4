# Driving the program on a virtual display and taking pictures of it; sourced after setup.sh, never run.
# shellcheck shell=bash

program="$root/build/wine/bin/Quivane Pocket PC.exe"
driver=$root/build/wine/tests/drive.exe
drive_log=$logs/drive.log
running=

clean_up() {
  trap '' INT TERM HUP
  if [[ $running ]]; then
    kill -TERM "$running" 2>/dev/null || true
  fi
  if [[ ${fresh_prefix:-} ]]; then
    remove_fresh_prefix "$fresh_prefix"
  fi
}

# Makes a fresh Wine prefix with a display, so that nobody's settings take part, and the folder $1 for the
# pictures.
begin_pictures() {
  pictures=$1
  mkdir -p "$pictures"
  rm -f "$pictures"/*.png
  : >"$drive_log"
  trap 'exit 130' INT
  trap 'exit 143' TERM
  trap 'exit 129' HUP
  trap clean_up EXIT
  make_fresh_prefix
  use_prefix "$fresh_prefix"
  unset WAYLAND_DISPLAY
  use_display "$fresh_prefix"
}

# Starts the program with the database whose Windows path is $1 and waits for its window.
start_program() {
  launch_program "$1"
  drive wait-window
}

launch_program() {
  "$WINELOADER" "$program" "$1" >>"$drive_log" 2>&1 </dev/null 8>&- &
  running=$!
}

end_program() {
  drive close >>"$drive_log"
  await_program
}

await_program() {
  local code=0
  wait "$running" || code=$?
  running=
  if [[ $code != 0 ]]; then
    fail "the program ended with exit code $code"
  fi
}

# drive VERB [ARGUMENT...]: one step of tests/ui/remote/drive.cpp, which waits until the program has done it.
drive() {
  local code=0
  if "$WINELOADER" "$driver" "$@" 2>>"$drive_log" 8>&-; then
    return
  fi
  if ! kill -0 "$running" 2>/dev/null; then
    wait "$running" || code=$?
    fail "failed at: $*: the program ended with exit code $code"
  fi
  fail "failed at: $*: $(tail -n 1 "$drive_log")"
}

# All that the program shows, when it no longer changes.
photograph() {
  local area x y width height try
  area=$(drive area | tr -d '\r')
  read -r x y width height <<<"$area"
  for try in {1..50}; do
    import -silent -window root -crop "${width}x$height+$x+$y" +repage -strip \
      -define png:exclude-chunks=date,time "$fresh_prefix/new.png"
    if cmp -s "$fresh_prefix/new.png" "$fresh_prefix/last.png"; then
      break
    fi
    mv "$fresh_prefix/new.png" "$fresh_prefix/last.png"
  done
  if [[ $(identify -format %k "$fresh_prefix/last.png") -lt 2 ]]; then
    fail "failed at: the picture $1 shows nothing"
  fi
  mv "$fresh_prefix/last.png" "$pictures/$1"
  say "wrote ${pictures#"$root/"}/$1"
}
