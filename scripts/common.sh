# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Functions of ./run, ./test and CI: install missing packages, build, fetch documents. Sourced with the root directory as
# the current one.
set -euo pipefail

onDebian() { command -v dpkg-query >/dev/null && command -v apt-get >/dev/null; }

installed() { dpkg-query -W -f='${Status}\n' "$1" 2>/dev/null | grep -q 'ok installed'; }

needed=() # the packages of all calls of install

# install KIND...: installs the missing packages of those kinds (packages.txt). On systems other than Debian nothing is
# installed: there, CMake reports what is missing.
install() {
  local kinds=" $* " kind package missing=()
  while read -r kind package; do
    [[ -n $kind && $kinds == *" $kind "* ]] || continue
    needed+=("$package")
    ! onDebian || installed "$package" || missing+=("$package")
  done < <(sed -e 's/#.*//' packages.txt)
  if ! onDebian; then
    command -v cmake >/dev/null && command -v ninja >/dev/null || { namePackages ''; return 1; }
  fi
  ((${#missing[@]})) || return 0
  if ((EUID != 0)) && ! command -v sudo >/dev/null; then
    echo "As root, please: apt-get install ${missing[*]}" >&2
    return 1
  fi
  echo "Installing ${missing[*]}"
  asRoot apt-get update -qq
  asRoot env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# namePackages REST: names the packages on other systems than Debian; REST says where to find more
namePackages() {
  echo "There is no apt-get to install packages. These Debian packages or their equivalents are needed: ${needed[*]}$1" >&2
}

asRoot() { if ((EUID == 0)); then "$@"; else sudo "$@"; fi; }

# build PRESET [TARGET...]: configures and builds. The tree is configured from scratch if the last configuration was
# interrupted or failed, or if the compilers have changed, because CMake keeps the first ones.
build() {
  local preset=$1 tree=build/$1 fresh=() targets=()
  local log=$tree.log stamp=$tree/configured compilers="CC=${CC:-} CXX=${CXX:-}"
  shift
  (($#)) && targets=(--target "$@")
  mkdir -p build
  [[ -f $stamp && $(<"$stamp") == "$compilers" ]] || fresh=(--fresh)
  rm -f "$stamp"
  if ! cmake --preset "$preset" "${fresh[@]}" >"$log" 2>&1; then
    if ! onDebian; then
      namePackages "; $log names what CMake misses"
    elif ! sed -n '/^CMake Error/,$p' "$log" | grep . >&2; then
      cat "$log" >&2
    fi
    return 1
  fi
  rm -f "$log"
  echo "$compilers" >"$stamp"
  cmake --build --preset "$preset" "${targets[@]}"
}

# fetch PACKAGE FILE DESTINATION: gets a document from a Debian package, which need not be installed.
fetch() {
  local package=$1 file=$2 destination=$3 work
  [[ ! -f $destination ]] || return 0
  mkdir -p "$(dirname "$destination")"
  work=$(mktemp -d "$(dirname "$destination")/fetching.XXXXXX")
  if fetchInto "$work" && mv "$work/document" "$destination"; then
    rm -rf "$work"
  else
    rm -rf "$work"
    echo "$destination cannot be fetched: it is /$file of Debian's package $package" >&2
    return 1
  fi
}

# For fetch, in a separate directory.
fetchInto() {
  if [[ -f /$file ]]; then
    cp "/$file" "$1/document"
    return
  fi
  onDebian || return 1
  echo "Fetching ${destination##*/}"
  compgen -G '/var/lib/apt/lists/*Packages*' >/dev/null || asRoot apt-get update -qq || return 1
  (cd "$1" && apt-get download -qq -o APT::Sandbox::User="$(id -un)" "$package" &&
    dpkg-deb -x "$package"_*.deb package && mv "package/$file" document)
}
