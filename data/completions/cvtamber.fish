# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of cvtamber in fish.

complete -c cvtamber -l simulate -d 'Use the simulated device'
complete -c cvtamber -l settings -d 'Show where the documents are kept'
complete -c cvtamber -l verbose -d 'Write the log to standard error'
complete -c cvtamber -s h -l help -d 'Show help'
complete -c cvtamber -l version -d 'Show the version'
