# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of corvane-simulator in bash.

_corvane_simulator()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # bash makes a word of the "=" in --option=value.
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    case $previous in
    --profile)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        ;;
    --state)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        ;;
    --bus) ;;
    *)
        local words='--profile --bus --session --system --yes-really-system --state --no-state --fast'
        words+=' --print-address --verbose -v --help -h --version'
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
        ;;
    esac
}
complete -F _corvane_simulator corvane-simulator
