# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# shellcheck shell=bash
#
# Sourced by the other scripts: goes to the project's root, and says what is done and how long it took.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# Homebrew keeps some libraries out of the way, because macOS has older ones of the same name.
if [[ $(uname -s) == Darwin ]] && command -v brew >/dev/null; then
    homebrew=$(brew --prefix)
    for name in icu4c openssl@3; do
        export CMAKE_PREFIX_PATH=$homebrew/opt/$name${CMAKE_PREFIX_PATH:+:$CMAKE_PREFIX_PATH}
        export PKG_CONFIG_PATH=$homebrew/opt/$name/lib/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}
    done
    export PATH=$homebrew/opt/llvm@14/bin:$PATH # clang-format and clang-tidy 14, as on Debian 12
fi

cores() {
    getconf _NPROCESSORS_ONLN
}

# took TEXT: says how long it is since $step_start, a value of $SECONDS.
took() {
    local seconds=$((SECONDS - step_start))
    if ((seconds >= 60)); then
        echo "    $1 took $((seconds / 60)) min $((seconds % 60)) s"
    else
        echo "    $1 took $seconds s"
    fi
}

# step NAME COMMAND...: runs the command between a line that names it and one that says how long it took. A function ends with
# the first command in it that fails, as a script does; it runs in a shell of its own, because errexit is off for whatever
# stands before "||".
step() {
    local name=$1 status step_start=$SECONDS
    shift
    echo "==> $name"
    set +e
    (
        set -e
        "$@"
    )
    status=$?
    set -e
    took "$name"
    return $status
}

# build PRESET TARGET...: configures and builds.
build() {
    local preset=$1
    shift
    # What configuring prints matters only when it fails.
    local log
    log=$(mktemp)
    if ! cmake --preset "$preset" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
    cmake --build --preset "$preset" --parallel "$(cores)" --target "${@:-all}"
}

# sources EXTENSION...: the project's own files with these extensions.
sources() {
    local patterns=()
    for extension in "$@"; do
        patterns+=(-o -name "*.$extension")
    done
    find src tests bench fuzz -type f \( "${patterns[@]:1}" \) 2>/dev/null | LC_ALL=C sort
}
