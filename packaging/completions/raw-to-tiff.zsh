#compdef raw-to-tiff
# Completion of raw-to-tiff for zsh.

_arguments -s -S \
    '(- *)'{-h,--help}'[list the options]' \
    '(- *)--version[tell the version]' \
    '(-r --recursive)'{-r,--recursive}'[take folders, and the folders in them]' \
    '--files-from=[read more names from a file, - for standard input]:list:_files' \
    '(-0 --null)'{-0,--null}'[the names of the list end in zero bytes]' \
    '(-o --output -d --directory)'{-o+,--output=}'[the TIFF to write, for a single raw file]:TIFF:_files -g "*.(#i)(tif|tiff)(-.)"' \
    '(-d --directory -o --output)'{-d+,--directory=}'[write into this folder]:folder:_directories' \
    '--existing=[what to do where the TIFF exists]:choice:(error skip overwrite newer)' \
    '--compression=[how the pixels are stored]:choice:(none deflate lzw zstd)' \
    '--preserve-times[give each TIFF the modification time of its raw file]' \
    '(-j --jobs)'{-j+,--jobs=}'[worker processes]:number' \
    '--timeout=[give up on a file after this long]:seconds' \
    '--memory-limit=[fail a file that takes more address space]:size' \
    '(-q --quiet -v --verbose)'{-q,--quiet}'[report failures only]' \
    '(-q --quiet -v --verbose)'{-v,--verbose}'[report every file]' \
    '--info[tell what is known of each file, and convert nothing]' \
    '--json[write a JSON object for each file]' \
    '--log=[append the JSON objects to a file]:log:_files' \
    '--report=[write a page about all files]:page:_files -g "*.html(-.)"' \
    '--resume=[do what an earlier run with this log left undone]:log:_files' \
    '*:raw file or folder:_files -g "*.(#i)(cr2|crw)(-.)"'
