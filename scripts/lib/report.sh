# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# shellcheck shell=bash
#
# Sourced after steps.sh and tests.sh by the scripts that run many checks: goes on after one that failed, counts them, and
# names at the end what failed or was skipped.

passed=0
failed=0
skipped=()
failures=()
failed_names=()
started=$SECONDS

# tests NAME COMMAND...: a step whose command runs ctest, once or more; its tests are counted.
tests() {
    local name=$1 status=0 log summary counted=0 broken=0 before=${#skipped[@]}
    log=$(mktemp)
    step "$@" 2>&1 | tee "$log" || status=1
    while read -r summary; do
        [[ $summary =~ ([0-9]+)\ tests?\ failed\ out\ of\ ([0-9]+) ]]
        broken=$((broken + BASH_REMATCH[1]))
        counted=$((counted + BASH_REMATCH[2]))
    done < <(grep -oE '[0-9]+ tests? failed out of [0-9]+' "$log")
    mapfile -t -O "${#skipped[@]}" skipped < <(sed -nE 's/^.* Test +#[0-9]+: ([^ ]+) .*\*\*\*Skipped.*$/\1/p' "$log")
    mapfile -t -O "${#failed_names[@]}" failed_names < <(failed_tests "$log")
    rm -f "$log"
    if ((counted == 0 || (status != 0 && broken == 0))); then # it did not come to its tests, or not to their end
        broken=$((broken + 1))
        counted=$((counted + 1))
        status=1
    fi
    failed=$((failed + broken))
    passed=$((passed + counted - broken - (${#skipped[@]} - before)))
    ((status == 0)) || failures+=("$name")
}

# check NAME COMMAND...: a step that counts as one.
check() {
    if step "$@"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        failures+=("$1")
    fi
}

# summary: the last lines. Fails when anything has.
summary() {
    local name
    # shellcheck disable=SC2034 # read by took
    step_start=$started
    took "Everything"
    for name in "${failures[@]}"; do
        echo "FAILED: $name"
    done
    for name in "${failed_names[@]}"; do
        echo "FAILED TEST: $name"
    done
    for name in "${skipped[@]}"; do
        echo "SKIPPED: $name"
    done
    echo "$passed passed, $failed failed, ${#skipped[@]} skipped"
    ((failed == 0))
}
