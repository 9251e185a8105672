#!/usr/bin/env bash
# Builds the Debian packages, installs, uses and removes them, and looks for what they leave behind:
# BUILD_TREE COMPILER VERSION. Exits with 77, which CTest counts as skipped, where that cannot be
# done.
set -euo pipefail
tree=$1
compiler=$2
version=$3
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
packages=(libgait-statistics"${version%%.*}" libgait-statistics-dev gait-statistics)

skip() {
  echo "Skipped: $1."
  exit 77
}

is_known() {
  dpkg-query --show "$1" >/dev/null 2>&1
}

[[ -e /etc/debian_version ]] || skip "this is not a Debian system"
[[ $(id -u) -eq 0 ]] || skip "packages can be installed as root only"
for needed in libeigen3-dev dpkg-dev file; do
  is_known "$needed" || skip "the package $needed is not installed"
done
# Two build trees may run this at the same time, but there is one system.
exec 9>/run/lock/gait_statistics_package_test
flock 9
for package in "${packages[@]}"; do
  ! is_known "$package" || skip "$package is installed on this system, and would be replaced"
done

fail() {
  echo "Failed: $1." >&2
  exit 1
}

apt() {
  DEBIAN_FRONTEND=noninteractive \
    apt-get --quiet --yes -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@"
}

work=$(mktemp -d)
clean_up() {
  for package in "${packages[@]}"; do
    ! is_known "$package" || apt purge "$package"
  done
  rm -rf "$work" /run/lock/gait_statistics_package_test
}
trap clean_up EXIT

cpack --config "$tree/CPackConfig.cmake" -B "$work/packages"
chmod -R a+rX "$work"

echo "---- what the packages say"
for package in "${packages[@]}"; do
  archive=("$work/packages/${package}_${version}_"*.deb)
  dpkg-deb --info "${archive[0]}"
done
# depends PACKAGE ON: whether the package names what it needs.
depends() {
  [[ $(dpkg-deb --field "$work/packages/${1}_${version}_"*.deb Depends) == *"$2"* ]] ||
    fail "$1 does not depend on $2"
}
depends "${packages[0]}" libc6
depends libgait-statistics-dev "${packages[0]} (= $version)"
depends libgait-statistics-dev "libeigen3-dev (>= 3.4)"
depends gait-statistics "${packages[0]} (>= $version)"
depends gait-statistics libcsv

echo "---- installed"
apt install "$work/packages/"*.deb
for package in "${packages[@]}"; do
  dpkg --listfiles "$package" | sort >"$work/$package.files"
  dpkg --verify "$package"
  [[ -s /usr/share/doc/$package/copyright ]] || fail "$package comes without a copyright file"
done
/usr/bin/gait-statistics --version | grep -F "$version"
ldd /usr/bin/gait-statistics | grep "libgait_statistics.so.${version%%.*} => /"

read -r -a flags <<<"$(pkg-config --cflags --libs gait_statistics)"
"$compiler" -std=c++17 "$here/consumer.cpp" "${flags[@]}" -o "$work/consumer"
"$work/consumer"
cmake -S "$here/by_find_package" -B "$work/by_find_package" -DCMAKE_CXX_COMPILER="$compiler"
cmake --build "$work/by_find_package"
"$work/by_find_package/consumer"

echo "---- removed"
apt purge "${packages[@]}"
for package in "${packages[@]}"; do
  ! is_known "$package" || fail "$package is still known to dpkg"
  while read -r path; do
    # Folders that other packages share stay.
    if [[ -e $path ]] && ! dpkg --search "$path" >/dev/null 2>&1; then
      fail "$package left $path behind"
    fi
  done <"$work/$package.files"
done
! ldconfig --print-cache | grep gait_statistics || fail "the linker's cache still lists the library"
echo "---- nothing was left behind"
