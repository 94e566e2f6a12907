#compdef cvtamber
# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of cvtamber in zsh.

_arguments -S \
    '--simulate=-[use the simulated device]::profile:_files -g "*.json(-.)"' \
    '--settings[show where the documents are kept]' \
    '--verbose[write the log to standard error]' \
    '(-h --help)'{-h,--help}'[show help]' \
    '--version[show the version]' \
    '*:text:_files'
