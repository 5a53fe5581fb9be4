# Completion of cdbtool's commands, options and files for bash.
# shellcheck shell=bash

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
      query) words="--csv --json --quiet" ;;
      import)
        words="--table --new --append --format --delimiter --no-header --header --encoding --null --type --map --skip
          --replace --key --keep-good --dry-run --rejects --force --quiet"
        ;;
      export) words="--output --format --delimiter --no-header --null --line-end --bom --force --quiet" ;;
      check) words="--quiet" ;;
    esac
    words+=" --help"
  else
    case $previous in
      --format) words=$([[ $command == import ]] && echo "csv json" || echo "csv json jsonl html sql") ;;
      --delimiter) words="comma semicolon tab bar" ;;
      --encoding) words="utf-8 windows-1252 utf-16le utf-16be" ;;
      --line-end) words="crlf lf" ;;
      --table)
        if [[ -f ${COMP_WORDS[2]} ]]; then words=$(cdbtool tables -- "${COMP_WORDS[2]}" 2>/dev/null); fi
        ;;
      *)
        # A table behind the database, else a file.
        if [[ $COMP_CWORD == 3 && $command =~ ^(show|export)$ && -f ${COMP_WORDS[2]} ]]; then
          words=$(cdbtool tables -- "${COMP_WORDS[2]}" 2>/dev/null)
        else
          compopt -o filenames 2>/dev/null
          mapfile -t COMPREPLY < <(compgen -f -- "$current")
          return
        fi
        ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _cdbtool cdbtool
