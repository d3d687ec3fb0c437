# Completion of tiffgen's glued options, and of its companions, for bash.

# Files whose names go on from what stands behind an option's letter.
_velmorant_glued() { # LETTERS WORD
    local file
    COMPREPLY=()
    while IFS= read -r file; do
        COMPREPLY+=("$1$file")
    done < <(compgen -f -- "$2")
    compopt -o filenames 2>/dev/null
}

# The arguments of the program itself: three, then options.
_velmorant_arguments() { # WORD
    case $1 in
    -[chp]*) _velmorant_glued "${1:0:2}" "${1:2}" ;;
    -s* | -g*) mapfile -t COMPREPLY < <(compgen -W "${1:0:2}0 ${1:0:2}1" -- "$1") ;;
    -) mapfile -t COMPREPLY < <(compgen -W '-f -b -x -y -X -c -m -s -g -h -p' -- "$1")
        compopt -o nospace 2>/dev/null ;;
    -*) COMPREPLY=() ;;
    *) _velmorant_glued '' "$1" ;;
    esac
}

_velmorant_formats() { # WORD
    mapfile -t COMPREPLY < <(compgen -W 'CTI6 SHORTINT2B SHORTINT2L FLOATB FLOATL' -- "$1")
}

_velmorant_palettes() { # WORD
    local program folder names=()
    program=$(type -P tiffgen-run)
    for folder in "${program%/bin/*}"/share/velmorant/palettes/*.plt; do
        folder=${folder##*/}
        names+=("${folder%.plt}")
    done
    _velmorant_glued '' "$1"
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "${names[*]}" -- "$1")
}

_tiffgen() {
    _velmorant_arguments "${COMP_WORDS[COMP_CWORD]}"
}

_tiffgen_run() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    if [ "$before" = = ]; then # bash splits --format=KEYWORD into three words
        before=${COMP_WORDS[COMP_CWORD - 2]}
    elif [ "$word" = = ]; then
        word=
    fi
    case $before:$word in
    --format:*) _velmorant_formats "$word" ;;
    --palette:*) _velmorant_palettes "$word" ;;
    *:--*) mapfile -t COMPREPLY < <(compgen -W '--format --palette --help --version' -- "$word") ;;
    *) _velmorant_arguments "$word" ;;
    esac
}

_tiffgen_check() {
    local word=${COMP_WORDS[COMP_CWORD]}
    case $COMP_CWORD:${COMP_WORDS[1]} in
    1:*) mapfile -t COMPREPLY < <(compgen -W 'picture study --help --version' -- "$word") ;;
    2:study) _velmorant_formats "$word" ;;
    2:picture | 3:study) _velmorant_glued '' "$word" ;;
    *) COMPREPLY=() ;;
    esac
}

complete -F _tiffgen tiffgen
complete -F _tiffgen_run tiffgen-run
complete -F _tiffgen_check tiffgen-check
