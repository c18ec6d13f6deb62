# Completion of norva for bash. Commands and options are asked of the program, so none is missing here.
_norva() {
  local current=${COMP_WORDS[COMP_CWORD]} command=
  [ "$COMP_CWORD" -gt 1 ] && command=${COMP_WORDS[1]}
  if [ -z "$command" ]; then
    COMPREPLY=($(compgen -W "$(norva --help 2>/dev/null | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z]*\) .*/\1/p')" \
      -- "$current"))
    return
  fi
  if [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "$(norva "$command" --help 2>/dev/null | grep -oE '^ +-[^ ]+' |
      grep -oE -- '--[a-z-]+' | sort -u)" -- "$current"))
    return
  fi
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --template) COMPREPLY=($(compgen -W "$(norva template list 2>/dev/null)" -- "$current")) ;;
    --interpolated) COMPREPLY=($(compgen -W "yes no" -- "$current")) ;;
    template) COMPREPLY=($(compgen -W "list show remove" -- "$current")) ;;
    *) compopt -o default ;;
  esac
}
complete -F _norva norva
