#!/usr/bin/env bash
# Makes the Debian packages of a preset's build, installs them, runs deskphone and removes them:
# nothing of them may be left. The packages for this machine go into a system of their own, made once
# with debootstrap under build/; where that can't run (it needs root), and for the ARM packages, dpkg
# unpacks them in a staging root, without their dependencies. Argument: the preset.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
packages=(libcfgxml1 libcfgxml-dev cfgxml-tools)
needed=libtinyxml2-9,libfmt9,libspdlog1.10
pristine=build/debootstrap
work=$(mktemp -d)

fail() {
  echo "$1" >&2
  exit 1
}

quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2 && fail "failed: $*"; }
}

clean_up() {
  ! mountpoint -q "$work/root/proc" || umount "$work/root/proc"
  rm -rf "$work"
}
trap clean_up EXIT

# Files and folders of the root, but for what dpkg and the system keep about themselves.
content() {
  (cd "$work/root" && find . -path ./proc -prune -o -path './var/*' -prune -o -print | sort)
}

has_system() {
  [ "$preset" = package ] && [ "$(id -u)" -eq 0 ] && command -v debootstrap >/dev/null || return 1
  [ -f "$pristine/complete" ] && return 0
  rm -rf "$pristine"
  debootstrap --variant=minbase --include="$needed" \
    "$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)" "$pristine" >"$work/log" 2>&1 || return 1
  touch "$pristine/complete"
}

quietly cpack --config "build/$preset/CPackConfig.cmake"
files=("build/$preset"/packages/*.deb)
[ ${#files[@]} -eq 3 ] || fail "not three packages: ${files[*]}"

if has_system; then
  cp -a "$pristine" "$work/root"
  mount -t proc proc "$work/root/proc"
  in_root=(chroot "$work/root")
  dpkg=("${in_root[@]}" dpkg)
  mkdir "$work/root/new"
  cp "${files[@]}" "$work/root/new"
  installed=("${files[@]##*/}")
  installed=("${installed[@]/#//new/}")
  deskphone=("${in_root[@]}" /usr/bin/deskphone --root /tmp/phone)
else
  echo "in a staging root"
  mkdir -p "$work/root"/var/lib/dpkg/{info,updates}
  touch "$work/root"/var/lib/dpkg/{status,available}
  dpkg=(dpkg --root="$work/root" --force-not-root --force-depends --force-architecture)
  installed=("${files[@]}")
  deskphone=("$work/root/usr/bin/deskphone" --root "$work/phone")
  [ "$preset" = package ] ||
    deskphone=(qemu-arm -L "$PWD/build/arm-sysroot" "${deskphone[@]}")
fi

before=$(content)
quietly "${dpkg[@]}" --install "${installed[@]}"
quietly "${deskphone[@]}" contacts list
grep -q Id "$work/log" || { cat "$work/log" >&2 && fail "deskphone lists no contacts"; }
rm -rf "$work/root/tmp/phone"
quietly "${dpkg[@]}" --purge "${packages[@]}"
diff <(echo "$before") <(content) || fail "the packages left something behind, or took it away"
echo "$preset: $(cd "build/$preset/packages" && stat -c '%n %s' ./*.deb | sed 's|^\./||' | paste -sd, | sed 's/,/, /g')"
