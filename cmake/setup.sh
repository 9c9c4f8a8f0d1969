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

# Configures (once) and builds a preset; prints the log only when it fails.
build_preset() {
  local preset=$1 log
  shift
  log=$(mktemp)
  if ! { { [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"; } && cmake --build --preset "$preset" "$@"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
