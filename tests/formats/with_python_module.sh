#!/bin/sh
# Runs a script with the first Python that has a module: with_python_module.sh MODULE SCRIPT ARGUMENT...
# Exits 77, which counts as skipped, when none has it.
module=$1
shift
for python in python3 /usr/bin/python3; do
    if "$python" -c "import $module" 2>/dev/null; then
        exec "$python" "$@"
    fi
done
echo "skipped: no Python here has the module $module; install the package python3-$module" >&2
exit 77
