# Sourced by the scripts that need a browser: finds Chromium, and installs the packages of
# tests/browser in the versions of their lock file.
# shellcheck shell=bash

browser_folder=build/browser

# prepare_browser: Chromium in $CHROMIUM, and tests/browser with its packages in $browser_folder.
# Fails, and says why, where they cannot be had.
prepare_browser() {
  if ! command -v chromium node npm >/dev/null; then
    scripts/install-packages browser || true
  fi
  local command
  for command in chromium node npm; do
    if ! command -v "$command" >/dev/null; then
      echo "Skipped: there is no $command here, and it cannot be installed."
      return 1
    fi
  done
  CHROMIUM=$(command -v chromium)
  export CHROMIUM
  mkdir -p "$browser_folder"
  cp tests/browser/* "$browser_folder"
  if ! cmp --quiet "$browser_folder"/package-lock.json "$browser_folder"/installed.json; then
    if ! npm --prefix "$browser_folder" ci --ignore-scripts --no-audit --no-fund; then
      echo "Skipped: the packages of tests/browser cannot be had from the npm registry."
      return 1
    fi
    cp "$browser_folder"/package-lock.json "$browser_folder"/installed.json
  fi
}
