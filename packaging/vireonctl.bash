# Completion of vireonctl for bash.
_vireonctl() {
    local current=${COMP_WORDS[COMP_CWORD]}
    local choice="calibrate reset pause input pointer offset rayline parallax sensor-viewer reload \
show hide log sleep wake quit status wait report --timeout --json --follow --help --version"
    case ${COMP_WORDS[COMP_CWORD - 1]} in
        calibrate) choice="manual touch auto" ;;
        input) choice="stylus finger" ;;
        pointer) choice="single multi" ;;
        wait) choice="ready calibrated gone" ;;
        --timeout) choice="" ;;
        report)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$choice" -- "$current")
}
complete -F _vireonctl vireonctl
