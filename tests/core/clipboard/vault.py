#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
"""Reads and writes a clipboard vault with nothing but cryptography and plistlib.

usage: vault.py read FOLDER KEY     prints the entries as JSON, data and key in hexadecimal digits
       vault.py write FOLDER KEY    reads such JSON and writes the vault
"""
import datetime
import json
import os
import pathlib
import plistlib
import sys

from cryptography.hazmat.primitives.ciphers.aead import AESGCM

REFERENCE_DATE = datetime.datetime(2001, 1, 1)


def opened(path, cipher):
    box = path.read_bytes()
    return plistlib.loads(cipher.decrypt(box[:12], box[12:], None), fmt=plistlib.FMT_BINARY)


def sealed(path, cipher, value):
    nonce = os.urandom(12)
    plaintext = plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
    path.write_bytes(nonce + cipher.encrypt(nonce, plaintext, None))


def read(folder, cipher):
    entries = []
    for identifier in opened(folder / "index", cipher):
        entry = opened(folder / (identifier + ".clip"), cipher)
        for key in ("createdAt", "copiedAt"):
            assert isinstance(entry[key], datetime.datetime)
            entry[key] = (entry[key] - REFERENCE_DATE).total_seconds()
        assert entry["id"] == identifier and isinstance(entry["pinned"], bool)
        entry["items"] = [[{"type": r["type"], "data": r["data"].hex()} for r in item] for item in entry["items"]]
        entries.append(entry)
    json.dump(entries, sys.stdout)


def write(folder, cipher):
    entries = json.load(sys.stdin)
    for entry in entries:
        for key in ("createdAt", "copiedAt"):
            entry[key] = REFERENCE_DATE + datetime.timedelta(seconds=entry[key])
        entry["items"] = [[{"type": r["type"], "data": bytes.fromhex(r["data"])} for r in item] for item in entry["items"]]
        sealed(folder / (entry["id"] + ".clip"), cipher, entry)
    sealed(folder / "index", cipher, [entry["id"] for entry in entries])


if __name__ == "__main__":
    {"read": read, "write": write}[sys.argv[1]](pathlib.Path(sys.argv[2]), AESGCM(bytes.fromhex(sys.argv[3])))
