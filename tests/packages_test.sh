#!/usr/bin/env bash
# Makes the Debian packages of a preset's build, installs them, runs deskphone and removes them:
# nothing of them may be left. They go into a system of their own, made once with debootstrap under
# build/, the ARM packages without their dependencies; where that can't run (it needs root), dpkg
# installs them in a staging root. Argument: the preset.
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
  [ "$(id -u)" -eq 0 ] && command -v debootstrap >/dev/null || return 1
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
  dpkg=(chroot "$work/root" dpkg)
  deskphone=(chroot "$work/root" /usr/bin/deskphone --root /tmp/phone)
  if [ "$preset" = arm ]; then
    "${dpkg[@]}" --add-architecture armhf
    dpkg+=(--force-depends)
  fi
  mkdir "$work/root/new"
  cp "${files[@]}" "$work/root/new"
  installed=("${files[@]##*/}")
  installed=("${installed[@]/#//new/}")
else
  echo "in a staging root"
  mkdir -p "$work/root"/var/lib/dpkg/{info,updates} "$work/bin"
  touch "$work/root"/var/lib/dpkg/{status,available}
  ln -s /bin/true "$work/bin/ldconfig" # the packages' scripts run outside the root
  dpkg=(env PATH="$work/bin:$PATH" dpkg --root="$work/root" --force-not-root --force-depends
    --force-architecture --force-script-chrootless)
  installed=("${files[@]}")
  deskphone=("$work/root/usr/bin/deskphone" --root "$work/phone")
fi
[ "$preset" = package ] || # the sysroot has what it needs
  deskphone=(qemu-arm -L "$PWD/build/arm-sysroot" "$work/root/usr/bin/deskphone" --root "$work/phone")

before=$(content)
quietly "${dpkg[@]}" --install "${installed[@]}"
quietly "${deskphone[@]}" contacts list
grep -q Id "$work/log" || { cat "$work/log" >&2 && fail "deskphone lists no contacts"; }
rm -rf "$work/root/tmp/phone"
quietly "${dpkg[@]}" --purge "${packages[@]}"
diff <(echo "$before") <(content) || fail "the packages left something behind, or took it away"
echo "$preset: $(cd "build/$preset/packages" && stat -c '%n %s' ./*.deb | sed 's|^\./||' | paste -sd, | sed 's/,/, /g')"
