# Completion of bkdoc's command line for bash. Verbs and options are the tool's own: they are read from its help.

_bkdoc_verbs() {
    "$1" --help 2>/dev/null | sed -n '/^Verbs:/,/^$/ s/^  \([a-z]\{1,\}\) .*/\1/p'
}

_bkdoc_options() {
    "$1" ${2:+"$2"} --help 2>/dev/null | sed -n '/^Options:/,/^$/ s/^  \(-[^ ]*\).*/\1/p' | tr , '\n'
}

_bkdoc() {
    local tool=${COMP_WORDS[0]} word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} verb="" offered=""
    COMPREPLY=()
    [ "$COMP_CWORD" -gt 1 ] && verb=${COMP_WORDS[1]}
    case $previous in
        --to) offered="text binary cipher archive" ;;
        --key | --depth) return ;;
        -I)
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            return
            ;;
        --key-file) ;;
        *)
            if [[ $word == -* ]]; then
                offered=$(_bkdoc_options "$tool" "$verb")
            elif [ -z "$verb" ]; then
                offered=$(_bkdoc_verbs "$tool")
            fi
            ;;
    esac
    if [ -n "$offered" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}

complete -o filenames -F _bkdoc bkdoc
