# Completion of urdimbre for bash. It asks the program itself, so it knows what the installed one knows.

# Everything that may follow: verbs, options, and of an option with a choice, its values.
_urdimbre() {
  local program=${COMP_WORDS[0]} current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local verb=() help below word words
  help=$("$program" --help 2>/dev/null) || return
  local common=$help
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    below=$(_urdimbre_verbs <<<"$help")
    [ -n "$below" ] || break
    if grep -qxF -e "$word" <<<"$below"; then
      verb+=("$word")
      help=$("$program" "${verb[@]}" --help 2>/dev/null) || return
    fi
  done

  words=$(_urdimbre_choice "$previous" <<<"$help")
  if [ -z "$words" ]; then
    case $current in
      -*) words=$(printf '%s\n' "$help" "$common" | _urdimbre_options) ;;
      *) words=$(_urdimbre_verbs <<<"$help") ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

_urdimbre_verbs() {
  awk '/^Subcommands:/ {on = 1; next} on && NF {for (i = 1; sub(/,$/, "", $i); ++i) print $i; print $i}'  # "colour, color"
}

_urdimbre_options() {
  awk '/^  -/ {n = split($1, names, ","); for (i = 1; i <= n; ++i) print names[i]}' | sort -u
}

_urdimbre_choice() {
  awk -v option="$1" '/^  -/ && index("," $1 ",", "," option ",") && match($0, /:\{[^}]*/) {
    choice = substr($0, RSTART + 2, RLENGTH - 2); gsub(/,/, " ", choice); print choice}'
}

# Where nothing of ours fits, names of files.
complete -o default -F _urdimbre urdimbre
