# Completion of quillory's options for bash.
_quillory() {
    local cur prev words cword split
    _init_completion -s || return
    case $prev in
    --connect | --connect-if-none)
        _filedir -d
        return
        ;;
    --held | --show)
        return
        ;;
    --gesture)
        mapfile -t COMPREPLY < <(compgen -W "shift option off" -- "$cur")
        return
        ;;
    --keys)
        mapfile -t COMPREPLY < <(compgen -W "sway hyprland i3 gnome kde xfce" -- "$cur")
        return
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "--toggle --open --peek --held --peek-end --show --settings --background \
        --connect --connect-if-none --gesture --initial-shortcuts --keys --help --help-all --version" -- "$cur")
} && complete -F _quillory quillory
