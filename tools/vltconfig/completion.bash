# Completion for vltconfig: commands, options and files.
_vltconfig() {
    local commands="show get definitions check text export set edit remove import restore repair diff merge"
    local word=${COMP_WORDS[COMP_CWORD]} options="--help --progress"
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands --help --version --progress" -- "$word")
        return
    fi
    case ${COMP_WORDS[1]} in
    show) options+=" --long --json" ;;
    get | definitions | check) options+=" --json" ;;
    set) options+=" --replace-invalid" ;;
    restore) options+=" --yes" ;;
    repair | merge) options+=" --output" ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -o filenames -F _vltconfig vltconfig
