# bash completion for dataengine
_dataengine() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words=
    local command=${COMP_WORDS[1]}
    if [ "$COMP_CWORD" -eq 1 ]; then
        words='show decode unpack pack diff bson record names --help --version'
    elif [ "$previous" = --format ]; then
        words='table json lines rows csv'
        [ "$command" = record ] && words='json bson'
    elif [ "$previous" = --color ]; then
        words='auto always never'
    elif [ "$previous" = --view ]; then
        words='store status device keys'
    elif [ "$command" = record ] && [ "$COMP_CWORD" -eq 3 ]; then
        words='config cmd sysTable nctTable parser pingtrace raw'
    elif [[ $word == -* ]]; then
        words='--output --help'
        case $command in
            show) words+=' --offsets --color' ;;
            decode) words+=' --files-from --offsets --select --map --parser --format --jobs --safe-csv --color' ;;
            pack) words+=' --offsets --name --like' ;;
            bson) words+=' --debug --color' ;;
            record) words+=' --time --view --format' ;;
        esac
    fi
    # Without words, bash completes the names of files.
    COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _dataengine dataengine
