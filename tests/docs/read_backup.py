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


def check_table(archive, stem):
    """The rows of the member table, each held against the archive. How many there are."""
    entries = {}
    for info in archive.infolist():
        entries.setdefault(info.filename.replace("/", "\\").rstrip("\\").lower(), info)
    text = archive.read(f"{stem}/Members.txt").decode("utf-8")
    if not text.endswith("\r\n"):
        sys.exit("the member table is cut short")
    lines = [[re.sub("%(..)", lambda code: chr(int(code[1], 16)), field)
              for field in line.split("\t")] for line in text.split("\r\n")[:-1]]
    if lines[0] != ["Quorvale members", "1"] or lines[1] != ["stem", stem]:
        sys.exit("no head of a member table")
    if lines[-1] != ["end", str(len(lines) - 1)]:
        sys.exit("the member table is cut short")
    items = [line for line in lines if line[0] == "item"]
    members = [line for line in lines if line[0] == "member"]
    told = {f"{stem}\\{stem}.xml".lower(), f"{stem}\\Members.txt".lower()}
    for _, kind, item, size, crc, entry_name, inner in members:
        told.add(entry_name.lower())
        info = entries.get(entry_name.lower())
        if info is None or info.is_dir() != (kind == "d"):
            sys.exit(f"the table names {entry_name}, which is not there")
        if kind != "d" and (info.file_size != int(size) or info.CRC != int(crc, 16)):
            sys.exit(f"{entry_name} is not what the table says")
        key = items[int(item) - 1][2]
        if kind == "f" and inner and not entry_name.rsplit("\\", 1)[-1]:
            sys.exit(f"{entry_name} has no name below {key}")
    for name in entries:
        if name not in told:
            sys.exit(f"{name} is nobody's")
    return len(members)


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
    print(f"{found} items found, {missing} missing, {check_table(archive, stem)} members")
    sys.exit(1 if missing or not found else 0)


if __name__ == "__main__":
    main()
