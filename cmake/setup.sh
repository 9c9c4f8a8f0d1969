# Shared by run and test: packages and builds.

# Installs the Debian packages given as arguments, unless they are there; says so in one line.
install_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "installing: ${missing[*]}" >&2
  local sudo="" log
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  log=$(mktemp)
  if ! { $sudo apt-get update -q && DEBIAN_FRONTEND=noninteractive $sudo apt-get install -qy --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "could not install: ${missing[*]}" >&2
    return 1
  fi
  rm -f "$log"
}

# Configures a preset, once; a build folder that was copied or moved along with its tree would build
# the old one, so it is made anew.
configure_preset() {
  local folder=build/$1 home
  home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$folder/CMakeCache.txt" 2>/dev/null || true)
  [ -z "$home" ] || [ "$home" -ef . ] || rm -rf "$folder"
  [ -f "$folder/build.ninja" ] || cmake --preset "$1"
}

# Reads Ninja's lines and shows on standard error how far the build is: in one line on a terminal,
# else every quarter. A build with nothing to do shows nothing.
show_progress() {
  local line step steps quarter=-1
  while IFS= read -r line; do
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\ (Building|Linking) ]] || continue
    step=${BASH_REMATCH[1]} steps=${BASH_REMATCH[2]}
    if [ -t 2 ]; then
      line=${line##* } line=${line##*.dir/}
      printf '\r\033[Kbuilding, %d of %d: %.50s' "$step" "$steps" "${line%.o}" >&2
    elif [ $((4 * step / steps)) -gt $quarter ]; then
      quarter=$((4 * step / steps))
      echo "building build/$1, $step of $steps" >&2
    fi
  done
  [ ! -t 2 ] || printf '\r\033[K' >&2
}

# Configures and builds a preset in the current folder; prints the log only when it fails.
build_preset() {
  local preset=$1 log
  shift
  log=$(mktemp)
  if ! (
    set -o pipefail
    { configure_preset "$preset" && cmake --build --preset "$preset" "$@"; } 2>&1 |
      tee "$log" | show_progress "$preset"
  ); then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
