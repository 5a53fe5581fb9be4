# A virtual display; sourced, never run.
# shellcheck shell=bash

# Starts Xvfb on a free display and exports its name as DISPLAY. The folder $1 keeps what belongs to it.
start_display() {
  local number=
  mkfifo "$1/display-number"
  Xvfb -displayfd 6 -screen 0 1024x768x24 -nolisten tcp -noreset \
    6>"$1/display-number" >"$1/display.log" 2>&1 8>&- &
  echo $! >"$1/display-server"
  read -r -t 60 number <"$1/display-number" || true
  if [[ ! $number ]]; then
    echo "Xvfb does not start: $(tail -n 1 "$1/display.log")" >&2
    return 1
  fi
  export DISPLAY=:$number
}

# Ends the display that was started with the folder $1, if there is one.
stop_display() {
  local server
  if [[ ! -s $1/display-server ]]; then
    return 0
  fi
  server=$(<"$1/display-server")
  if [[ $(cat "/proc/$server/comm" 2>/dev/null) == Xvfb ]]; then
    kill "$server"
    timeout 30 tail --pid="$server" -f /dev/null || true
  fi
}
