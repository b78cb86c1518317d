#!/usr/bin/env bash
# Runs the comparison with an independent solver, which is installed into a folder of the build when it is not there yet.
# Usage: with_oracle.sh <program solver_cases> <folder for the package>
# Ends with 77, for "skipped", where node or the package cannot be had; then it says which.
set -euo pipefail
program=$1
folder=$2
here=$(cd "$(dirname "$0")" && pwd)
package=@salusoft89/planegcs@1.3.0

command -v node >/dev/null || { echo "skipped: node is not installed; scripts/setup installs it"; exit 77; }
if [ ! -d "$folder/node_modules/${package%@*}" ]; then
  command -v npm >/dev/null || { echo "skipped: npm is not installed, so $package cannot be; scripts/setup installs it"; exit 77; }
  mkdir -p "$folder"
  npm install --prefix "$folder" --no-audit --no-fund --fetch-retries=1 "$package" >"$folder/install.log" 2>&1 ||
    { echo "skipped: npm could not install $package:"; tail -n 5 "$folder/install.log"; exit 77; }
fi
# The solver writes progress of its own between our lines.
node "$here/oracle.mjs" "$program" "$folder" | grep -v '^RedundantSolving' 
