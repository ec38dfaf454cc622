#!/usr/bin/env python3
"""Writes a small backup by the description of the format alone: one added file.

  make_backup.py OUT.obk 'C:\\Letters\\a letter.txt' TEXT

The file's name without ".obk" is the stem that all entries begin with.
"""
import os
import sys
import zipfile


def main():
    out, path, text = sys.argv[1:]
    stem = os.path.splitext(os.path.basename(out))[0]
    lines = [
        "<?xml version='1.0'?>", "<BackupSettings>", "<Main Process='Main Backup'>",
        "<ProcessDesc>Save your current settings and data for later restore to this or other "
        "computer.</ProcessDesc>", "<DateTime>7_14_11_2026_22_5</DateTime>",
        "<BackupFolder>C:\\Backups</BackupFolder>", "<ItemsForBackup>",
        f"<AMF Key='{path}' >Add More Files\\{path}", "</AMF>", "</ItemsForBackup>",
        "<AdvancedSettings>", "<LogDetails>False</LogDetails>",
        "<UseCompression>True</UseCompression>",
        "<SelfExtractingBackup>6</SelfExtractingBackup>", "<VerifyArchive></VerifyArchive>",
        "<ProtectWithPassword>False</ProtectWithPassword>",
        f"<BackupSettingsFiles>{stem}.obk</BackupSettingsFiles>", "</AdvancedSettings>",
        "</Main>", "</BackupSettings>"]
    settings = "".join(line + "\r\n" for line in lines).encode("cp1252")
    with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr(f"{stem}/{stem}.xml", settings)
        archive.writestr(f"{stem}/Added More Files/" + path.rsplit("\\", 1)[-1], text)


if __name__ == "__main__":
    main()
