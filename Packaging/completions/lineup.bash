# Completion of lineup for bash: the program itself says what could come next.
_lineup()
{
    local answer line
    mapfile -t answer < <("${COMP_WORDS[0]}" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    case ${answer[0]-none} in
        files) compopt -o default ;;
        folders) compopt -o dirnames ;;
    esac
    COMPREPLY=()
    for line in "${answer[@]:1}"; do
        COMPREPLY+=("${line%%$'\t'*}")
    done
}
complete -F _lineup lineup
