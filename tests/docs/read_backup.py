#!/usr/bin/env python3
"""Reads a backup by what docs/obk-format.md says, and by nothing else of this project.

  read_backup.py FILE.obk

Fails if an item of the settings file has no entry where the page puts it.
"""
import os
import re
import sys
import zipfile

ITEM = re.compile(r"<(\w+) Key='(.*)' >((?:Microsoft Outlook|Windows Mail|Outlook Express|"
                  r"Internet Explorer|Other Files|Add Other Folders|Add More Files)\\.*)$")


def usable(text):
    return "".join("_" if c in '/:*?"<>|' else c for c in text)


def cut(path, character):
    """The path up to the first backslash at or behind that character, counted from 1."""
    end = path.find("\\", character - 1)
    return path if end < 0 else path[:end]


def entry(path, key):
    """The entry below the stem; None for a group."""
    if "\\" not in key:
        return None
    file_name = key.rstrip("\\").rsplit("\\", 1)[-1]
    export = usable(path.rsplit("\\", 1)[-1]).replace(" ", "_") + ".reg"
    is_key = key.startswith("HKEY_")
    root = path.split("\\")[0]
    if root in ("Microsoft Outlook", "Windows Mail"):
        folder = usable(path.split("\\Account")[0] if "\\Account" in path else cut(path, 19))
        if root == "Windows Mail":
            return folder + "\\Account Settings\\" + export if is_key else folder
        return folder + "\\" + (export if is_key else file_name)
    if root == "Outlook Express":
        return usable(path.rsplit("\\", 1)[0]) + "\\" + (export if is_key else file_name)
    if root == "Internet Explorer":
        return usable(cut(path, 22)) + "\\" + export if is_key else path
    if root == "Other Files":
        return path
    if root == "Add Other Folders":
        return "Added Other Folders\\" + file_name.replace(":", "")
    return "Added More Files\\" + file_name


def main():
    path = sys.argv[1]
    stem = os.path.splitext(os.path.basename(path))[0]
    archive = zipfile.ZipFile(path)
    bad = archive.testzip()
    if bad:
        sys.exit(f"{bad} is damaged")
    names = [name.replace("/", "\\").lower() for name in archive.namelist()]
    if not all(name.startswith(stem.lower() + "\\") for name in names):
        sys.exit("an entry does not begin with the stem")
    lines = archive.read(f"{stem}/{stem}.xml").decode("cp1252").split("\r\n")
    found = missing = 0
    for line in lines:
        item = ITEM.match(line)
        place = entry(item[3], item[2]) if item else None
        if place is None:
            continue
        wanted = f"{stem}\\{place}".lower()
        if any(name == wanted or name.startswith(wanted + "\\") for name in names):
            found += 1
        else:
            missing += 1
            print(f"no entry for {item[3]} ({item[2]}): {place}")
    print(f"{found} items found, {missing} missing")
    sys.exit(1 if missing or not found else 0)


if __name__ == "__main__":
    main()
