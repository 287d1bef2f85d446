#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Builds the workload the list comparisons run on.

DIR/remote     a git repository (branch master) whose Themes directory holds COUNT theme files of about
               1 KB, one commit
DIR/installed  every second remote theme, installed; of those, every second one an older version

Names are mostly ASCII with some accented ones, the way a curated collection looks; file names follow
the theme's number, so the reader's name order and the file order agree.
"""
import json
import os
import subprocess
import sys

ACCENTED = ["Caf\u00e9", "Cr\u00e8me", "Fj\u00f6rd", "\u00c5ngstr\u00f6m", "Ni\u00f1o", "Sm\u00f6rg\u00e5s"]


def theme(index, version):
    name = "Theme %05d" % index
    if index % 20 == 0:
        name = "%s %s" % (ACCENTED[index // 20 % len(ACCENTED)], name)
    palette = {"color%02d" % c: "#%06x" % ((index * 7919 + c * 104729) % 0xFFFFFF) for c in range(30)}
    return {
        "name": name,
        "style": "dark" if index % 3 else "light",
        "author": [{"name": "Author %d" % (index % 97)}, {"name": "Curator"}],
        "version": version,
        "editor": {"background": "#1e1e2e", "foreground": "#cdd6f4", "palette": palette},
    }


def write(directory, index, version):
    path = os.path.join(directory, "theme-%05d.theme.json" % index)
    with open(path, "w", encoding="utf-8") as f:
        json.dump(theme(index, version), f, ensure_ascii=False, indent=2)


def git(*args, cwd):
    env = dict(os.environ, GIT_CONFIG_NOSYSTEM="1", GIT_CONFIG_GLOBAL="/dev/null",
               GIT_AUTHOR_NAME="Bench", GIT_AUTHOR_EMAIL="bench@example.org",
               GIT_COMMITTER_NAME="Bench", GIT_COMMITTER_EMAIL="bench@example.org")
    subprocess.run(["git", *args], cwd=cwd, env=env, check=True, stdout=subprocess.DEVNULL)


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit("usage: list-workload.py DIR [COUNT]")
    root = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) == 3 else 10000
    remote_themes = os.path.join(root, "remote", "Themes")
    installed = os.path.join(root, "installed")
    os.makedirs(remote_themes)
    os.makedirs(installed)
    for index in range(count):
        write(remote_themes, index, "1.2.0")
        if index % 2 == 0:
            write(installed, index, "1.1.0" if index % 4 == 0 else "1.2.0")
    remote = os.path.join(root, "remote")
    git("init", "--quiet", "--initial-branch=master", cwd=remote)
    git("add", "--all", cwd=remote)
    git("commit", "--quiet", "-m", "Themes", cwd=remote)


if __name__ == "__main__":
    main()
