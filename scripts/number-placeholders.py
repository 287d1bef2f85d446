#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Turns the old "%@" markers into numbered ones ("%1", "%2", ... in order).

  scripts/number-placeholders.py                 # sources under Corvane/ and tools/, then the .ts files
  scripts/number-placeholders.py FILE...         # only these files

In C++ sources, every string literal holding "%@" (the "//%" text and the English default alike) is
renumbered. In Qt Linguist files, run after `cmake --build build --target corvane_update_translations`:
a message whose source changed only in its markers gets its translation renumbered in the same order and
loses its "unfinished" mark and its <oldsource>. Messages that changed otherwise are left to a translator.
Texts that count something need their plural forms written by hand (see docs/api.md).
"""
import pathlib
import re
import sys

top = pathlib.Path(__file__).resolve().parent.parent
literal = re.compile(r'"((?:[^"\\\n]|\\.)*)"')


def numbered(text):
    count = 0

    def next_marker(_):
        nonlocal count
        count += 1
        return f"%{count}"

    return re.sub(r"%@", next_marker, text)


def convert_source(path):
    text = path.read_text(encoding="utf-8")
    converted = literal.sub(lambda m: '"' + numbered(m.group(1)) + '"' if "%@" in m.group(1) else m.group(0), text)
    if converted != text:
        path.write_text(converted, encoding="utf-8")
        print(f"renumbered {path}")


message_re = re.compile(r"<message\b.*?</message>", re.S)


def convert_catalogue(path):
    text = path.read_text(encoding="utf-8")

    def fix(match):
        message = match.group(0)
        source = re.search(r"<source>(.*?)</source>", message, re.S)
        old = re.search(r"\s*<oldsource>(.*?)</oldsource>", message, re.S)
        if not source or not old or numbered(old.group(1)) != source.group(1):
            return message
        message = message.replace(old.group(0), "")
        message = re.sub(r"(<(?:translation|numerusform)\b[^>]*>)(.*?)(</)",
                         lambda m: m.group(1) + numbered(m.group(2)) + m.group(3), message, flags=re.S)
        forms = re.findall(r"<numerusform>(.*?)</numerusform>", message, re.S) or \
            re.findall(r"<translation\b[^>]*>(.*?)</translation>", message, re.S)
        if forms and all(forms) and "%@" not in message:
            message = message.replace(' type="unfinished"', "")
        return message

    converted = message_re.sub(fix, text)
    if converted != text:
        path.write_text(converted, encoding="utf-8")
        print(f"renumbered {path}")


def main(arguments):
    files = [pathlib.Path(a) for a in arguments]
    if not files:
        files = sorted(p for folder in ("Corvane", "tools", "examples") for p in (top / folder).rglob("*")
                       if p.suffix in (".cpp", ".h"))
        files += sorted((top / "translations").glob("*.ts"))
    for path in files:
        (convert_catalogue if path.suffix == ".ts" else convert_source)(path)


if __name__ == "__main__":
    main(sys.argv[1:])
