# Wine and its prefixes; sourced, never run. Three kinds of prefix are kept apart:
#
#   the user's      where ./run and tools/wine start programs; the user's settings live in its registry,
#                   so it is updated, never removed
#   the template    a prefix for tests, made once for each version of Wine and copied
#   fresh copies    of the template, one for each test program, removed when it ends
#
# Wine fills a prefix with 700 MB of copies of its own files; here they are symbolic links to these
# files, which leaves 3 MB.
# shellcheck shell=bash

user_prefix=${XDG_DATA_HOME:-$HOME/.local/share}/quivane/wine
cache_folder=${XDG_CACHE_HOME:-$HOME/.cache}/quivane
fresh_prefixes=${TMPDIR:-/tmp}/quivane-wine-$UID

# Goes into the stamp: a change of what is set up below makes every prefix out of date.
prefix_revision=5
# Working copies of different age have templates of their own.
template_prefix=$cache_folder/wine-template-$prefix_revision

source "${BASH_SOURCE[0]%/*}/display.sh"

prefix_fail() {
  echo "wine: $*" >&2
  return 1
}

# Finds Wine and exports what its programs need. Debian's /usr/bin/wine would add advice of its own to
# stderr, so its loader is called directly.
find_wine() {
  local loader
  if [[ ! ${WINEPREFIX:-} ]]; then
    unset WINEPREFIX
  fi
  for loader in /usr/lib/wine/wine64 /opt/wine-*/bin/wine64 "$(command -v wine64)" "$(command -v wine)"; do
    if [[ -x $loader ]] && wine_version=$("$loader" --version 2>/dev/null); then
      export WINELOADER=$loader
      if [[ -x ${loader%/*}/wineserver ]]; then
        export WINESERVER=${loader%/*}/wineserver
      fi
      return 0
    fi
  done
  prefix_fail "Wine is not installed, or does not start"
}

# Exports what every program under Wine gets, unless the caller chose otherwise.
set_wine_environment() {
  export WINEDEBUG=${WINEDEBUG:--all}
  export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=;winemenubuilder.exe=}
  unset WINEARCH
  # File names are UTF-8, whatever the locale says of them.
  case ${LC_ALL:-${LC_CTYPE:-${LANG:-}}} in
    *[Uu][Tt][Ff]8 | *[Uu][Tt][Ff]-8) ;;
    *) export LC_ALL=C.UTF-8 ;;
  esac
}

prefix_stamp() {
  echo "$wine_version $WINELOADER revision $prefix_revision"
}

# Whether the prefix $1 is complete and was made by the Wine that is installed.
prefix_is_current() {
  [[ -r $1/.quivane && $(<"$1/.quivane") == "$(prefix_stamp)" ]]
}

# The nearest folder above $1 that is there.
nearest_folder() {
  local place=$1
  while [[ ! -d $place ]]; do
    place=$(dirname "$place")
  done
  echo "$place"
}

# Says in one sentence why the prefix $1 can't be used or made by this user; nothing if it can.
prefix_trouble() {
  local place
  if [[ -e $1 && ! -O $1 ]]; then
    echo "$1 belongs to another user; Wine takes only a folder of your own (HOME is $HOME)"
    return
  fi
  if [[ $1 != "$cache_folder"/* ]]; then
    place=$(nearest_folder "$1")
    if [[ ! -w $place ]]; then
      echo "there is no writing into $place, where Quivane keeps your settings; make it writable, or set XDG_DATA_HOME"
      return
    fi
  fi
  place=$(nearest_folder "$cache_folder")
  if [[ ! -w $place ]]; then
    echo "there is no writing into $place; make it writable, or set XDG_CACHE_HOME"
  fi
}

stop_wine_server() {
  WINEPREFIX=$1 "${WINESERVER:-wineserver}" -k || true
  WINEPREFIX=$1 timeout 30 "${WINESERVER:-wineserver}" -w || true
}

# The folders of Wine's own files, in wine_folders.
find_wine_folders() {
  local own prefix=${WINELOADER%/*}/..
  wine_folders=()
  for own in {/usr/lib/*,/usr/lib,"$prefix"/lib*}/wine/*-windows {/usr,"$prefix"}/share/wine/{nls,fonts}; do
    if [[ -d $own ]]; then
      wine_folders+=("$own")
    fi
  done
}

# Replaces every file of the prefix $1 that is, byte for byte, one of Wine's own by a link to that. One process compares
# a folder with a folder: one for each of the many files would take longer than all that Wine itself does.
link_to_wine_files() {
  local folder own name
  local -a same wine_folders
  find_wine_folders
  while IFS= read -r -d '' folder; do
    for own in "${wine_folders[@]}"; do
      same=()
      while IFS= read -r name; do
        if [[ ! -L $folder/$name ]]; then
          same+=("$own/$name")
        fi
      done < <(cd "$folder" && LC_ALL=C diff -qs "$own" . | sed -n 's|^Files .*/\(.*\) and \./.* are identical$|\1|p')
      if [[ ${#same[@]} != 0 ]]; then
        ln -sf -t "$folder" "${same[@]}"
      fi
    done
  done < <(find "$1/drive_c" -type f -size +0 -printf '%h\0' | sort -zu)
}

# Replaces these links by copies again, of the files of the Wine that is installed now. When Wine updates
# a prefix it writes through links, and root would overwrite Wine's own files: none may be left.
copy_wine_files() {
  local link target folder own
  local -a wine_folders links=(find "$1/drive_c" -type l -lname '/*' ! -path "$1/drive_c/users/*")
  find_wine_folders
  while IFS= read -r -d '' link; do
    target=$(readlink "$link")
    folder=${target%/*}
    rm "$link"
    for own in "${wine_folders[@]}"; do
      if [[ ${own##*/} == "${folder##*/}" && -e $own/${target##*/} ]]; then
        cp "$own/${target##*/}" "$link"
      fi
    done
  done < <("${links[@]}" -print0)
  [[ ! $("${links[@]}" -print -quit) ]]
}

# Which font has the letters that the program's own lacks. By script, as OpenType names them ("-" for what belongs to
# none, signs and emoji): Wine's fonts for these are not free. The packages are in setup.sh and make-deb. A font that has
# much room above its letters, as Noto Sans Arabic and Noto Sans Myanmar have, is cut at the bottom in the editors of the
# form; those made for user interfaces have little. Of Tibetan and Mongolian there is none with less, and Tamil loses a row.
script_fonts='
- Symbola
latn DejaVu Sans
grek DejaVu Sans
cyrl DejaVu Sans
armn DejaVu Sans
geor DejaVu Sans
hebr DejaVu Sans
brai DejaVu Sans
arab DejaVu Sans
syrc Noto Sans Syriac
thaa Noto Sans Thaana
nko Noto Sans NKo
ethi Noto Sans Ethiopic
cher Noto Sans Cherokee
cans Noto Sans CanAborig
tfng Noto Sans Tifinagh
vai Noto Sans Vai
deva Noto Sans Devanagari
beng Noto Sans Bengali
guru Noto Sans Gurmukhi
gujr Noto Sans Gujarati
orya Noto Sans Oriya
taml Noto Sans Tamil
telu Noto Sans Telugu
knda Noto Sans Kannada
mlym Noto Sans Malayalam
sinh Noto Sans Sinhala
thai Noto Sans Thai
lao Noto Sans Lao
khmr Noto Sans Khmer
mymr Noto Sans Myanmar UI
tibt Noto Serif Tibetan
tale Noto Sans Tai Le
mong Noto Sans Mongolian
phag Noto Sans PhagsPa
yi Noto Sans Yi
bopo WenQuanYi Micro Hei
hani WenQuanYi Micro Hei
kana WenQuanYi Micro Hei
hang WenQuanYi Micro Hei'

# The fonts that also titles, menus and message boxes take letters from, with their files.
linked_fonts=('DejaVuSans.ttf,DejaVu Sans' 'wqy-microhei.ttc,WenQuanYi Micro Hei' 'Symbola_hint.ttf,Symbola')

# The value's name for a script: its four letters as a number.
script_number() {
  local letters i number=0
  if [[ $1 != - ]]; then
    printf -v letters '%-4s' "$1"
    for i in 3 2 1 0; do
      printf -v number '%d' "$((number * 256 + $(printf '%d' "'${letters:i:1}")))"
    done
  fi
  printf '%x' "$number"
}

font_registry() {
  local script font bytes=
  printf '\n[HKEY_CURRENT_USER\\Software\\Wine\\Uniscribe\\Fallback]\n'
  while read -r script font; do
    if [[ $script ]]; then
      printf '"%s"="%s"\n' "$(script_number "$script")" "$font"
    fi
  done <<<"$script_fonts"
  for font in "${linked_fonts[@]}"; do
    bytes+=$(printf '%s' "$font" | od -An -v -tx1 | tr -d '\n' | sed 's/^ *//; s/ \+/,/g'),00,
  done
  printf '\n[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\FontLink\\SystemLink]\n'
  printf '"Tahoma"=hex(7):%s00\n' "$bytes"
}

# What fontconfig shows Wine: the fonts above alone. Every program's start asks for each font that is there, and a
# desktop has hundreds of them. Wine goes by folders and not by fontconfig's choice of fonts, so they are linked to in a
# folder of their own.
font_folder=$cache_folder/wine-fonts-$prefix_revision

# Whether they are as the system's folders have them now.
fonts_are_current() {
  local folder
  for folder in /usr/share/fonts/ /usr/share/fonts/*/ /usr/share/fonts/*/*/; do
    if [[ ! $font_folder/fonts.conf -nt $folder ]]; then
      return 1
    fi
  done
}

make_fonts() {
  local new=$font_folder.new
  rm -rf "$new" && mkdir -p "$new/fonts" "$new/outside" && link_fonts "$new/fonts" || return
  outside_script >"$new/outside/.call" && chmod +x "$new/outside/.call" || return
  cat >"$new/fonts.conf" <<END || return
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
<dir>$font_folder/fonts</dir>
<cachedir>$font_folder/cache</cachedir>
</fontconfig>
END
  rm -rf "$font_folder" && mv "$new" "$font_folder" && FONTCONFIG_FILE=$font_folder/fonts.conf fc-cache
}

# Fails when there is none.
link_fonts() {
  local file names families found=
  families=$(sed -n 's/^[^ ]* \(..*\)/\1/p' <<<"$script_fonts")
  while IFS=: read -r file names; do
    if [[ $names != *Condensed* && $names != *Light* ]] &&
      grep -qxF -f <(tr ',' '\n' <<<"${names# }") <<<"$families"; then
      ln -sf "$file" "$1/" && found=yes
    fi
  done < <(env -u FONTCONFIG_FILE fc-list :slant=0 file family)
  [[ $found ]]
}

ensure_fonts() {
  if ! fonts_are_current; then
    mkdir -p "$cache_folder" || return
    (
      exec 9>"$cache_folder/fonts.lock" && flock 9
      fonts_are_current || make_fonts >"$cache_folder/fonts.log" 2>&1 9>&-
    )
  fi
}

# Programs start in the prefix $1 from now on, and see those fonts alone, unless the user chose fonts for all programs.
# Without them all is the same, only slower.
use_prefix() {
  export WINEPREFIX=$1
  if [[ ${FONTCONFIG_FILE:-} == "$font_folder/fonts.conf" ]]; then
    return
  fi
  # What XML or PATH would take for something else.
  if [[ ! ${FONTCONFIG_FILE:-} && $font_folder != *[:\<\&]* ]] && ensure_fonts; then
    export FONTCONFIG_FILE=$font_folder/fonts.conf
    offer_outside_programs "$font_folder/outside"
  fi
}

# What Wine opens outside, the browser with the manual above all, has the user's own fonts: in the folder $1, first in
# PATH, each program that Wine may start stands under its name as the script that calls it without the choice above.
# Only those that are there, for Wine takes the first one that it finds.
offer_outside_programs() {
  local program
  export QUIVANE_OUTSIDE_PATH=${QUIVANE_OUTSIDE_PATH:-$PATH}
  for program in xdg-open firefox konqueror mozilla opera dillo; do
    if PATH=$QUIVANE_OUTSIDE_PATH type -P "$program" >/dev/null; then
      [[ -L $1/$program ]] || ln -sf .call "$1/$program" || true
    elif [[ -L $1/$program ]]; then
      rm -f "$1/$program" || true
    fi
  done
  export PATH=$1:$QUIVANE_OUTSIDE_PATH
}

outside_script() {
  cat <<'END'
#!/bin/sh
PATH=$QUIVANE_OUTSIDE_PATH
unset FONTCONFIG_FILE QUIVANE_OUTSIDE_PATH
exec "${0##*/}" "$@"
END
}

# The registry of every prefix, and with "test" as argument that of a test prefix.
prefix_registry() {
  # Wine's own debugger lets a crashed program end with 0 now and then.
  cat <<'END'
REGEDIT4

[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Debugger"=""
END
  font_registry
  if [[ ${1:-} == test ]]; then
    # No display by default. With one and no window manager: windows that nobody has to manage.
    cat <<'END'

[HKEY_CURRENT_USER\Software\Wine\Drivers]
"Graphics"="null"

[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="N"
END
  fi
}

# Makes the prefix $1 or brings it up to date; $2 is "test" for the template.
fill_prefix() (
  unset DISPLAY WAYLAND_DISPLAY
  rm -f "$1/.quivane"
  mkdir -p "$1"
  use_prefix "$1"
  if [[ -d $1/drive_c ]]; then
    copy_wine_files "$1" || prefix_fail "links to Wine's files are left in $1" || exit
  fi
  # The first program in a prefix that is not there makes it, so "update" would do all work twice.
  timeout 300 "$WINELOADER" wineboot "$([[ -e $1/system.reg ]] && echo -u || echo -i)" ||
    prefix_fail "wineboot failed" || exit
  fonts=$1/drive_c/windows/Fonts
  for font in tahoma.ttf tahomabd.ttf marlett.ttf; do
    cp -f "/usr/share/wine/fonts/$font" "$fonts/" || exit
  done
  prefix_registry "${2:-}" >"$1/drive_c/quivane.reg" || exit
  timeout 60 "$WINELOADER" regedit /S 'C:\quivane.reg' || prefix_fail "regedit failed" || exit
  rm "$1/drive_c/quivane.reg"
  stop_wine_server "$1"
  if [[ ${2:-} == test ]]; then
    separate_user_folders "$1"
  fi
  link_to_wine_files "$1"
  # Only these scripts bring a prefix up to date: Wine itself would write through the links.
  echo disable >"$1/.update-timestamp"
  prefix_stamp >"$1/.quivane"
)

# Documents, Desktop and the like are links to the user's own folders: tests get their own.
separate_user_folders() {
  local link
  find "$1/drive_c/users" -type l -print0 | while IFS= read -r -d '' link; do
    rm "$link"
    mkdir "$link"
  done
}

# Makes the prefix $1 if it is not there, in a folder beside it that gets its name when it is complete,
# so that an interrupted attempt leaves nothing behind that looks like a prefix.
make_prefix() {
  if prefix_is_current "$1"; then
    return 0
  fi
  if [[ -d $1 && ${2:-} != test ]]; then
    fill_prefix "$1"
    return
  fi
  if [[ -d $1.new ]]; then
    stop_wine_server "$1.new"
    rm -rf "$1.new"
  fi
  fill_prefix "$1.new" "${2:-}" || return
  rm -rf "$1"
  mv "$1.new" "$1"
}

# The same for everyone to call: quick when the prefix is current, one process at a time, one line on
# stderr when it fails.
ensure_prefix() {
  local log=$cache_folder/prefix.log
  if prefix_is_current "$1"; then
    return 0
  fi
  mkdir -p "$cache_folder" || return
  (
    exec 9>"$cache_folder/lock" && flock 9 &&
      { make_prefix "$@" </dev/null >"$log" 2>&1 9>&- ||
        prefix_fail "can't make the prefix $1; $log ends with: $(tail -n 1 "$log")"; }
  )
}

# Removes the fresh prefix $1 after ending whatever runs in it, and its display.
remove_fresh_prefix() {
  stop_wine_server "$1" >/dev/null 2>&1
  stop_display "$1"
  rm -rf "$1"
}

# Copies the template and leaves the copy's path in fresh_prefix. The copy belongs to the process that
# holds descriptor 8; copies whose owner was killed are removed on this occasion.
make_fresh_prefix() {
  local abandoned
  if ! mkdir -m 700 "$fresh_prefixes" 2>/dev/null && [[ ! -O $fresh_prefixes ]]; then
    prefix_fail "$fresh_prefixes can't be made, or belongs to another user" || return
  fi
  exec 7>"$fresh_prefixes/lock"
  flock 7
  for abandoned in "$fresh_prefixes"/*/; do
    if [[ -d $abandoned ]] && flock -n "$abandoned" true 7>&-; then
      # What can't be removed now is tried again by the next run.
      remove_fresh_prefix "${abandoned%/}" 7>&- 2>/dev/null || true
    fi
  done
  fresh_prefix=$(mktemp -d "$fresh_prefixes/XXXXXXXX")
  exec 8<"$fresh_prefix"
  flock 8
  exec 7>&-
  cp -a "$template_prefix/." "$fresh_prefix/"
  # The window has the handheld's size unless a test says otherwise.
  printf '\n[Software\\\\MorvaleSoftware\\\\Pocket Shell]\n"Size"=dword:00000001\n' >>"$fresh_prefix/user.reg"
}

# Gives the fresh prefix $1 a virtual display.
use_display() {
  sed -i 's/^"Graphics"="null"/"Graphics"="x11"/' "$1/user.reg"
  start_display "$1"
}
