# SPDX-License-Identifier: GPL-3.0-or-later
# Shared by run and test: installs what is missing, configures, builds.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }

# Packages that a build needs, by Debian's names.
build_packages="g++ cmake ninja-build ccache qt6-base-dev qt6-5compat-dev qt6-declarative-dev python3 qt6-tools-dev
  qt6-tools-dev-tools qt6-l10n-tools qt6-translations-l10n libqscintilla2-qt6-dev libqt6svg6 libgl-dev libgtest-dev libbenchmark-dev
  ca-certificates binutils"

install_packages() { # names
  local missing=()
  local name
  for name in "$@"; do
    [ "$(dpkg-query -W -f '${Status}' "$name" 2>/dev/null)" = "install ok installed" ] || missing+=("$name")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  if ! command -v apt-get >/dev/null; then
    say "These packages are missing and this system has no apt-get: ${missing[*]}"
    return 1
  fi
  local sudo=()
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || { say "Run as root, or install sudo, to get: ${missing[*]}"; return 1; }
    sudo=(sudo)
  fi
  say "Installing ${missing[*]}"
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q >&2
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}" >&2
}

# Tools that stand in for a package when they are there already.
prepare() { # further packages
  local wanted=()
  local name
  for name in $build_packages "$@"; do
    case $name in
      g++ | cmake | ccache) command -v "$name" >/dev/null || wanted+=("$name") ;;
      ninja-build) command -v ninja >/dev/null || wanted+=("$name") ;;
      binutils) command -v nm >/dev/null || wanted+=("$name") ;;
      *) wanted+=("$name") ;;
    esac
  done
  if [ -z "${DUCKDB_ROOT:-}" ] && ! command -v npm >/dev/null; then
    wanted+=(npm) # the engine comes as a package of its registry
  fi
  install_packages "${wanted[@]}"
}

build() { # preset [targets...]
  local preset=$1
  shift
  local log=$root/build/$preset.log
  mkdir -p "$root/build"
  if ! { (cd "$root" && cmake --preset "$preset") && cmake --build "$root/build/$preset" ${1:+--target "$@"}; } \
    >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    say "The build failed; the whole log is $log"
    return 1
  fi
}
