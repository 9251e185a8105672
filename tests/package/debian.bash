#!/usr/bin/env bash
# Installs the Debian packages, uses and removes them, and looks for what they leave behind: FOLDER
# COMPILER VERSION, the folder that of the packages. Exits with 77, which CTest counts as skipped,
# where that cannot be done.
set -euo pipefail
folder=$1
compiler=$2
version=$3
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
library=libgait-statistics"${version%%.*}"
packages=("$library" libgait-statistics-dev gait-statistics gait-statistics-doc)

skip() {
  echo "Skipped: $1."
  exit 77
}

is_known() {
  dpkg-query --show "$1" >/dev/null 2>&1
}

[[ -e /etc/debian_version ]] || skip "this is not a Debian system"
compgen -G "$folder/*.deb" >/dev/null || skip "there are no packages"
[[ $(id -u) -eq 0 ]] || skip "packages can be installed as root only"
for needed in libeigen3-dev dpkg-dev; do
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

# Only root may enter the folders of some checkouts, and apt reads as somebody else.
mkdir "$work/packages"
for package in "${packages[@]}"; do
  cp "$folder/${package}_$version-"*.deb "$work/packages"
done
chmod -R a+rX "$work"

echo "---- what the packages say"
for package in "${packages[@]}"; do
  archive=("$work/packages/${package}_"*.deb)
  dpkg-deb --info "${archive[0]}"
done
# depends PACKAGE ON: whether the package names what it needs.
depends() {
  [[ $(dpkg-deb --field "$work/packages/${1}_"*.deb Depends) == *"$2"* ]] ||
    fail "$1 does not depend on $2"
}
depends "$library" libc6
depends libgait-statistics-dev "$library (= $version-"
depends libgait-statistics-dev "libeigen3-dev (>= 3.4)"
depends gait-statistics "$library (>= $version)"
depends gait-statistics libcsv

echo "---- installed"
apt install "$work/packages/"*.deb
for package in "${packages[@]}"; do
  dpkg --listfiles "$package" | sort >"$work/$package.files"
  dpkg --verify "$package"
  [[ -s /usr/share/doc/$package/copyright ]] || fail "$package comes without a copyright file"
done
/usr/bin/gait-statistics --version | grep -F "$version"
"$here/hardened.bash" /usr/bin/gait-statistics /usr/bin/gait-make-walk \
  "$(dpkg --listfiles "$library" | grep 'so\.[0-9]*\.')"
for command in gait-statistics gait-make-walk; do
  [[ -s /usr/share/man/man1/$command.1.gz ]] || fail "$command has no manual page"
done

# What the page of the program names is where it says, and its links lead somewhere.
documentation=/usr/share/doc/gait-statistics
/usr/bin/gait-statistics --format csv "$documentation/examples/walks/two_feet_turn" >/dev/null
python3 "$here/links_lead_somewhere.py" "$documentation"
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
    # Folders that other packages share stay, and dpkg knows the root by no name.
    if [[ $path != /. && -e $path ]] && ! dpkg --search "$path" >/dev/null 2>&1; then
      fail "$package left $path behind"
    fi
  done <"$work/$package.files"
done
! ldconfig --print-cache | grep gait_statistics || fail "the linker's cache still lists the library"
echo "---- nothing was left behind"
