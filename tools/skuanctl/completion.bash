# Completion of skuanctl in bash. It asks the program, which knows the protocol.
# shellcheck shell=bash

_skuanctl() {
    local line=${COMP_LINE:0:COMP_POINT} words word break
    read -ra words <<<"$line"
    [[ $line == *[[:blank:]] ]] && words+=('')
    word=${words[-1]}
    mapfile -t COMPREPLY < <("$1" complete -- "${words[@]:1}" 2>/dev/null)

    # Bash replaces only what stands behind the last of its own word breaks.
    for break in = :; do
        if [[ $COMP_WORDBREAKS == *"$break"* && $word == *"$break"* ]]; then
            COMPREPLY=("${COMPREPLY[@]#"${word%"${word##*"$break"}"}"}")
            word=${word##*"$break"}
        fi
    done
    # Where a word goes on, no blank ends it.
    [[ ${COMPREPLY[0]} == *[=.:] ]] && compopt -o nospace 2>/dev/null
    return 0
}
# Where it knows nothing, it may be a file that is wanted.
complete -o default -F _skuanctl skuanctl
