#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# The floor of an install batch, in one process: for every theme file of SOURCE that INSTALLED holds
# under the same name, copy it beside the old file, move the old file into the Trash (files/ and its
# .trashinfo in info/), and rename the copy into place. No comparison, no checks, no syncs.
#
# usage: install-floor.py SOURCE_THEMES INSTALLED TRASH
import datetime
import os
import shutil
import sys
import urllib.parse

source, installed, trash = sys.argv[1:4]
os.makedirs(os.path.join(trash, "files"), exist_ok=True)
os.makedirs(os.path.join(trash, "info"), exist_ok=True)
stamp = datetime.datetime.now().strftime("%Y-%m-%dT%H:%M:%S")
for name in sorted(os.listdir(source)):
    if not name.endswith(".theme.json"):
        continue
    target = os.path.join(installed, name)
    temporary = os.path.join(installed, ".floor-" + name)
    shutil.copyfile(os.path.join(source, name), temporary)
    if os.path.lexists(target):
        with open(os.path.join(trash, "info", name + ".trashinfo"), "w") as info:
            info.write("[Trash Info]\nPath=%s\nDeletionDate=%s\n" % (urllib.parse.quote(target), stamp))
        os.rename(target, os.path.join(trash, "files", name))
    os.rename(temporary, target)
    print(name)
