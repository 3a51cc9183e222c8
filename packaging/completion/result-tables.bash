# shellcheck shell=bash
# Completion of result-tables in bash. The program itself knows what can stand at the cursor.
_result_tables() {
  local answer
  mapfile -t answer < <("${1/#~\//$HOME/}" __complete bash "${COMP_LINE:0:COMP_POINT}" "${COMP_LINE:COMP_POINT}" \
    "$COMP_WORDBREAKS" 2>/dev/null)
  COMPREPLY=("${answer[@]:1}")
  # Files are quoted, and folders entered, by bash.
  [ "${answer[0]:-}" != files ] || compopt -o default
}
complete -o nosort -F _result_tables result-tables
