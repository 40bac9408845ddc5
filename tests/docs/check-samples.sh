#!/usr/bin/env bash
# Holds the samples, the tag catalogue and the grammar of the day file against independent readers: xmllint and
# Python's plistlib, and jing as a second opinion on the grammar where it is installed.
set -u

root=$(cd "$(dirname "$0")/../.." && pwd)
grammar=docs/day-file.rng
failures=0
output=$(mktemp) || exit 2
trap 'rm -f "$output"' EXIT
cd "$root" || exit 2

fail() {
  printf 'FAILED: %s\n' "$1"
  sed 's/^/    /' "$output"
  failures=$((failures + 1))
}

# check WHAT EXPECTED-STATUS COMMAND…
check() {
  local what=$1 expected=$2 status
  shift 2
  "$@" >"$output" 2>&1
  status=$?
  if [ "$status" -ne "$expected" ]; then
    fail "$what: status $status instead of $expected from $*"
  fi
}

for tool in xmllint python3; do
  if ! command -v "$tool" >/dev/null; then
    echo "$tool is missing; on Debian it comes with libxml2-utils or python3"
    exit 2
  fi
done

for file in samples/guide.xml samples/guide-gap.xml; do
  check "$file is well-formed" 0 xmllint --nonet --noout "$file"
done
check "samples and catalogue fit together" 0 python3 tests/docs/check_samples.py

# xmllint ends with 3 when, and only when, a well-formed document does not follow a grammar that it could read; a
# bad day file that fails for another reason would show nothing about the grammar.
good=0
for file in tests/docs/day-files/good/*.xml; do
  check "$file follows the grammar" 0 xmllint --nonet --noout --relaxng "$grammar" "$file"
  good=$((good + 1))
done
bad=0
for file in tests/docs/day-files/bad/*.xml; do
  check "$file breaks the grammar" 3 xmllint --nonet --noout --relaxng "$grammar" "$file"
  bad=$((bad + 1))
done
if [ "$good" -lt 10 ] || [ "$bad" -lt 40 ]; then
  : >"$output"
  fail "only $good good and $bad bad day files were found"
fi

if command -v jing >/dev/null; then
  check "the good day files follow the grammar (jing)" 0 jing "$grammar" tests/docs/day-files/good/*.xml
  check "the bad day files break the grammar (jing)" 1 jing "$grammar" tests/docs/day-files/bad/*.xml
  complaints=$(cat "$output")
  : >"$output"
  for file in tests/docs/day-files/bad/*.xml; do
    case $complaints in
      *"/$file:"*) ;;
      *) fail "$file: jing found nothing wrong with it" ;;
    esac
  done
else
  echo "jing is not installed: the grammar was checked with xmllint alone"
fi

if [ "$failures" -gt 0 ]; then
  echo "$failures failed"
  exit 1
fi
echo "samples and grammar are in order ($good good and $bad bad day files)"
