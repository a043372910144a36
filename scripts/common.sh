# What ./run, ./test and CI share: installing what is missing and building. Sourced, with the root folder as the
# current one.
set -euo pipefail

# install KIND...: installs the packages of those kinds (packages.txt) that are not there yet.
install() {
  local kinds=" $* " kind package missing=()
  while read -r kind package; do
    [[ $kinds == *" $kind "* ]] || continue
    dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done < <(sed -e 's/#.*//' packages.txt)
  ((${#missing[@]})) || return 0
  echo "Installing ${missing[*]}"
  local as=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null || { echo "As root, please: apt-get install ${missing[*]}" >&2; return 1; }
    as=(sudo)
  fi
  "${as[@]}" apt-get update -qq
  "${as[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [TARGET...]: configures where needed and builds.
build() {
  local preset=$1 targets=()
  shift
  (($#)) && targets=(--target "$@")
  cmake --preset "$preset" -DBUILD_TESTING="${BUILD_TESTING:-ON}" >"build-$preset.log" 2>&1 ||
    { cat "build-$preset.log" >&2; rm -f "build-$preset.log"; return 1; }
  rm -f "build-$preset.log"
  cmake --build --preset "$preset" "${targets[@]}"
}

# fetch PACKAGE FILE PLACE: a document from one of Debian's packages, which need not be installed, unless it is there.
fetch() {
  local package=$1 file=$2 place=$3 work
  [[ ! -f $place ]] || return 0
  echo "Fetching ${place##*/}"
  mkdir -p "$(dirname "$place")"
  work=$(mktemp -d "$(dirname "$place")/fetching.XXXXXX")
  if [[ -f /$file ]]; then
    cp "/$file" "$work/document"
  else
    (cd "$work" && { ls /var/lib/apt/lists/*Packages* >/dev/null 2>&1 || ${SUDO:-} apt-get update -qq; } &&
      apt-get download -qq -o APT::Sandbox::User="$(id -un)" "$package" && dpkg-deb -x "$package"_*.deb package &&
      mv "package/$file" document)
  fi
  mv "$work/document" "$place"
  rm -rf "$work"
}
