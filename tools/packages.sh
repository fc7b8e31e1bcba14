# Sourced by run.sh and test.sh: installs what is missing of packages.txt.
# shellcheck shell=bash

# packages_of LIST GROUP...: the packages of the groups, one a line.
packages_of() {
  local list=$1
  shift
  awk -v wanted=" $* " '
    /^# \[[a-z]+\]$/ { group = substr($2, 2, length($2) - 2); next }
    /^#/ || NF == 0  { next }
    index(wanted, " " group " ") { print $1 }
  ' "$list"
}

# install_missing LIST GROUP...: asks dpkg once; apt, and with it the password, only when something is missing.
install_missing() {
  local -a wanted missing=()
  local installed package
  if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian or Ubuntu: see packages.txt for what is needed." >&2
    return 0
  fi
  mapfile -t wanted < <(packages_of "$@")
  installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
  for package in "${wanted[@]}"; do
    if ! grep -qx "installed $package" <<<"$installed"; then missing+=("$package"); fi
  done
  if ((${#missing[@]} == 0)); then return 0; fi

  echo "Installing: ${missing[*]}"
  local -a as_root=(env)
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "Not root and no sudo: install these packages, then run this again." >&2
      return 1
    fi
    as_root=(sudo)
    if [[ -n ${CI:-} ]]; then as_root+=(-n); fi
    as_root+=(env)
  fi
  as_root+=(DEBIAN_FRONTEND=noninteractive)
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
}
