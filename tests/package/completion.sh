#!/usr/bin/env bash
# Checks what the completion offers, with the program that was built.
# Usage: completion.sh ROOT PROGRAM
set -uo pipefail
root=$1 program=$2 failed=0
[ -x "$program" ] || { echo "skipped: $program was not built"; exit 77; }
cd "$root" || exit 1
. scripts/completion/holdfast

# offers "what" word ... : completes the last word and compares the answers, joined by '|'.
offers() {
    local expected=$1
    shift
    COMP_WORDS=("$program" "$@") COMP_CWORD=$#
    _holdfast "$program"
    local offered
    offered=$(IFS='|'; echo "${COMPREPLY[*]}")
    [ "$offered" = "$expected" ] && return
    echo "completing: holdfast $*"
    echo "  expected: $expected"
    echo "  offered:  $offered"
    failed=1
}

drawing=examples/drawings/battery-clip.json
offers "show" sh
offers "edit" ed
offers "--help|--help-all" --h
offers "--version" --v
offers "--report" edit --rep
offers "--tolerance" convert --tol
offers "--resume" run --res
offers "json|dxf|svg|pdf|slvs" convert --to ''
offers "json|dxf|svg|slvs" show --from ''
offers "--output" show --out
offers "$drawing" edit examples/drawings/bat
offers "$drawing" show examples/drawings/bat
offers "examples/drawings/acrylic-case-top.dxf" infer examples/drawings/acr
offers "examples/pictures/sensor-cover.svg" infer examples/pictures/sen
offers "trim ENTITY at POINT by ENTITY...|trim ..." edit "$drawing" '"tri'
offers "stretch|set|suppress|scale" edit "$drawing" '"s'
offers "break ENTITY at POINT [to POINT]|break ..." edit "$drawing" '"br'
offers "unsuppress|undo" edit "$drawing" un
offers "redo" edit "$drawing" re
offers "join g10 g2 |join g10 g20 |join g10 g21 |join g10 g22 |join g10 g23 |join g10 g24 |join g10 g25 \
|join g10 g26 |join g10 g27 |join g10 g28 |join g10 g29 " edit "$drawing" '"join g10 g2'
offers "trim g37 at 8,6 by g9 |trim g37 at 8,6 by g9 ..." edit "$drawing" '"trim g37 at 8,6 by g9'
offers "break g0 |break g0 ..." edit -v -o out.json "$drawing" '"break g0'
offers "" edit "$drawing" '"break nothing'
offers "break g0 |break g0 ..." edit --report out.html --picture out.svg "$drawing" '"break g0'
offers "examples/drawings/acrylic-case-top.dxf" show "$drawing" examples/drawings/acr
offers "break g0 |break g0 ..." edit --from json "$drawing" '"break g0'
offers "" infer --tolerance ''
offers "" infer --angle ''
offers "--angle" infer --an
offers "docs/gallery/break-line.svg" edit --picture docs/gallery/break-l
offers "examples/commands" run examples/comm
offers "docs/gallery/break-line.svg" show -o docs/gallery/break-l
sized=$(mktemp --suffix=.json)
"$program" edit "$drawing" "parameter width = 80" "parameter wall = 3" "parameter pitch = 12" -o "$sized" >/dev/null
offers "parameter width |parameter wall " edit "$sized" '"parameter w'
offers "delete pitch |delete pitch ..." edit "$sized" '"delete p'
offers "set c9 = 2 * width |set c9 = 2 * wall " edit "$sized" '"set c9 = 2 * w'
offers "break g0 |break g0 ..." edit "$sized" '"break g0'
rm "$sized"
[ $failed -eq 0 ] && echo "the completion offers what it should"
exit $failed
