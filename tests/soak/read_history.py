#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
"""Reads a clipboard history from outside the agent, with common libraries only.

usage: read_history.py key                 prints the key that the session's Secret Service keeps, in hexadecimal digits
       read_history.py copies FOLDER KEY   prints as JSON the numbers of the copies that the history holds, what must never
                                           be in one, and how many entries there are

Each copy contains "copy-NUMBER." somewhere, and each secret "secret-NUMBER.". A history that is just being written is read
again until it is at rest.
"""
import json
import pathlib
import plistlib
import re
import sys
import time

ATTRIBUTES = {"service": "com.quillane.app.clipboard", "account": "local-encryption-key"}
ATTEMPTS = 20


def print_key():
    import dbus  # not where only files are read

    bus = dbus.SessionBus()
    service = dbus.Interface(bus.get_object("org.freedesktop.secrets", "/org/freedesktop/secrets"),
                             "org.freedesktop.Secret.Service")
    _, session = service.OpenSession("plain", dbus.String("", variant_level=1))
    unlocked, _ = service.SearchItems(ATTRIBUTES)
    if len(unlocked) != 1:
        sys.exit(f"read_history: there are {len(unlocked)} keys")
    secret = service.GetSecrets(unlocked, session)[unlocked[0]]
    print(bytes(secret[2]).hex())


def opened(path, cipher):
    box = path.read_bytes()
    return plistlib.loads(cipher.decrypt(box[:12], box[12:], None), fmt=plistlib.FMT_BINARY)


def entries(folder, cipher):
    """In their order. Once there is a pending index, the save counts as done and its files only lack their names."""
    pending = folder / "pending-index.clip"
    is_pending = pending.exists()
    if not is_pending and not (folder / "index").exists():
        return
    for identifier in opened(pending if is_pending else folder / "index", cipher):
        path = folder / f"pending-{identifier}.clip"
        if not is_pending or not path.exists():
            path = folder / f"{identifier}.clip"
        entry = opened(path, cipher)
        if entry["id"] != identifier:
            raise ValueError(f"{path.name} holds another entry")
        yield entry


def print_copies(folder, key):
    from cryptography.hazmat.primitives.ciphers.aead import AESGCM

    cipher = AESGCM(bytes.fromhex(key))
    for attempt in range(ATTEMPTS):
        copies, secrets, count = [], [], 0
        try:
            for entry in entries(folder, cipher):
                count += 1
                data = b"\n".join([entry["text"].encode(), *(r["data"] for item in entry["items"] for r in item)])
                numbers = {int(number) for number in re.findall(rb"copy-(\d+)\.", data)}
                copies += sorted(numbers)
                secrets += [int(number) for number in re.findall(rb"secret-(\d+)\.", data)]
            break
        except Exception as problem:
            if attempt == ATTEMPTS - 1:
                sys.exit(f"read_history: {type(problem).__name__} {problem}")
            time.sleep(0.02)
    json.dump({"copies": copies, "secrets": secrets, "entries": count}, sys.stdout)


if sys.argv[1] == "key":
    print_key()
else:
    print_copies(pathlib.Path(sys.argv[2]), sys.argv[3])
