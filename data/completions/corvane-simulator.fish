# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of corvane-simulator in fish.

complete -c corvane-simulator -f
complete -c corvane-simulator -l profile -r -F -d 'The devices, as JSON'
complete -c corvane-simulator -l bus -x -d 'Address of the bus'
complete -c corvane-simulator -l session -d 'The session bus'
complete -c corvane-simulator -l system -d 'The system bus'
complete -c corvane-simulator -l yes-really-system -d 'Take the name also on the real system bus'
complete -c corvane-simulator -l state -x -a '(__fish_complete_directories)' -d 'Where devices keep what is stored on them'
complete -c corvane-simulator -l no-state -d 'Keep nothing after the end'
complete -c corvane-simulator -l fast -d 'No delays'
complete -c corvane-simulator -l print-address -d 'Print the address of the bus'
complete -c corvane-simulator -s v -l verbose -d 'Log what clients call'
complete -c corvane-simulator -s h -l help -d 'Show help'
complete -c corvane-simulator -l version -d 'Show the version'
