#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The rows `corvane list` prints, computed with Python's json and a dict: the plain peer.

usage: list-peer.py THEMES_DIR INSTALLED_DIR
"""
import json
import os
import sys
import unicodedata


def read(directory):
    themes = []
    for entry in sorted(os.listdir(directory)):
        if not entry.endswith(".theme.json"):
            continue
        path = os.path.join(directory, entry)
        with open(path, "rb") as f:
            data = json.load(f)
        style = data["style"].lower()
        if style not in ("dark", "light"):
            sys.exit("%s: Invalid style: %s" % (path, data["style"]))
        version = tuple(int(p) for p in data["version"].split(".")[:3])
        version += (0,) * (3 - len(version))
        themes.append((data["name"], style, [a["name"] for a in data["author"]], version, path))
    themes.sort(key=lambda t: unicodedata.normalize("NFC", t[0]))  # stable: listing order among equal names
    return themes


def main():
    remote = read(sys.argv[1])
    installed = read(sys.argv[2])
    first = {}
    for theme in installed:
        first.setdefault((unicodedata.normalize("NFC", theme[0]), theme[1]), theme)
    label = {"dark": "Dark", "light": "Light"}
    text = lambda v: "%d.%d.%d" % v
    new, updated = [], []
    for name, style, authors, version, _ in remote:
        match = first.get((unicodedata.normalize("NFC", name), style))
        if match is None:
            new.append("\t".join((name, label[style], ", ".join(authors), "-", text(version))))
        elif match[3] < version:
            updated.append("\t".join((match[0], label[style], ", ".join(authors), text(match[3]), text(version))))
    out = "\n".join(new + updated)
    sys.stdout.write(out + "\n" if out else "")


if __name__ == "__main__":
    main()
