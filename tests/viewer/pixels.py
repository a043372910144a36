# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Reads the pictures that `screenshot` writes: eight bits per colour, unfiltered rows.
import struct
import zlib


class Picture:
    def __init__(self, file):
        with open(file, "rb") as stream:
            content = stream.read()
        compressed = b""
        offset = 8
        while offset < len(content):
            length, kind = struct.unpack_from(">I4s", content, offset)
            data = content[offset + 8:offset + 8 + length]
            if kind == b"IHDR":
                self.width, self.height = struct.unpack_from(">II", data)
            elif kind == b"IDAT":
                compressed += data
            offset += 12 + length
        self._bytes = zlib.decompress(compressed)
        self._stride = 1 + 3 * self.width
        for y in range(self.height):
            assert self._bytes[y * self._stride] == 0, "a row is filtered"

    def at(self, x, y):
        offset = y * self._stride + 1 + 3 * x
        return tuple(self._bytes[offset:offset + 3])

    # The bytes of a row between two columns.
    def row(self, y, left, right):
        start = y * self._stride + 1
        return self._bytes[start + 3 * left:start + 3 * right]

    # The part of an area that is on the screen: left, top, right, bottom.
    def _part(self, area):
        left, top = max(0, int(area["x"])), max(0, int(area["y"]))
        return (left, top, min(self.width, int(area["x"] + area["width"])),
                min(self.height, int(area["y"] + area["height"])))

    # The box around all pixels of a colour within an area, and their number; None if there are none.
    def find(self, color, area):
        left, top, right, bottom = self._part(area)
        wanted = bytes(color)
        count, box = 0, None
        for y in range(top, bottom):
            row = self.row(y, left, right)
            at = row.find(wanted)
            while at >= 0:
                if at % 3 == 0:
                    x = left + at // 3
                    count += 1
                    box = (min(box[0], x), box[1], max(box[2], x), y) if box else (x, y, x, y)
                at = row.find(wanted, at + (3 if at % 3 == 0 else 1))
        return Found(count, box) if box else None

    # The brightness of the darkest pixel of an area: 0 is black.
    def darkest(self, area):
        left, top, right, bottom = self._part(area)
        return min(max(self.at(x, y)) for y in range(top, bottom) for x in range(left, right))

    # The groups of dark pixels with at least `gap` between them, such as the labels of a menu bar, from left to right.
    def clusters(self, area, gap):
        left, top, right, bottom = self._part(area)
        dark = [x for x in range(left, right) if any(max(self.at(x, y)) < 128 for y in range(top, bottom))]
        groups = []
        for x in dark:
            if not groups or x - groups[-1][-1] > gap:
                groups.append([])
            groups[-1].append(x)
        return [{"x": group[0], "y": top, "width": group[-1] - group[0] + 1, "height": bottom - top}
                for group in groups]

    # The box in which another picture differs; None if it does not.
    def changes(self, other, area):
        left, top, right, bottom = self._part(area)
        rows = [y for y in range(top, bottom) if self.row(y, left, right) != other.row(y, left, right)]
        if not rows:
            return None
        columns = [x for x in range(left, right) if any(self.at(x, y) != other.at(x, y) for y in rows)]
        return {"x": columns[0], "y": rows[0], "width": columns[-1] - columns[0] + 1,
                "height": rows[-1] - rows[0] + 1}

    def same(self, other, area):
        left, top, right, bottom = self._part(area)
        return all(self.row(y, left, right) == other.row(y, left, right) for y in range(top, bottom))


class Found:
    def __init__(self, count, box):
        self.count = count
        self.left, self.top, self.right, self.bottom = box

    @property
    def middle(self):
        return (self.top + self.bottom) / 2
