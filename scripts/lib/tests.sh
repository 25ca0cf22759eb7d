# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# shellcheck shell=bash
#
# Sourced after steps.sh by the scripts that run tests. Tests run as an ordinary user, because the program's users are: root
# may read and write whatever the modes of files say. When root starts them, a user is made for them.

test_user=quillane-tests

is_root() {
    [[ $(id -u) -eq 0 ]]
}

# ordinarily COMMAND...: runs the command as an ordinary user, with an empty home folder when root asks.
ordinarily() {
    if ! is_root; then
        "$@"
        return
    fi
    id "$test_user" >/dev/null 2>&1 ||
        useradd --system --user-group --no-create-home --home-dir /nonexistent --shell /bin/sh "$test_user"
    local home status=0
    home=$(mktemp -d /tmp/quillane-home-XXXXXX)
    chown "$test_user:" "$home"
    env -u TMPDIR -u XDG_RUNTIME_DIR -u XDG_CONFIG_HOME -u XDG_DATA_HOME -u XDG_CACHE_HOME -u XDG_STATE_HOME \
        -u DBUS_SESSION_BUS_ADDRESS HOME="$home" USER="$test_user" LOGNAME="$test_user" \
        setpriv --reuid "$test_user" --regid "$test_user" --clear-groups -- "$@" || status=$?
    rm -rf "$home"
    return $status
}

# is_open_to_users: whether an ordinary user may read the project where it lies.
is_open_to_users() {
    ordinarily test -x "$PWD/scripts/test" -a -r "$PWD/scripts/test"
}

# run_tests PRESET [LABEL... | --without LABEL]: runs what was built with ctest: the tests that carry all the labels, or those
# that do not carry the one. When root asks, the tests with the label "privileged" run in a second round, as root.
run_tests() {
    local preset=$1 status=0 excluded='' label run=()
    shift
    if [[ $preset == tsan ]]; then
        run+=(setarch -R) # the sanitizer's shadow memory lies where the system may put the program
        export TSAN_OPTIONS="suppressions=$PWD/cmake/thread-sanitizer.txt halt_on_error=0 ${TSAN_OPTIONS:-}"
    fi
    if [[ $preset == asan && " $* " == *" desktop "* && ${1:-} != --without ]]; then
        # The desktop's libraries keep what they have to the end, and some tests preload a library of their own.
        export ASAN_OPTIONS="detect_leaks=0:verify_asan_link_order=0:${ASAN_OPTIONS:-}"
    fi
    run+=(ctest --preset "$preset" --parallel "$(cores)")
    if [[ ${1:-} == --without ]]; then
        excluded=$2
    else
        for label in "$@"; do
            run+=(-L "^$label\$")
        done
    fi

    if ! is_root || ! is_open_to_users; then
        if is_root; then
            echo "    as root, because other users may not enter $PWD"
        fi
        "${run[@]}" --no-tests=error ${excluded:+--label-exclude "^$excluded\$"}
        return
    fi

    # What tests write, below the build folder.
    local written=(build/"$preset"/{Testing,failures,screenshots,tour})
    mkdir -p "${written[@]}"
    chown -R "$test_user:" "${written[@]}"
    ordinarily "${run[@]}" --no-tests=error --label-exclude "^(privileged${excluded:+|$excluded})\$" || status=$?
    run+=(-L '^privileged$' ${excluded:+--label-exclude "^$excluded\$"})
    if [[ $("${run[@]}" -N) =~ Test\ +# ]]; then
        echo "==> Running the tests that need root"
        "${run[@]}" || status=$?
    fi
    return $status
}

# failed_tests LOG: the tests that failed in what ctest printed, and those that had not ended when its output did, one name
# a line. A run that is cut off prints no summary, so the line of each test counts.
failed_tests() {
    awk '
        /^ *Start +[0-9]+: / {
            name = $0
            sub(/^ *Start +[0-9]+: /, "", name)
            running[name] = 1
        }
        /^ *[0-9]+\/[0-9]+ Test +#[0-9]+: / {
            name = $0
            sub(/^ *[0-9]+\/[0-9]+ Test +#[0-9]+: /, "", name)
            result = name
            sub(/ \.*( +Passed|\*\*\*).*$/, "", name)
            delete running[name]
            if (result ~ /\*\*\*/ && result !~ /\*\*\*(Skipped|Not Run \(Disabled\))/)
                print name
        }
        END {
            for (name in running)
                print name " (had not ended)"
        }' "$1"
}
