# The ARM libraries and headers that the cross build links with, in a folder of their own. apt works
# on a private state below that folder with the machine's own package sources, so the machine's
# package lists and architectures stay as they are.

arm_packages=(libtinyxml2-dev libfmt-dev libspdlog-dev nlohmann-json3-dev libcli11-dev libstdc++6 googletest)

# Fills the folder with the packages above and what they depend on, unless it holds them already.
fill_arm_sysroot() {
  local root=$1 log
  [ "$(cat "$root/packages" 2>/dev/null)" = "${arm_packages[*]}" ] && return 0
  echo "unpacking for ARM: ${arm_packages[*]}" >&2
  log=$(mktemp)
  if ! unpack_arm_packages "$root" >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
  echo "${arm_packages[*]}" >"$root/packages"
}

unpack_arm_packages() {
  local root apt package
  rm -rf "$1"
  mkdir -p "$1/apt/state/lists/partial" "$1/apt/cache/archives/partial"
  root=$(cd "$1" && pwd)
  : >"$root/apt/status"
  apt="apt-get -qy -o APT::Architecture=armhf -o APT::Architectures::=armhf -o Debug::NoLocking=1 \
    -o APT::Sandbox::User= -o Dir::State=$root/apt/state -o Dir::State::status=$root/apt/status \
    -o Dir::Cache=$root/apt/cache"
  $apt update || true # a source without ARM packages is no harm; a missing package fails below
  $apt install --download-only --no-install-recommends "${arm_packages[@]}" || return 1
  for package in "$root"/apt/cache/archives/*.deb; do
    dpkg -x "$package" "$root" || return 1
  done
  rm -rf "$root/apt"
}
