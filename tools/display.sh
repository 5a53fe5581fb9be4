# Displays, the user's and virtual ones; sourced, never run.
# shellcheck shell=bash

# Whether Wine can show windows here: an X server answers, or Wine has a Wayland driver to use. Without Python the name
# of the X server is believed.
has_display() {
  if [[ ${DISPLAY:-} ]]; then
    if [[ ! -x /usr/bin/python3 ]]; then
      return
    fi
    timeout 10 /usr/bin/python3 -S -I -c '
import ctypes
display = ctypes.CDLL("libX11.so.6").XOpenDisplay(None)
raise SystemExit(0 if display else 1)' 2>/dev/null && return
  fi
  [[ ${WAYLAND_DISPLAY:-} && -S ${XDG_RUNTIME_DIR:-}/$WAYLAND_DISPLAY ]] &&
    compgen -G '/usr/lib/*/wine/*/winewayland.so' >/dev/null
}

# Starts Xvfb on a free display and exports its name as DISPLAY. The folder $1 keeps what belongs to it; $2 is the
# size of the screen when it is not the usual one.
start_display() {
  start_x_server "$1" Xvfb -screen 0 "${2:-1024x768}x24"
}

# The same of Xvnc, whose screen can be divided into outputs: through display-socket in the folder $1.
start_divisible_display() {
  start_x_server "$1" Xvnc -geometry "$2" -depth 24 -SecurityTypes None -rfbport -1 -rfbunixpath "$1/display-socket"
}

start_x_server() {
  local number=
  rm -f "$1/display-number"
  mkfifo "$1/display-number"
  "${@:2}" -displayfd 6 -nolisten tcp -noreset 6>"$1/display-number" >"$1/display.log" 2>&1 8>&- &
  echo $! >"$1/display-server"
  read -r -t 60 number <"$1/display-number" || true
  if [[ ! $number ]]; then
    echo "$2 does not start: $(tail -n 1 "$1/display.log")" >&2
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
  read -r server <"$1/display-server"
  if [[ $(cat "/proc/$server/comm" 2>/dev/null) =~ ^(Xvfb|Xvnc)$ ]]; then
    kill "$server"
    timeout 30 tail --pid="$server" -f /dev/null || true
  fi
}
