#!/usr/bin/env bash
# Builds and runs the consumer with what pkg-config says: COMPILER PREFIX
set -euo pipefail
compiler=$1
prefix=$2

pc_file=$(find "$prefix" -name gait_statistics.pc)
libraries=$(dirname "$(dirname "$pc_file")")
export PKG_CONFIG_PATH=$libraries/pkgconfig

headers=$(pkg-config --variable=includedir gait_statistics)
if [[ $(realpath "$headers") != "$(realpath "$prefix/include")" ]]; then
  echo "pkg-config leads out of the installed tree: $(pkg-config --cflags gait_statistics)"
  exit 1
fi

program=$prefix/consumer_by_pkg_config
read -r -a flags <<<"$(pkg-config --cflags --libs gait_statistics)"
"$compiler" -std=c++17 "$(dirname "${BASH_SOURCE[0]}")/consumer.cpp" "${flags[@]}" -o "$program"
LD_LIBRARY_PATH=$libraries "$program"
