#!/usr/bin/env bash
# Neither man nor mandoc may say anything against a manual page: FOLDER. Exits with 77, which CTest
# counts as skipped, where neither is installed.
set -euo pipefail

looked=no
said=
for page in "$1"/*.1; do
  if command -v man >/dev/null && command -v groff >/dev/null; then
    looked=yes
    said+=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 \
      man --warnings --encoding=UTF-8 --local-file --troff-device=utf8 --ditroff "$page" \
      2>&1 >/dev/null)
  fi
  if command -v mandoc >/dev/null; then
    looked=yes
    said+=$(mandoc -T lint -W warning "$page" || true)
  fi
done
[[ $looked == yes ]] || exit 77
if [[ -n $said ]]; then
  echo "$said"
  exit 1
fi
