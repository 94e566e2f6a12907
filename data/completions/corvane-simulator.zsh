#compdef corvane-simulator
# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of corvane-simulator in zsh.

_arguments \
    '--profile=[the devices, as JSON]:file:_files -g "*.json(-.)"' \
    '(--session --system)--bus=[the bus]:address:' \
    '(--bus --system)--session[the session bus]' \
    '(--bus --session)--system[the system bus]' \
    '--yes-really-system[take the name also on the real system bus]' \
    '(--no-state)--state=[where devices keep what is stored on them]:folder:_files -/' \
    '(--state)--no-state[keep nothing after the end]' \
    '--fast[no delays]' \
    '--print-address[print the address of the bus]' \
    '(-v --verbose)'{-v,--verbose}'[log what clients call]' \
    '(-h --help)'{-h,--help}'[show help]' \
    '--version[show the version]'
