# Completion of kv_tr for bash: the program itself knows what may follow; files where it is silent.
_kv_tr() {
    local line word
    COMPREPLY=()
    while IFS= read -r line; do
        printf -v word %q "${line%%$'\t'*}"
        COMPREPLY+=("$word")
    done < <("${1/#\~/$HOME}" __complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
}
complete -o bashdefault -o default -F _kv_tr kv_tr
