# SPDX-License-Identifier: MIT
"""Pictures made for tests: sound ones, and ones that only look sound."""

import struct
import zlib

_SIGNATURE = b"\x89PNG\r\n\x1a\n"


def png(width, height, colour=(200, 40, 40), level=6):
    """A picture of one colour with a diagonal of another, so that it has something to show."""
    rows = []
    plain = bytes(colour) * width
    for y in range(height):
        x = y * width // height
        rows.append(b"\0" + plain[:3 * x] + b"\x20\x60\xe0" + plain[3 * (x + 1):])
    return _assemble(width, height, zlib.compress(b"".join(rows), level))


def png_of_rows(width, rows, level=6):
    """A picture of given rows, three bytes to a pixel."""
    packed = zlib.compress(b"".join(b"\0" + row for row in rows), level)
    return _assemble(width, len(rows), packed)


def noise_png(width, height, seed=1):
    """A picture that cannot be compressed."""
    state = seed or 1
    rows = []
    for y in range(height):
        row = bytearray(1 + 3 * width)
        for x in range(1, len(row)):
            state = (state * 1103515245 + 12345) & 0x7fffffff
            row[x] = state >> 16 & 0xff
        rows.append(bytes(row))
    return _assemble(width, height, zlib.compress(b"".join(rows), 0))


def broken_png(width=64, height=64):
    """The beginning of a sound picture with bytes flipped where its pixels are."""
    data = bytearray(noise_png(width, height))
    middle = len(data) // 2
    data[middle:middle + 64] = bytes(byte ^ 0xff for byte in data[middle:middle + 64])
    return bytes(data[:-40])


def bomb_png(width=60_000, height=60_000):
    """Some kilobytes that announce ten gigabytes of pixels."""
    row = zlib.compressobj(9)
    packed = b"".join(row.compress(b"\0" * 65536) for _ in range(4096)) + row.flush()
    return _assemble(width, height, packed)


def png_size(data):
    """(width, height) of a PNG; fails on anything else."""
    if data[:8] != _SIGNATURE:
        raise ValueError(f"not a PNG: {data[:8]!r}")
    return struct.unpack(">II", data[16:24])


def png_pixels(data):
    """The rows of an 8-bit RGB or RGBA picture as a list of bytes, filters undone, alpha dropped."""
    width, height = png_size(data)
    channels = {2: 3, 6: 4}[data[25]]
    packed = b""
    place = 8
    while place < len(data):
        length, kind = struct.unpack(">I4s", data[place:place + 8])
        if kind == b"IDAT":
            packed += data[place + 8:place + 8 + length]
        place += 12 + length
    raw = zlib.decompress(packed)
    rows, above, stride = [], bytes(width * channels), width * channels
    for y in range(height):
        line = raw[y * (stride + 1):(y + 1) * (stride + 1)]
        above = _unfilter(line[0], bytearray(line[1:]), above, channels)
        rows.append(above if channels == 3 else
                    b"".join(above[x:x + 3] for x in range(0, stride, 4)))
    return rows


def _unfilter(kind, line, above, step):
    for i, value in enumerate(line):
        left = line[i - step] if i >= step else 0
        up = above[i]
        corner = above[i - step] if i >= step else 0
        if kind == 1:
            value += left
        elif kind == 2:
            value += up
        elif kind == 3:
            value += (left + up) // 2
        elif kind == 4:
            value += _paeth(left, up, corner)
        line[i] = value & 0xff
    return bytes(line)


def _paeth(left, up, corner):
    guess = left + up - corner
    distances = (abs(guess - left), abs(guess - up), abs(guess - corner))
    return (left, up, corner)[distances.index(min(distances))]


def _assemble(width, height, packed):
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (_SIGNATURE + _chunk(b"IHDR", header) + _chunk(b"IDAT", packed) + _chunk(b"IEND", b""))


def _chunk(kind, data):
    return (struct.pack(">I", len(data)) + kind + data +
            struct.pack(">I", zlib.crc32(kind + data) & 0xffffffff))
