#!/bin/sh
# Stands in for the user's browser: writes what it is to show into a file in the Wine prefix of the test. The file
# gets its name when all is in it.
note="$WINEPREFIX/drive_c/browser note.txt"
printf '%s' "$1" >"$note.new" && mv "$note.new" "$note"
