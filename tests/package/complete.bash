# SPDX-License-Identifier: GPL-3.0-or-later
# bash complete.bash WORD...: prints what the last word can be completed to.
# shellcheck source=/dev/null
source /usr/share/bash-completion/bash_completion
_completion_loader "$1" || true
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
how=$(complete -p "$1")
how=${how##*-F }
"${how%% *}"
printf '%s\n' "${COMPREPLY[@]}"
