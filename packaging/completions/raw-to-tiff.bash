# Completion of raw-to-tiff for bash.

_raw_to_tiff() {
    local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]}
    if [ "$word" = = ]; then # bash takes --existing=skip apart
        word=
    elif [ "$option" = = ]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $option in
    --existing)
        mapfile -t COMPREPLY < <(compgen -W 'error skip overwrite newer' -- "$word")
        return
        ;;
    --compression)
        mapfile -t COMPREPLY < <(compgen -W 'none deflate lzw zstd' -- "$word")
        return
        ;;
    -d | --directory)
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        return
        ;;
    -o | --output)
        mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.[tT][iI][fF]*' -- "$word")
        return
        ;;
    --files-from | --log | --report | --resume)
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
        ;;
    -j | --jobs | --timeout | --memory-limit)
        COMPREPLY=()
        return
        ;;
    esac
    case $word in
    -*)
        mapfile -t COMPREPLY < <(compgen -W '--compression --directory --existing --files-from --help --info --jobs --json
            --log --memory-limit --null --output --preserve-times --quiet --recursive --report --resume --timeout
            --verbose --version -0 -d -h -j -o -q -r -v' -- "$word")
        ;;
    *) mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.[cC][rR][2wW]' -- "$word") ;;
    esac
}

complete -o filenames -F _raw_to_tiff raw-to-tiff
