# shellcheck shell=bash
# Completion of tiffgen's glued options, and of the programs around it, for bash.

_velmorant_files() { # WORD
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
    compopt -o filenames 2>/dev/null
}

# Files whose names go on from what stands behind an option's letter. Such a word is no file name to bash,
# so the quoting, and the "/" after a folder, are done here.
_velmorant_glued() { # LETTERS NAME
    local file name=$2 quote='' ending
    case $name in
    [\'\"]*)
        quote=${name:0:1}
        name=${name//"$quote"/}
        ;;
    *) name=${name//\\/} ;;
    esac
    # The shell expands a "~" in front of a word only.
    [ "$quote${name:0:1}" != '~' ] || name=$HOME${name:1}
    COMPREPLY=()
    while IFS= read -r file; do
        ending=' '
        if [ -d "$file" ]; then
            ending=/
        elif [ -n "$quote" ]; then
            ending='' # bash itself closes the quote
        fi
        [ -n "$quote" ] || printf -v file %q "$file"
        COMPREPLY+=("$1$quote$file$ending")
    done < <(compgen -f -- "$name")
    compopt -o nospace 2>/dev/null
}

# The arguments of the program itself: three, then options.
_velmorant_arguments() { # WORD
    case $1 in
    -[chp]*) _velmorant_glued "${1:0:2}" "${1:2}" ;;
    -s* | -g*) mapfile -t COMPREPLY < <(compgen -W "${1:0:2}0 ${1:0:2}1" -- "$1") ;;
    -) mapfile -t COMPREPLY < <(compgen -W '-f -b -x -y -X -c -m -s -g -h -p' -- "$1")
        compopt -o nospace 2>/dev/null ;;
    -*) COMPREPLY=() ;;
    *) _velmorant_files "$1" ;;
    esac
}

_velmorant_formats() { # WORD [MORE]
    mapfile -t COMPREPLY < <(compgen -W "CTI6 SHORTINT2B SHORTINT2L FLOATB FLOATL ${2-}" -- "$1")
}

# An installation may be moved: its palettes are found from this file.
_velmorant_palettes_folder=$(CDPATH='' cd -- "${BASH_SOURCE[0]%/*}/../../velmorant/palettes" 2>/dev/null && pwd)

_velmorant_palettes() { # WORD
    local file names=()
    for file in "${_velmorant_palettes_folder:-/nowhere}"/*.plt; do
        file=${file##*/}
        names+=("${file%.plt}")
    done
    _velmorant_files "$1"
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
    local nifti='' nifti_options='' program
    program=$(type -P -- "${COMP_WORDS[0]}")
    if [ -x "${program%/*}/nifti-to-raw" ]; then
        nifti=NIFTI
        nifti_options='--form --orientation'
    fi
    case $before:$word in
    --format:*) _velmorant_formats "$word" "$nifti" ;;
    --palette:*) _velmorant_palettes "$word" ;;
    --form:*) mapfile -t COMPREPLY < <(compgen -W 'sform qform' -- "$word") ;;
    *:--*) mapfile -t COMPREPLY < <(compgen -W "--format --palette --check-study $nifti_options
            --help --version" -- "$word") ;;
    *) _velmorant_arguments "$word" ;;
    esac
}

_tiffgen_check() {
    local word=${COMP_WORDS[COMP_CWORD]}
    case $COMP_CWORD:${COMP_WORDS[1]} in
    1:*) mapfile -t COMPREPLY < <(compgen -W 'picture study --help --version' -- "$word") ;;
    2:study) _velmorant_formats "$word" ;;
    2:picture | 3:study) _velmorant_files "$word" ;;
    *) COMPREPLY=() ;;
    esac
}

_nifti_to_raw() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    if [ "$before" = = ]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    elif [ "$word" = = ]; then
        word=
    fi
    case $before:$word in
    --form:*) mapfile -t COMPREPLY < <(compgen -W 'sform qform' -- "$word") ;;
    --orientation:*) COMPREPLY=() ;;
    *:--*) mapfile -t COMPREPLY < <(compgen -W '--form --orientation --help --version' -- "$word") ;;
    *) _velmorant_files "$word" ;;
    esac
}

complete -F _tiffgen tiffgen
complete -F _tiffgen_run tiffgen-run
complete -F _tiffgen_check tiffgen-check
complete -F _nifti_to_raw nifti-to-raw
