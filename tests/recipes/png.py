"""Reads PNG pictures, checking the file throughout."""
import struct
import zlib


class BadPicture(Exception):
    pass


class Png:
    """width, height, and rows of bytes, `samples` for each pixel."""

    def __init__(self, name):
        data = name.read_bytes()
        if data[:8] != b"\x89PNG\r\n\x1a\n":
            raise BadPicture("no PNG signature")
        place, packed, kind, self.colours = 8, b"", b"", b""
        while place < len(data):
            size, kind = struct.unpack(">I4s", data[place:place + 8])
            body = data[place + 8:place + 8 + size]
            if struct.unpack(">I", data[place + 8 + size:place + 12 + size])[0] != \
                    zlib.crc32(kind + body):
                raise BadPicture("wrong checksum in %s" % kind)
            if kind == b"IHDR":
                self.width, self.height, self.depth, colour, _, _, interlaced = \
                    struct.unpack(">IIBBBBB", body)
            packed += body if kind == b"IDAT" else b""
            self.colours = body if kind == b"PLTE" else self.colours
            place += 12 + size
        if kind != b"IEND" or interlaced or self.depth > 8:
            raise BadPicture("not a whole picture of the usual kind")
        # Colours, colours with opacity, or numbers of a list of colours.
        self.samples = {2: 3, 6: 4, 3: 1}[colour]
        self.rows = self.unpack(zlib.decompress(packed))

    def unpack(self, data):
        stride = (self.width * self.samples * self.depth + 7) // 8
        if len(data) != self.height * (stride + 1):
            raise BadPicture("%d bytes of pixels" % len(data))
        rows, above = [], bytes(stride)
        for start in range(0, len(data), stride + 1):
            above = unfilter(data[start], data[start + 1:start + 1 + stride], above,
                             max(self.samples * self.depth // 8, 1))
            rows.append(above)
        return rows

    def pixel(self, x, y):
        """(red, green, blue) where (x, y), in pixels from the upper left corner, is."""
        row, x = self.rows[int(y)], int(x)
        if self.samples > 1:
            return tuple(row[self.samples * x:self.samples * x + 3])
        bits = self.depth * x
        number = row[bits // 8] >> (8 - self.depth - bits % 8) & ((1 << self.depth) - 1)
        return tuple(self.colours[3 * number:3 * number + 3])


def unfilter(kind, line, above, pixel):
    """The bytes of a row; `pixel` bytes make a pixel."""
    if kind == 0:
        return line
    if kind == 2:
        return bytes((a + b) & 255 for a, b in zip(line, above))
    result = bytearray(len(line))
    for i, value in enumerate(line):
        left = result[i - pixel] if i >= pixel else 0
        if kind == 1:
            guess = left
        elif kind == 3:
            guess = (left + above[i]) // 2
        else:
            corner = above[i - pixel] if i >= pixel else 0
            p = left + above[i] - corner
            guess = min((abs(p - left), 0, left), (abs(p - above[i]), 1, above[i]),
                        (abs(p - corner), 2, corner))[2]
        result[i] = (value + guess) & 255
    return bytes(result)


def share_of_difference(one, other, tolerance):
    """The share of pixels that differ by more than `tolerance` in a colour."""
    if (one.width, one.height) != (other.width, other.height):
        return 1
    different = sum(any(abs(a - b) > tolerance
                        for a, b in zip(one.pixel(x, y), other.pixel(x, y)))
                    for y in range(one.height)
                    if one.rows[y] != other.rows[y] for x in range(one.width))
    return different / (one.width * one.height)
