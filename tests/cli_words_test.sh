#!/usr/bin/env bash
# Each option that kelvo-cli has stands in both man pages, and behind its command in the completion.
#
#   cli_words_test.sh KELVO_CLI PACKAGING
set -euo pipefail
cli=$1
packaging=$2
# shellcheck source=/dev/null
source "$packaging/completions/kelvo-cli"

status=0
missing() { echo "$1" && status=1; }

offered() {
  COMP_WORDS=(kelvo-cli "$1" --)
  COMP_CWORD=2
  COMPREPLY=()
  _kelvo_cli
  printf '%s\n' "${COMPREPLY[@]}" | sort -u
}

verbs=$("$cli" --help | sed -n '/^Befehle:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ "$(wc -w <<<"$verbs")" -ge 8 ]
for verb in $verbs; do
  options=$("$cli" "$verb" --help | grep -oE '^ +(-h,)?--[a-z-]+' | grep -oE -- '--[a-z-]+' | sort -u)
  [ "$options" = "$(offered "$verb")" ] || missing "completion of $verb: $(offered "$verb" | xargs)"
  for page in kelvo-cli.1 kelvo-cli.de.1; do
    text=$(sed 's/\\-/-/g' "$packaging/man/$page")
    for option in $options; do
      grep -qF -- "$option" <<<"$text" || missing "$page: $option"
    done
    grep -q "^\.BR\? $verb" <<<"$text" || missing "$page: $verb"
  done
done
exit "$status"
