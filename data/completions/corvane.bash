# SPDX-License-Identifier: GPL-3.0-or-later
# Completes the command line of corvane in bash. It asks no device: the names of files on one are not known here.

_corvane()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # bash makes a word of the "=" in --option=value.
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $previous == --simulate ]]; then
        previous=
    fi

    local verb='' operand='' word ended='' i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ -z $ended && $word == -- ]]; then
            ended=yes
        elif [[ $word == = ]]; then
            ((++i))
        elif [[ -z $ended && $word == @(--device|--timeout|--output|-o|--as|--language) ]]; then
            [[ ${COMP_WORDS[i + 1]-} == = ]] || ((++i))
        elif [[ -n $ended || $word != -?* ]]; then
            if [[ -z $verb ]]; then
                verb=$word
            else
                operand=$word
            fi
        fi
    done

    local words='' files=''
    case $previous in
    --simulate | --output | -o) files=yes ;;
    --language) words='0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27' ;;
    --device | --timeout | --as) return ;;
    *)
        if [[ -z $ended && $current == -?* ]]; then
            words='--simulate --simulate= --device --timeout --json --verbose -v --help -h --version'
            case $verb in
            get) words+=' --back-translate --output -o --force' ;;
            put) words+=' --as --translate --force' ;;
            emboss) words+=' --translate --force' ;;
            encode | decode) words+=' --language' ;;
            pinyin) words+=' --to-marks' ;;
            esac
        elif [[ -z $verb ]]; then
            words='scan info ls get put emboss rm grade chat board batch encode decode pinyin'
        elif [[ -z $operand ]]; then
            case $verb in
            grade) words='1 2' ;;
            put | emboss | batch) files=yes ;;
            esac
        fi
        ;;
    esac

    if [[ -n $files ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
        [[ ${COMPREPLY[*]} != *= ]] || compopt -o nospace 2>/dev/null
    fi
}
complete -F _corvane corvane
