# Completion of bkdoc's command line for fish. Verbs and options are the tool's own: they are read from its help.

function __bkdoc_verbs
    bkdoc --help 2>/dev/null | string match -r '^  [a-z]+ .*' | string replace -r '^  ([a-z]+) +(.*)' '$1\t$2'
end

function __bkdoc_options
    set -l words (commandline -opc)
    bkdoc $words[2..2] --help 2>/dev/null | string match -r '^  -.*' |
        string replace -r '^  (?:-[a-zA-Z],)?(-[^ ]*) ?(?:[A-Z]+ )?(?:\.\.\.)? *(.*)' '$1\t$2'
end

complete -c bkdoc -n '__fish_is_first_token' -f -a '(__bkdoc_verbs)'
complete -c bkdoc -n 'string match -q -- "-*" (commandline -ct)' -a '(__bkdoc_options)'
complete -c bkdoc -l to -x -a 'text binary cipher archive'
complete -c bkdoc -l key-file -r
complete -c bkdoc -l key -x
complete -c bkdoc -l depth -x
complete -c bkdoc -s I -x -a '(__fish_complete_directories)'
