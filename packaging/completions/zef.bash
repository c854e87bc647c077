# SPDX-License-Identifier: MIT
# bash completion for zef(1)

_zef()
{
    local word=${COMP_WORDS[COMP_CWORD]} command='' options index
    COMPREPLY=()
    for ((index = 1; index < COMP_CWORD; index++)); do
        if [[ ${COMP_WORDS[index]} != -* ]]; then
            command=${COMP_WORDS[index]}
            break
        fi
    done

    case $command in
        '')
            options='watch find list info archive resolve trash serve --help --version'
            COMPREPLY=($(compgen -W "$options" -- "$word"))
            return
            ;;
        watch) options='--interval --async --plain --json --help' ;;
        find) options='--depth --visible --normal --plain --json --help' ;;
        list | info | resolve) options='--plain --json --help' ;;
        archive | serve) options='--plain --help' ;;
        trash) options='--help' ;;
        *) return ;;
    esac

    case ${COMP_WORDS[COMP_CWORD - 1]} in
        --interval | --depth) return ;;
    esac
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$word"))
        return
    fi

    # Lines, not words: names may hold blanks.
    local kind=-f path
    case $command in
        watch | list) kind=-d ;;
        resolve | serve) return ;;
    esac
    while IFS= read -r path; do
        COMPREPLY+=("$path")
    done < <(compgen "$kind" -- "$word")
    compopt -o filenames 2>/dev/null
} && complete -F _zef zef
