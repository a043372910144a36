# Reads the pictures that `screenshot` writes: eight bits a colour, no row filtered.
import struct
import zlib


class Picture:
    def __init__(self, file):
        with open(file, "rb") as stream:
            content = stream.read()
        compressed = b""
        place = 8
        while place < len(content):
            length, kind = struct.unpack_from(">I4s", content, place)
            data = content[place + 8:place + 8 + length]
            if kind == b"IHDR":
                self.width, self.height = struct.unpack_from(">II", data)
            elif kind == b"IDAT":
                compressed += data
            place += 12 + length
        self._bytes = zlib.decompress(compressed)
        self._stride = 1 + 3 * self.width
        for y in range(self.height):
            assert self._bytes[y * self._stride] == 0, "a row is filtered"

    def at(self, x, y):
        place = y * self._stride + 1 + 3 * x
        return tuple(self._bytes[place:place + 3])

    # The bytes of a row between two columns.
    def row(self, y, left, right):
        start = y * self._stride + 1
        return self._bytes[start + 3 * left:start + 3 * right]

    # A place's part on the screen: left, top, right, bottom.
    def _part(self, place):
        left, top = max(0, int(place["x"])), max(0, int(place["y"]))
        return (left, top, min(self.width, int(place["x"] + place["width"])),
                min(self.height, int(place["y"] + place["height"])))

    # The box around all pixels of a colour within a place, and their number; None where there are none.
    def find(self, color, place):
        left, top, right, bottom = self._part(place)
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

    # How dark the darkest pixel of a place is: 0 is black.
    def darkest(self, place):
        left, top, right, bottom = self._part(place)
        return min(max(self.at(x, y)) for y in range(top, bottom) for x in range(left, right))

    # What stands apart from other things in a row, such as the labels of a menu bar, from left to right.
    def clusters(self, place, gap):
        left, top, right, bottom = self._part(place)
        dark = [x for x in range(left, right) if any(max(self.at(x, y)) < 128 for y in range(top, bottom))]
        groups = []
        for x in dark:
            if not groups or x - groups[-1][-1] > gap:
                groups.append([])
            groups[-1].append(x)
        return [{"x": group[0], "y": top, "width": group[-1] - group[0] + 1, "height": bottom - top}
                for group in groups]

    # The place within which another picture differs; None where it does not.
    def changes(self, other, place):
        left, top, right, bottom = self._part(place)
        rows = [y for y in range(top, bottom) if self.row(y, left, right) != other.row(y, left, right)]
        if not rows:
            return None
        columns = [x for x in range(left, right) if any(self.at(x, y) != other.at(x, y) for y in rows)]
        return {"x": columns[0], "y": rows[0], "width": columns[-1] - columns[0] + 1,
                "height": rows[-1] - rows[0] + 1}

    def same(self, other, place):
        left, top, right, bottom = self._part(place)
        return all(self.row(y, left, right) == other.row(y, left, right) for y in range(top, bottom))


class Found:
    def __init__(self, count, box):
        self.count = count
        self.left, self.top, self.right, self.bottom = box

    @property
    def middle(self):
        return (self.top + self.bottom) / 2
