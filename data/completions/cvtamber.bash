# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of cvtamber in bash.

_cvtamber()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} word ended=''
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $word != -- ]] || ended=yes
    done
    # bash makes a word of the "=" in --simulate=PROFILE.
    [[ $current != = ]] || current=
    if [[ -z $ended && $current == -?* && $previous != = ]]; then
        local words='--simulate --simulate= --settings --verbose --help -h --version'
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
        [[ ${COMPREPLY[*]} != *= ]] || compopt -o nospace 2>/dev/null
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}
complete -F _cvtamber cvtamber
