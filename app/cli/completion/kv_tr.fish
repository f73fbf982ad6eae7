# Completion of kv_tr for fish: the program itself knows what may follow; files where it is silent.
function __kv_tr_candidates
    set -l words (commandline -opc)
    set -l last (commandline -ct)
    set -l found (command $words[1] __complete $words[2..-1] "$last" 2>/dev/null)
    if test (count $found) -gt 0
        printf '%s\n' $found
    else
        __fish_complete_path "$last"
    end
end
complete --command kv_tr --no-files --arguments '(__kv_tr_candidates)'
