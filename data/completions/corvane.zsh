#compdef corvane
# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of corvane in zsh. It asks no device: the names of files on one are not known here.

_corvane_commands() {
    local -a commands=(
        'scan:list the devices in reach'
        'info:show what the device says of itself'
        'ls:list the files on the device'
        'get:fetch a file from the device'
        'put:store a text on the device'
        'emboss:emboss a text'
        'rm:delete a file on the device'
        'grade:set the braille grade'
        'chat:exchange lines with the person at the device'
        'board:share the whiteboard'
        'batch:run commands over one connection'
        'encode:turn UTF-8 into the bytes of a device'
        'decode:turn the bytes of a device into UTF-8'
        'pinyin:turn Hanzi into what chat sends'
    )
    _describe -t commands command commands
}

_corvane_operand() {
    case $line[1] in
    get)
        _arguments -S $globals '--back-translate[have the device turn braille into print]' \
            '(-o --output)'{-o,--output=}'[write to a file]:file:_files' \
            '--force[replace the file if it is there already]' ':name on the device:()'
        ;;
    put)
        _arguments -S $globals '--as=[name on the device]:name:' \
            '--translate[have the device turn print into braille]' \
            '--force[replace a file of that name]' ':text:_files'
        ;;
    emboss)
        _arguments -S $globals '--translate[have the device turn print into braille]' \
            '--force[send a text with an opening brace]' ':text:_files'
        ;;
    rm) _arguments -S $globals ':name on the device:()' ;;
    grade) _arguments -S $globals ':grade:(1 2)' ;;
    batch) _arguments -S $globals ':file with commands:_files' ;;
    encode | decode) _arguments -S $globals '--language=[language of the device]:number:({0..27})' ;;
    pinyin) _arguments -S $globals '--to-marks[turn tone symbols into marks]' ;;
    *) _arguments -S $globals ;;
    esac
}

_corvane() {
    local curcontext=$curcontext state line
    typeset -A opt_args
    local -a globals=(
        '--simulate=-[use the simulated device]::profile:_files -g "*.json(-.)"'
        '--device=[which device]:serial number or name:'
        '--timeout=[how long to look for a device]:seconds:'
        '--json[print JSON]'
        '(-v --verbose)'{-v,--verbose}'[write the log of the link to standard error]'
        '(-h --help)'{-h,--help}'[show help]'
        '--version[show the version]'
    )
    _arguments -C -S $globals '1:command:_corvane_commands' '*::operand:->operand'
    [[ $state != operand ]] || _corvane_operand
}

_corvane "$@"
