# Sourced by ./run, ./test and ./bench: the packages that the project needs, and its builds. Expects bash with
# "set -euo pipefail" and the project's folder as the working directory. Nothing here depends on which of them came
# first.

packages_to_run=(g++ cmake ninja-build ccache libpugixml-dev libutfcpp-dev zlib1g-dev nettle-dev libcli11-dev tzdata)
# make, because gnustep-config asks it and says nothing at all without it.
packages_for_bundle=(gobjc++ make gnustep-make libgnustep-gui-dev gnustep-back0.29-cairo fonts-dejavu-core)
packages_to_test_bundle=(valgrind xvfb openbox xdotool x11-utils imagemagick)
packages_to_test=(python3 pkg-config man-db mandoc bash-completion zsh fish libxml2-utils libgtest-dev libgmock-dev
  librapidcheck-dev libxml2-dev clang lld llvm libc++-dev)
packages_to_test_all=(clang-format clang-tidy libclang-rt-14-dev libc++abi-dev googletest libplist-dev lintian
  mmdebstrap dpkg-dev uidmap)
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
  mapfile -t missing < <(missing_packages "$@" | sort -u)
  if [ ${#missing[@]} -eq 0 ]; then
    return 0
  fi
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      say "packages are missing, and there is no sudo to install them with. As root:"
      say_how_to_install "${missing[@]}"
      return 1
    fi
    root=(sudo)
  fi

  say "installing ${missing[*]}"
  local log status=0 apt=(apt-get -q -o DPkg::Lock::Timeout=600 -o Acquire::Retries=3)
  log=$(mktemp)
  # A single list that cannot be read need not matter; whether it does, the installation tells.
  ${root[@]+"${root[@]}"} "${apt[@]}" update >"$log" 2>&1 </dev/null || true
  ${root[@]+"${root[@]}"} env DEBIAN_FRONTEND=noninteractive "${apt[@]}" install -y --no-install-recommends \
    "${missing[@]}" >>"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ]; then
    # Of hundreds of lines those that say why.
    { grep -E '^(E|Err|sudo|dpkg)[: ]' "$log" || true; } | sort -u | tail -n 4 >&2
    say "packages that are missing could not be installed. Once that works (is there a network?), try again; or as root:"
    say_how_to_install "${missing[@]}"
  fi
  rm -f "$log"
  return "$status"
}

say_how_to_install() {
  say "  apt-get update && apt-get install --no-install-recommends $*"
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

# On a terminal: the line that says what goes on, in the place of the one before. Without a text the line is gone.
show_line() {
  if [ -t 2 ]; then
    local width
    width=$(stty size <&2 2>/dev/null | cut -d ' ' -f 2) || width=80
    printf '\r\033[K%.*s' $((${width:-80} - 1)) "$*" >&2
  fi
}

# is_configured FOLDER: whether the build in it can be used. Its compiler may be gone, and whoever was interrupted may
# have left a half of it.
is_configured() {
  local compiler first
  [ -f "$1/CMakeCache.txt" ] && [ -f "$1/build.ninja" ] || return
  compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$1/CMakeCache.txt")
  [ -x "$compiler" ] && IFS= read -r first <"$1/build.ninja" && [[ $first == '# CMAKE generated file'* ]]
}

# configure PRESET [CMAKE ARGUMENTS…]: only where something asks for it; CMake itself sees to the rest. What cannot be
# configured stays as it was: neither a half-made folder nor an option that could not be met keeps the next try from
# working.
configure() {
  local preset=$1 folder=build/$1 status=0 log home
  shift
  if [ -f "$folder/CMakeCache.txt" ]; then
    home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$folder/CMakeCache.txt")
    # The same place may have more than one path.
    if [ -n "$home" ] && [ ! "$home" -ef "$PWD" ]; then
      say "$folder was made for another place and is made anew"
      rm -rf "$folder"
    fi
  fi
  if [ $# -eq 0 ] && is_configured "$folder" && [ ! CMakePresets.json -nt "$folder/build.ninja" ]; then
    return 0
  fi
  log=$(mktemp) || return
  show_line "configuring $preset"
  rm -f "$folder/CMakeCache.before"
  if [ -f "$folder/CMakeCache.txt" ]; then
    cp -p "$folder/CMakeCache.txt" "$folder/CMakeCache.before"
  fi
  cmake --preset "$preset" "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ "$status" -ne 0 ] && [ -f "$folder/CMakeCache.before" ]; then
    # What it remembers may be a compiler that is gone.
    status=0
    cmake --fresh --preset "$preset" "$@" >"$log" 2>&1 </dev/null || status=$?
    [ "$status" -ne 0 ] || say "$folder could not be configured as it was and was configured anew"
  fi
  show_line ""
  if [ "$status" -ne 0 ]; then
    cat "$log" >&2
    say "$folder could not be configured; what CMake says of it stands above"
    rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles" "$folder/build.ninja"
    if [ -f "$folder/CMakeCache.before" ]; then
      mv "$folder/CMakeCache.before" "$folder/CMakeCache.txt"
    fi
  fi
  rm -f "$log" "$folder/CMakeCache.before"
  return "$status"
}

# configure_with_bundle PRESET [CMAKE ARGUMENTS…]: fails where the bundle cannot be built. That it has to be is not
# remembered: who needs it asks each time, and nobody else is kept from building.
configure_with_bundle() {
  local lacks
  configure "$@" -DEPG_BUILD_BUNDLE=AUTO || return
  lacks=$(sed -n 's/^EPG_BUNDLE_LACKS:INTERNAL=//p' "build/$1/CMakeCache.txt")
  if [ -n "$lacks" ]; then
    say "the bundle cannot be built; missing:$lacks. These Debian packages have it:"
    say "  ${packages_for_bundle[*]}"
    return 1
  fi
}

# build PRESET [TARGET…]: on a terminal one line that counts, elsewhere nothing, unless it fails.
build() {
  local preset=$1 log status=0
  shift
  log=$(mktemp) || return
  NINJA_STATUS='%f/%t ' cmake --build --preset "$preset" --parallel "$jobs" ${1:+--target "$@"} 2>&1 </dev/null |
    tee "$log" | show_steps || status=$?
  if [ "$status" -ne 0 ]; then
    grep -vE '^[0-9]+/[0-9]+ ' "$log" >&2 || true
    say "build/$preset could not be built; what the compiler says stands above"
  fi
  rm -f "$log"
  return "$status"
}

# Ninja's "12/140 Building CXX object host/CMakeFiles/….dir/Unity/unity_0_cxx.cxx.o" as "(12/140) host/unity_0_cxx".
show_steps() {
  local line step text
  while IFS= read -r line; do
    if [ -t 2 ] && [[ $line =~ ^([0-9]+/[0-9]+)\ (.*)$ ]]; then
      step=${BASH_REMATCH[1]}
      text=${BASH_REMATCH[2]##* }
      show_line "($step) $(sed -E -e 's:CMakeFiles/[^/]*\.dir/::' -e 's:Unity/::' -e 's:(\.cxx|\.mm|\.cpp)?\.o$::' <<<"$text")"
    fi
  done
  show_line ""
}
