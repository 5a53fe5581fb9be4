# Completion of cdbtool's commands, options, tables and files for bash.
# shellcheck shell=bash

# A word of the command line as the program will get it.
_cdbtool_plain() {
  local word=$1
  case $word in
    \'*) word=${word#\'} word=${word%\'} ;;
    \"*) word=${word#\"} word=${word%\"} ;;
    *) word=${word//\\/} ;;
  esac
  printf '%s' "$word"
}

# The database: the first word behind the command that is no option.
_cdbtool_database() {
  local word
  for word in "${COMP_WORDS[@]:2:COMP_CWORD-2}"; do
    if [[ $word != -* ]]; then
      _cdbtool_plain "$word"
      return
    fi
  done
}

# Offers the tables of the database; their names may have blanks.
_cdbtool_tables() {
  local database current name
  database=$(_cdbtool_database)
  current=$(_cdbtool_plain "$1")
  [[ -f $database ]] || return
  # Then the shell puts quotes where they are needed.
  compopt -o filenames 2>/dev/null
  # Nobody is asked for a server's password here.
  while IFS= read -r name; do
    if [[ $name == "$current"* ]]; then COMPREPLY+=("$name"); fi
  done < <(cdbtool tables -- "$database" 2>/dev/null </dev/null)
}

_cdbtool() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
  local words=
  COMPREPLY=()
  if [[ $COMP_CWORD == 1 ]]; then
    words="tables show find query import export new backup check info --help --version"
  elif [[ $current == -* ]]; then
    case $command in
      tables) words="--counts" ;;
      show) words="--csv --json" ;;
      find) words="--table --case" ;;
      query) words="--csv --json -q --quiet" ;;
      import)
        words="--table --new --append --format --delimiter --no-header --header --encoding --null --type --map --skip
          --replace --key --exact --keep-good --dry-run --rejects --force -q --quiet"
        ;;
      export)
        words="-o --output --format --delimiter --no-header --null --line-end --bom --exact --force -q --quiet"
        ;;
      check) words="-q --quiet" ;;
    esac
    if [[ $command != new ]]; then words+=" --password-file"; fi
    words+=" -h --help"
  else
    case $previous in
      --format) words=$([[ $command == import ]] && echo "csv json" || echo "csv json jsonl html sql") ;;
      --delimiter) words="comma semicolon tab bar" ;;
      --encoding) words="utf-8 windows-1252 utf-16le utf-16be" ;;
      --line-end) words="crlf lf" ;;
      --table)
        _cdbtool_tables "$current"
        return
        ;;
      *)
        # A table behind the database, else a file.
        if [[ $command =~ ^(show|export)$ && $previous != -o && $previous != --output && $(_cdbtool_database) ]]; then
          _cdbtool_tables "$current"
        else
          compopt -o filenames 2>/dev/null
          mapfile -t COMPREPLY < <(compgen -f -- "$(_cdbtool_plain "$current")")
        fi
        return
        ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _cdbtool cdbtool
