# Completion for quibbits and its tools in bash.

_quibbits() {
    local current=${COMP_WORDS[COMP_CWORD]} first=${COMP_WORDS[1]-}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        # shellcheck disable=SC2207
        COMPREPLY=($(compgen -W "settings dial celebrate pass success failed fail error done finished
            hello focus unfocus strike party why status quit --version --help" -- "$current"))
        return
    fi
    case $first in
        strike) compopt -o default ;;
        # shellcheck disable=SC2207
        party|why|status) COMPREPLY=($(compgen -W "--json" -- "$current")) ;;
    esac
}

_quibbits_defaults() {
    local current=${COMP_WORDS[COMP_CWORD]}
    # shellcheck disable=SC2207
    case $COMP_CWORD in
        1) COMPREPLY=($(compgen -W "list read write delete --help" -- "$current")) ;;
        2) COMPREPLY=($(compgen -W "$(quibbits-defaults list 2>/dev/null | cut -d' ' -f1)" -- "$current")) ;;
        3) COMPREPLY=($(compgen -W "true false -bool -int -float -string -date -array" -- "$current")) ;;
        *) COMPREPLY=() ;;
    esac
}

_quibbits_sim() {
    local current=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    # shellcheck disable=SC2207
    case $current in
        -*) COMPREPLY=($(compgen -W "--trace --film --fps --area --for --sheets --help" -- "$current")) ;;
        *) compopt -o default ;;
    esac
}

_quibbits_atelier() {
    local current=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    # shellcheck disable=SC2207
    case $current in
        -*) COMPREPLY=($(compgen -W "--out --contact --strip --play --icons --line-up --check --help" -- "$current")) ;;
        *) compopt -o default ;;
    esac
}

complete -F _quibbits quibbits
complete -F _quibbits_defaults quibbits-defaults
complete -F _quibbits_sim quibbits-sim
complete -F _quibbits_atelier quibbits-atelier
