#!/usr/bin/env python3
"""Makes the seeds of archive_fuzz: small archives of every kind that tools write.

    make_archive_corpus.py FOLDER
"""
import io
import os
import struct
import subprocess
import sys
import tempfile
import zipfile
import zlib

NO_PASSWORD = b"\x00"
PASSWORD = b"\x01"  # archive_fuzz then takes "right"
TEXT = b"the message of the mail store " * 8


class Stream(io.RawIOBase):
    """Cannot be moved in, so that sizes follow the data."""

    def __init__(self):
        self.data = b""

    def writable(self):
        return True

    def write(self, data):
        self.data += bytes(data)
        return len(data)


def python_archive(kind, out=None, names=("a.txt",), zip64=False, comment=b""):
    buffer = out or io.BytesIO()
    with zipfile.ZipFile(buffer, "w", kind) as archive:
        for name in names:
            info = zipfile.ZipInfo(name, (2006, 1, 2, 3, 4, 6))
            info.compress_type = kind
            with archive.open(info, "w", force_zip64=zip64) as entry:
                entry.write(b"" if name.endswith("/") else TEXT)
        archive.comment = comment
    return buffer.data if out else buffer.getvalue()


def tool_archive(command):
    """What a tool makes of two files; the command's "OUT" is the archive."""
    with tempfile.TemporaryDirectory() as folder:
        for name, data in (("a.txt", TEXT), ("b.bin", bytes(range(40)))):
            path = os.path.join(folder, name)
            with open(path, "wb") as file:
                file.write(data)
            os.utime(path, (1136171046, 1136171046))
        words = [word.replace("OUT", "out.zip") for word in command]
        subprocess.run(words, cwd=folder, check=True, stdout=subprocess.DEVNULL)
        with open(os.path.join(folder, "out.zip"), "rb") as file:
            return file.read()


def archive_in_pieces(size):
    """One large entry of zeros, with the extra field that tells the sizes of its pieces."""
    block = 1024 * 1024
    pieces = []
    for at in range(0, size, block):
        packer = zlib.compressobj(9, zlib.DEFLATED, -15)
        piece = packer.compress(bytes(min(block, size - at)))
        pieces.append(piece + packer.flush(zlib.Z_FULL_FLUSH))
    packed = b"".join(pieces) + b"\x03\x00"
    crc = zlib.crc32(bytes(size))
    sizes = struct.pack(f"<B{len(pieces)}I", 1, *map(len, pieces))
    extra = struct.pack("<HH", 0x7651, len(sizes)) + sizes
    name = b"large"
    shared = struct.pack("<HHHIIIIH", 20, 0, 8, 0x34220000, crc, len(packed), size, len(name))
    local = b"PK\x03\x04" + shared + struct.pack("<H", 0) + name
    central = (b"PK\x01\x02\x14\x00" + shared
               + struct.pack("<HHHHII", len(extra), 0, 0, 0, 32, 0) + name + extra)
    end = b"PK\x05\x06" + struct.pack("<HHHHIIH", 0, 0, 1, 1, len(central),
                                      len(local) + len(packed), 0)
    return local + packed + central + end


def seeds():
    stored, deflated = zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED
    yield "stored", NO_PASSWORD + python_archive(stored)
    yield "deflated", NO_PASSWORD + python_archive(deflated)
    yield "zip64", NO_PASSWORD + python_archive(deflated, zip64=True)
    yield "streamed", NO_PASSWORD + python_archive(deflated, Stream())
    yield "folders", NO_PASSWORD + python_archive(stored, names=("d/", "d/e/", "d/e/f"))
    yield "unicode", NO_PASSWORD + python_archive(stored, names=("gr\u00fcn", "\u65e5/\u672c"))
    yield "unsafe", NO_PASSWORD + python_archive(
        stored, names=("../a", "/b", "c:/d", "con", "e./f", "g/../h"))
    yield "comment", NO_PASSWORD + python_archive(stored, comment=b"made by a script")
    yield "prefix", NO_PASSWORD + b"#!program\n" + python_archive(stored)
    yield "empty", NO_PASSWORD + python_archive(stored, names=())
    yield "method", NO_PASSWORD + python_archive(zipfile.ZIP_LZMA)
    yield "classic", PASSWORD + tool_archive(["zip", "-q", "-P", "right", "OUT", "a.txt", "b.bin"])
    yield "classic_streamed", PASSWORD + tool_archive(
        ["sh", "-c", "zip -q -P right - a.txt | cat > OUT"])
    yield "pieces", NO_PASSWORD + archive_in_pieces(4 * 1024 * 1024 + 5000)
    yield "part", NO_PASSWORD + b"PK\x05\x06\x01\x00" + b"\x00" * 16


def main():
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    for name, data in seeds():
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)


main()
