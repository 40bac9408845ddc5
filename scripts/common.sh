# Sourced by ./run, ./test and ./bench: the packages that the project needs, and its builds. Expects bash with
# "set -euo pipefail" and the project's folder as the working directory.

packages_to_run=(g++ cmake ninja-build ccache libpugixml-dev libutfcpp-dev zlib1g-dev nettle-dev libcli11-dev tzdata)
# make, because gnustep-config asks it and says nothing at all without it.
packages_for_bundle=(gobjc++ make gnustep-make libgnustep-gui-dev gnustep-back0.29-cairo fonts-dejavu-core)
packages_to_test_bundle=(valgrind xvfb openbox xdotool x11-utils imagemagick)
packages_to_test=(python3 libxml2-utils libgtest-dev libgmock-dev librapidcheck-dev libxml2-dev)
packages_to_test_all=(clang clang-format clang-tidy libclang-rt-14-dev libc++-dev libc++abi-dev googletest
  libplist-dev)
packages_to_test_32bit=(g++-multilib)
packages_to_measure=(python3 libxml2-dev libplist-dev xmltv-util gnuplot-nox valgrind xvfb)

jobs=$(nproc 2>/dev/null || getconf _NPROCESSORS_ONLN)

say() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
}

# quietly COMMAND…: shows the output only when the command fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    cat "$log" >&2
  fi
  rm -f "$log"
  return "$status"
}

# missing_packages PACKAGE…: those that are not installed.
missing_packages() {
  local package installed architecture
  installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}:${Architecture}\n' | sed -n 's/^installed //p')
  architecture=$(dpkg --print-architecture)
  for package; do
    grep -qxF -e "$package:$architecture" -e "$package:all" <<<"$installed" || echo "$package"
  done
}

# need_packages PACKAGE…: installs the Debian packages that are missing; touches nothing when all are there.
need_packages() {
  if [ "${EPG_SKIP_PACKAGES:-}" = 1 ]; then
    return 0
  fi
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "packages can be installed here only on Debian. Install what these Debian packages hold:"
    say "  $*"
    say "and say so with EPG_SKIP_PACKAGES=1 in the environment."
    return 1
  fi

  local missing root=()
  mapfile -t missing < <(missing_packages "$@")
  if [ ${#missing[@]} -eq 0 ]; then
    return 0
  fi
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      say "packages are missing, and there is no sudo to install them with. As root:"
      say "  apt-get install ${missing[*]}"
      return 1
    fi
    root=(sudo)
  fi

  say "installing ${missing[*]}"
  local apt=(apt-get -q -o DPkg::Lock::Timeout=600 -o Acquire::Retries=3)
  # A single list that cannot be read need not matter; whether it does, the installation tells.
  quietly "${root[@]}" "${apt[@]}" update || say "going on with the package lists that could be read"
  quietly "${root[@]}" env DEBIAN_FRONTEND=noninteractive "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
}

# alone COMMAND…: runs a step of a build while no other one runs here, as in ./run list | ./run edit -. What the command
# starts cannot keep the lock; the program that was built runs without it. Where nothing locks, it just runs.
alone() {
  local status=0
  if ! { mkdir -p build && : >>build/lock; } 2>/dev/null; then
    say "$PWD/build cannot be written, and this clone is built there; work in one that is your own"
    return 1
  fi
  if ! command -v flock >/dev/null; then
    "$@"
    return
  fi
  exec 9>build/lock
  # Looking whether all is up to date takes a moment; only a real build is worth a word.
  flock -w 5 9 || { say "waiting for another build" && flock 9; } || true
  "$@" 9>&- || status=$?
  exec 9>&-
  return "$status"
}

# configure PRESET [CMAKE ARGUMENTS…]: only where something asks for it; CMake itself sees to the rest.
configure() {
  local preset=$1 folder=build/$1
  shift
  if [ -f "$folder/CMakeCache.txt" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt"; then
    say "$folder was made for another place and is made anew"
    rm -rf "$folder"
  fi
  if [ $# -gt 0 ] || [ ! -f "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/build.ninja" ]; then
    quietly cmake --preset "$preset" "$@"
  fi
}

# build PRESET [TARGET…]
build() {
  local preset=$1
  shift
  quietly cmake --build --preset "$preset" --parallel "$jobs" ${1:+--target "$@"}
}
