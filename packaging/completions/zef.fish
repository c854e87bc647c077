# SPDX-License-Identifier: MIT
# fish completion for zef(1)

complete -c zef -f
complete -c zef -s h -l help -d 'Print the options'
complete -c zef -n __fish_use_subcommand -l version -d 'Print the version'

complete -c zef -n __fish_use_subcommand -a watch -d 'Print what happens in folders'
complete -c zef -n __fish_use_subcommand -a find -d 'Print files and everything beneath them'
complete -c zef -n __fish_use_subcommand -a list -d 'Print the contents of a folder'
complete -c zef -n __fish_use_subcommand -a info -d 'Print what is known of files'
complete -c zef -n __fish_use_subcommand -a archive -d 'Print references that find files again'
complete -c zef -n __fish_use_subcommand -a resolve -d 'Print where archived files are now'
complete -c zef -n __fish_use_subcommand -a trash -d 'Move files to the trash'
complete -c zef -n __fish_use_subcommand -a serve -d 'Answer JSON-RPC requests'

set -l with_plain watch find list info archive resolve serve
set -l with_json watch find list info resolve
complete -c zef -n "__fish_seen_subcommand_from $with_plain" -l plain -d 'Use plain file items'
complete -c zef -n "__fish_seen_subcommand_from $with_json" -l json -d 'Print one JSON object a line'

complete -c zef -n '__fish_seen_subcommand_from watch' -l interval -x -d 'Seconds between two checks'
complete -c zef -n '__fish_seen_subcommand_from watch' -l async -d 'Load in the background'
complete -c zef -n '__fish_seen_subcommand_from find' -l depth -x -d 'Levels to look into'
complete -c zef -n '__fish_seen_subcommand_from find' -l visible -d 'Leave out what is hidden'
complete -c zef -n '__fish_seen_subcommand_from find' -l normal \
    -d 'Look into no package and no hidden folder'

complete -c zef -n '__fish_seen_subcommand_from watch list' -a '(__fish_complete_directories)'
complete -c zef -n '__fish_seen_subcommand_from find info archive trash' -F
