#!/usr/bin/env python3
"""Renders vector pictures into bitmap resources.

Every SVG file becomes a 32-bit bitmap with premultiplied transparency, named as the file; art.rc
lists them. The icon is rendered in several sizes into one file.
"""
import argparse
import concurrent.futures
import os
import struct
import subprocess
import zlib

ICON_SIZES = (16, 32, 48)


def read_png(data):
    """Width, height and the rows, in RGBA, of an 8-bit colour picture without interlacing."""
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("no PNG picture")
    place, packed = 8, b""
    width = height = channels = 0
    while place < len(data):
        size, kind = struct.unpack(">I4s", data[place:place + 8])
        body = data[place + 8:place + 8 + size]
        if kind == b"IHDR":
            width, height, depth, color, _, _, interlace = struct.unpack(">IIBBBBB", body)
            if depth != 8 or color not in (2, 6) or interlace:
                raise ValueError("only 8-bit colour pictures without interlacing are read")
            channels = 4 if color == 6 else 3
        elif kind == b"IDAT":
            packed += body
        place += size + 12
    raw = zlib.decompress(packed)
    stride = width * channels
    rows, before = [], bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        kind, row = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            left = row[i - channels] if i >= channels else 0
            up = before[i]
            corner = before[i - channels] if i >= channels else 0
            if kind == 1:
                row[i] = (row[i] + left) & 255
            elif kind == 2:
                row[i] = (row[i] + up) & 255
            elif kind == 3:
                row[i] = (row[i] + (left + up) // 2) & 255
            elif kind == 4:
                guess = left + up - corner
                near = min((abs(guess - left), 0, left), (abs(guess - up), 1, up),
                           (abs(guess - corner), 2, corner))
                row[i] = (row[i] + near[2]) & 255
        before = row
        if channels == 3:
            row = bytearray(b"".join(row[i:i + 3] + b"\xff" for i in range(0, stride, 3)))
        rows.append(row)
    return width, height, rows


def render(renderer, source, size=None):
    command = [renderer, "--format=png"]
    if size:
        command += [f"--width={size}", f"--height={size}"]
    return read_png(subprocess.run(command + [source], check=True, capture_output=True).stdout)


def pixels(rows, premultiplied):
    """The rows from the bottom, each pixel blue, green, red, alpha."""
    result = bytearray()
    for row in reversed(rows):
        for i in range(0, len(row), 4):
            red, green, blue, alpha = row[i:i + 4]
            if premultiplied:
                red, green, blue = (value * alpha // 255 for value in (red, green, blue))
            result += bytes((blue, green, red, alpha))
    return bytes(result)


def bitmap_header(width, height, size):
    return struct.pack("<IiiHHIIiiII", 40, width, height, 1, 32, 0, size, 2835, 2835, 0, 0)


def write_bitmap(renderer, source, target):
    width, height, rows = render(renderer, source)
    body = pixels(rows, True)
    with open(target, "wb") as file:
        file.write(struct.pack("<2sIHHI", b"BM", 54 + len(body), 0, 0, 54))
        file.write(bitmap_header(width, height, len(body)))
        file.write(body)


def write_icon(renderer, source, target):
    images = []
    for size in ICON_SIZES:
        _, _, rows = render(renderer, source, size)
        mask_stride = (size + 31) // 32 * 4
        mask = bytearray()
        for row in reversed(rows):  # older systems show what the mask leaves, without half tones
            line = bytearray(mask_stride)
            for x in range(size):
                if row[x * 4 + 3] < 128:
                    line[x // 8] |= 0x80 >> x % 8
            mask += line
        body = pixels(rows, False) + bytes(mask)
        images.append(bitmap_header(size, size * 2, len(body)) + body)
    with open(target, "wb") as file:
        file.write(struct.pack("<HHH", 0, 1, len(images)))
        place = 6 + 16 * len(images)
        for size, image in zip(ICON_SIZES, images):
            file.write(struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image), place))
            place += len(image)
        for image in images:
            file.write(image)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--renderer", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("--icon", required=True)
    parser.add_argument("sources", nargs="+")
    options = parser.parse_args()
    os.makedirs(options.out, exist_ok=True)
    lines = []
    with concurrent.futures.ProcessPoolExecutor() as pool:
        work = []
        for source in sorted(options.sources):
            name = os.path.splitext(os.path.basename(source))[0]
            target = os.path.join(options.out, name + ".bmp")
            # In quotes, since some names are words of the language; the line between keeps the
            # compiler from joining two quoted texts.
            lines.append(f'LANGUAGE 0, 0\n"{name}" BITMAP "{name}.bmp"')
            # What is newer than its source stays.
            if not os.path.exists(target) or os.path.getmtime(target) < os.path.getmtime(source):
                work.append(pool.submit(write_bitmap, options.renderer, source, target))
        work.append(pool.submit(write_icon, options.renderer, options.icon,
                                os.path.join(options.out, "quorvale.ico")))
        for each in work:
            each.result()
    with open(os.path.join(options.out, "art.rc"), "w", encoding="ascii") as file:
        file.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
