# Roots of Debian releases to try things in; sourced after setup.sh, never run. Needs to be root.
# shellcheck shell=bash

# make_root SUITE FOLDER PACKAGE...: a root with little more than these packages, from where this system has its own.
# A root that is there with all of them is used again.
make_root() {
  local suite=$1 folder=$2 mirror
  shift 2
  if [[ -e $folder/.complete && $(<"$folder/.complete") == "$*" ]]; then
    return
  fi
  mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Component: main' | head -n 1)
  rm -rf --one-file-system "$folder"
  mkdir -p "${folder%/*}"
  step root "making a root of $suite, $folder" \
    mmdebstrap --variant=apt --include="$(printf '%s,' "$@")ca-certificates" "$suite" "$folder" "$mirror"
  printf '%s' "$*" >"$folder/.complete"
}

# in_root FOLDER COMMAND...: runs it with the root's own /proc, /dev and /tmp; what it starts ends with it. The folder
# of this project is there under its own name.
in_root() {
  unshare --mount --pid --fork --kill-child bash -c '
    set -e
    folder=$1 project=$2
    shift 2
    mount --make-rprivate /
    # Only what is a mount itself can be the root of one that has mounts of its own inside.
    mount --bind "$folder" "$folder"
    mount -t proc proc "$folder/proc"
    mount --rbind /dev "$folder/dev"
    mount -t tmpfs tmpfs "$folder/tmp"
    mkdir -p "$folder$project"
    mount --bind "$project" "$folder$project"
    exec chroot "$folder" "$@"' in_root "$1" "$root" "${@:2}"
}

require_root() {
  if [[ $EUID != 0 ]]; then
    fail "this mounts and changes its root: start it as root"
  fi
}
