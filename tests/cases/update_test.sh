#!/bin/bash
# Checks that outcomes are written into case files as they stood there: those that were made wrong
# come back byte for byte, and where items are lost or too many, comments stay.
# Usage: update_test.sh CASE_TESTS CASE_FILE...
set -euo pipefail
export LC_ALL=C.UTF-8
case_tests=$(realpath "$1")
shift
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# update NAME PROGRAM FILE...: copies the case files to a folder, with what an awk program makes of
# each line of an outcome, and updates the copies.
update() {
  local file
  mkdir "$folder/$1" "$folder/$1.before"
  for file in "${@:3}"; do
    awk "/^----/ { inOutcome = 1; print; next }
         /^# / { inOutcome = 0 }
         inOutcome && !/^(##|\$)/ { $2 }
         { print }" "$file" >"$folder/$1.before/${file##*/}"
  done
  cp "$folder/$1.before"/* "$folder/$1"
  "$case_tests" --gtest_brief=1 --update "$folder/$1"/* >"$folder/$1.out" || {
    grep -m1 -A9 ': Failure$' "$folder/$1.out"
    exit 1
  }
}

update right '' "$@"  # a case may fail at the moment
update wrong '$0 = "wrong " $0' "$@"
diff -r "$folder/right" "$folder/wrong"
grep -q wrong "$folder/wrong.out"  # what stood there is shown

update lost 'if (!sub(/; [^;]*$/, "")) $0 = $0 "; one\n## comment\ntwo; three"' "$@"
"$case_tests" --gtest_brief=1 "$folder"/lost/*
diff <(grep -h '^##' "$folder"/lost.before/*) <(grep -h '^##' "$folder"/lost/*)
