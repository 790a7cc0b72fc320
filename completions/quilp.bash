# Completion of quilp's commands for bash. The program itself tells what a word may become.
# shellcheck shell=bash

_quilp() {
  local i line words=()
  for ((i = 1; i <= COMP_CWORD; i++)); do
    # Readline may have cut --name=value into three words.
    if [[ ${COMP_WORDS[i]} != '=' ]]; then
      words+=("${COMP_WORDS[i]}")
    elif [[ $i == "$COMP_CWORD" ]]; then
      words+=('')
    fi
  done
  COMPREPLY=()
  while IFS= read -r line; do
    if [[ $line == ':' ]]; then
      compopt -o default
    else
      COMPREPLY+=("${line%%$'\t'*}")
    fi
  done < <("${1/#\~/$HOME}" --complete "${words[@]}" 2>/dev/null)
} && complete -F _quilp quilp
