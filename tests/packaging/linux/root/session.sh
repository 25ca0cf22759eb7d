# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# shellcheck shell=bash
#
# Sourced by the scripts of this folder inside the root: a user with a desktop session. The folder /given/home becomes the
# user's home.

set -euo pipefail
trap 'echo "FAILED in line $LINENO: $BASH_COMMAND"; tail -n 20 /run/user/1000/*.log 2>/dev/null' ERR
set -o errtrace

said() {
    echo "ok: $*"
}

# eventually COMMAND...: waits until the command succeeds.
eventually() {
    local deadline=$((SECONDS + 60))
    until "$@" >/dev/null 2>&1; do
        if ((SECONDS >= deadline)); then
            echo "never succeeded: $*"
            return 1
        fi
        sleep 0.1
    done
}

# user COMMAND...: runs the command in the user's session.
user() {
    setpriv --reuid=1000 --regid=1000 --clear-groups -- env -i --chdir=/home/user HOME=/home/user USER=user LOGNAME=user \
        PATH=/usr/bin:/bin LANG=C.UTF-8 XDG_RUNTIME_DIR=/run/user/1000 DISPLAY=:7 \
        DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/1000/bus "$@"
}

start_session() {
    echo 'user:x:1000:1000::/home/user:/bin/bash' >>/etc/passwd
    echo 'user:x:1000:' >>/etc/group
    mkdir -p /home /run/user/1000 /tmp/.X11-unix
    chmod 1777 /tmp /tmp/.X11-unix
    cp -R /given/home /home/user
    chown -R 1000:1000 /home/user /run/user/1000
    chmod 700 /home/user /run/user/1000
    # Without -noreset the server would begin again, and drop whoever comes, each time its last client goes.
    user Xvfb :7 -nolisten tcp -noreset -displayfd 3 3>/run/user/1000/display >/run/user/1000/xvfb.log 2>&1 &
    user dbus-daemon --session --address=unix:path=/run/user/1000/bus --nofork --nopidfile >/run/user/1000/bus.log 2>&1 &
    eventually test -S /run/user/1000/bus
    eventually grep -qx 7 /run/user/1000/display
    printf password >/run/user/1000/password
    user sh -c 'exec gnome-keyring-daemon --foreground --unlock --components=secrets' \
        </run/user/1000/password >/run/user/1000/keyring.log 2>&1 &
    eventually owns_name org.freedesktop.secrets
}

owns_name() {
    user dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        "string:$1" | grep true
}

# start_agent COMMAND...: starts the agent and waits until it answers.
start_agent() {
    user "$@" >/run/user/1000/agent.log 2>&1 &
    agent=$!
    eventually status '"version"'
}

# status TEXT: whether the JSON of the running agent's status holds the text.
status() {
    user "${program:-quillane}" status --json | grep -F "$1" >/dev/null
}

quit_agent() {
    user "${program:-quillane}" quit
    wait "$agent"
}
