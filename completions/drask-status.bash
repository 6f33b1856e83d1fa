# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completes the words of drask-status in bash.
_drask_status() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=""
    local candidate
    COMPREPLY=()
    for candidate in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $candidate in plan | verify | report | doctor) command=$candidate ;; esac
    done
    case $before in
        --folder)
            while IFS= read -r candidate; do COMPREPLY+=("$candidate"); done \
                < <(compgen -d -- "$word")
            compopt -o filenames 2>/dev/null
            return
            ;;
        --host)
            candidate="3dsmax c4d c4d14 c4d21 blender blender28 xsi lightwave maya modo rhino revit"
            candidate="$candidate houdini sketchup clarisse"
            ;;
        --mode) candidate="install reinstall onlyWriteConfig" ;;
        *)
            candidate="--folder --host --json --all --no-colour --help --version"
            case $command in
                "") candidate="plan verify report doctor $candidate" ;;
                plan) candidate="--mode $candidate" ;;
            esac
            ;;
    esac
    while IFS= read -r candidate; do COMPREPLY+=("$candidate"); done \
        < <(compgen -W "$candidate" -- "$word")
}
complete -F _drask_status drask-status
