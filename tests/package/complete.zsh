# SPDX-License-Identifier: GPL-3.0-or-later
# zsh complete.zsh LINE: prints what an interactive zsh makes of the line after a tab.
zmodload zsh/zpty
zpty shell 'TERM=dumb zsh -f -i'
zpty -w shell 'autoload -Uz compinit; compinit -u -D; show() { print -r -- "<$BUFFER>" }; zle -N show; bindkey "^X" show'
zpty -w shell 'RPS1= PS1="READ""Y "'
zpty -r -m shell seen '*READY *'
zpty -w -n shell "$1"$'\t\C-x'
zpty -r -m shell seen '*<*>*'
seen=${seen##*<}
print -r -- "${seen%%>*}"
zpty -d shell
