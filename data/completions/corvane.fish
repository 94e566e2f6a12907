# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of corvane in fish. It asks no device: the names of files on one are not known here.

set -l verbs scan info ls get put emboss rm grade chat board batch encode decode pinyin

complete -c corvane -f
complete -c corvane -l simulate -d 'Use the simulated device'
complete -c corvane -l device -x -d 'Serial number or name of the device'
complete -c corvane -l timeout -x -d 'Seconds to look for a device'
complete -c corvane -l json -d 'Print JSON'
complete -c corvane -s v -l verbose -d 'Write the log of the link to standard error'
complete -c corvane -s h -l help -d 'Show help'
complete -c corvane -l version -d 'Show the version'

set -l none "not __fish_seen_subcommand_from $verbs"
complete -c corvane -n $none -a scan -d 'List the devices in reach'
complete -c corvane -n $none -a info -d 'Show what the device says of itself'
complete -c corvane -n $none -a ls -d 'List the files on the device'
complete -c corvane -n $none -a get -d 'Fetch a file from the device'
complete -c corvane -n $none -a put -d 'Store a text on the device'
complete -c corvane -n $none -a emboss -d 'Emboss a text'
complete -c corvane -n $none -a rm -d 'Delete a file on the device'
complete -c corvane -n $none -a grade -d 'Set the braille grade'
complete -c corvane -n $none -a chat -d 'Exchange lines with the person at the device'
complete -c corvane -n $none -a board -d 'Share the whiteboard'
complete -c corvane -n $none -a batch -d 'Run commands over one connection'
complete -c corvane -n $none -a encode -d 'Turn UTF-8 into the bytes of a device'
complete -c corvane -n $none -a decode -d 'Turn the bytes of a device into UTF-8'
complete -c corvane -n $none -a pinyin -d 'Turn Hanzi into what chat sends'

complete -c corvane -n '__fish_seen_subcommand_from put emboss batch' -F
complete -c corvane -n '__fish_seen_subcommand_from grade' -a '1 2'
complete -c corvane -n '__fish_seen_subcommand_from get' -l back-translate -d 'Have the device turn braille into print'
complete -c corvane -n '__fish_seen_subcommand_from get' -s o -l output -r -F -d 'Write to a file'
complete -c corvane -n '__fish_seen_subcommand_from put' -l as -x -d 'Name on the device'
complete -c corvane -n '__fish_seen_subcommand_from put emboss' -l translate -d 'Have the device turn print into braille'
complete -c corvane -n '__fish_seen_subcommand_from get put emboss' -l force -d 'Replace what is there'
complete -c corvane -n '__fish_seen_subcommand_from encode decode' -l language -x -a '(seq 0 27)' -d 'Language of the device'
complete -c corvane -n '__fish_seen_subcommand_from pinyin' -l to-marks -d 'Turn tone symbols into marks'
