#!/bin/sh
# The window's page by the rules of accessibility, whose package is put into a folder of the build when it is not there.
# Usage: accessibility_test.sh PYTHON PROGRAM DRAWING FOLDER
# Ends with 77, for "skipped", where the package cannot be had.
set -eu
python=$1 program=$2 drawing=$3 folder=$4
here=$(cd "$(dirname "$0")" && pwd)
package=axe-core version=4.14.1
rules="$folder/node_modules/$package/axe.min.js"
if [ ! -f "$rules" ]; then
    command -v npm >/dev/null || { echo "skipped: $package missing: npm is not installed; scripts/setup installs it"; exit 77; }
    mkdir -p "$folder"
    npm install --prefix "$folder" --no-audit --no-fund --fetch-retries=1 "$package@$version" >"$folder/install.log" 2>&1 ||
        { echo "skipped: $package missing: npm could not install it"; tail -n 5 "$folder/install.log"; exit 77; }
fi
exec "$python" -B "$here/accessibility_test.py" "$program" "$drawing" "$rules"
