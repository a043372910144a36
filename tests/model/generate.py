# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Makes highlight files, good and bad, for the comparison of model.py with the plug-in.

Everything follows from a seed and the number of a block, so any file can be made again: block B of seed S holds
FILES_IN_BLOCK files, always the same; block -1 holds those of `edges`. `python3 generate.py SEED BLOCK [INDEX]` writes
a block, framed as the driver reads it, or one bare file to standard output.
"""

import random
import struct
import sys

FILES_IN_BLOCK = 1000

NUMBERS = b"""
    65534 65535 65536 65537 131071 -1 -2 -0 -5 -65535 -65536 32767 32768 -32768 2147483646 2147483647 2147483648
    -2147483647 -2147483648 -2147483649 4294967294 4294967295 4294967296 4294967297 4294901760 -4294967295 -4294967297
    9223372036854775807 9223372036854775808 -9223372036854775808 -9223372036854775809 18446744073709551615
    18446744073709551616 99999999999999999999999 -99999999999999999999999 007 0x10 1e3 3.7 1,000 - -- --1 -+1 +5 5- 5x
    x5 .5 '5' (5) `5` #5 &#53; 5; 5/ /5 5> 5>6 5>< ><5 {5} page pos len loc <loc""".split()
HEADER_NAMES = b"Units color mode version".split()
LOCATION_NAMES = b"page pg position pos length len".split()
UNITS = b"characters character characters. words charactersxxxx charactersxxxxx 'characters'".split() + [b""]
VERSIONS = b"""
    0 1 2 3 2.0 1.9 3.1 -1 -2 32767 32768 65535 65536 65537 65538 65539 131073 131074 -65534 -65535 99999999 123456789
    1234567890 000000002 0000000002 00000000021 000000001x 2x x2 two '2' (2) -""".split()
MODES = b"active passive activ actives 'active' 1".split() + [b""]
HEX_DIGITS = b"0123456789abcdefABCDEF"
WHITE_SPACE_SEPARATORS = [b" ", b" ", b" ", b"\n", b"\r\n", b"\t", b"  ", b"\n\n", b" \n ", b"\r", b"\v", b"\f"]
WHITE_SPACE_SEPARATORS += [b"\r\n\r\n", b" \t\n\t "]
TAGS = b"""
    <XML> <?XML <Body <Body> </Body> </XML> <highlights> <highlight> </highlights> </highlight> <location> <location
    <loc> <loc <highlights <highlights/> <loc/> </loc> </location> <location/> <Body/> <p> </p> <br/> <html> <!-- -->
    <![CDATA[ ]]> <?xml ?> /> > < <> </ >< <> page pg position pos length len Units color mode version active
    characters""".split()
ENDS_OF_TAG = [b"/>", b" />", b" >", b"", b" ", b"<", b">>"]
DECLARATIONS = [b' version="1.0"?>', b" version='1.0' ?>", b" version='1.0'?>", b"?>", b' encoding="utf-8" ?>']
TEXTS = [b"text", b"Hi!", b"Who? Me! No.", b"a, b; c: d", b"&amp;", b"&lt;loc&gt;", b"&#60;", b"<p>some text</p>"]
TEXTS += [b"it's", b"'quoted'", b"'two words' ", b"(in parentheses)", b"(open", b"'open", b"'", b"(", b") ", b"' "]
TEXTS += [b"')' ", b"<!-- comment -->", b"<!--<loc pg=1 pos=1>-->", b"<loc", b"\x14\x15", b"\x01\x02\x7f"]
TEXTS += [b"\xc3\xa4\xc3\xb6", b"\xef\xbb\xbf", b"\x80\xa5\xa6\xb4\xb5\xb8\xb9\xbc\xbd\xbe\xbf", b"$%+[]|~^@\\"]
TEXTS += [b"\xc5\xc6\xc7\xc8\xce\xcf\xd8\xd9\xdf\xe0\xed\xee\xff", b"!", b"!!! ??", b"!\t!", b"...", b"=", b'"']
TEXTS += [b"e.g.", b"3.14"]
RUN_CLASSES = [b"a", b"aB3<>./", b"<", b">", b"><", b" ", b"\n", b" \n", b" \t\r\n", b"!", b"!?. \t", b"=", b'="', b"'"]
RUN_CLASSES += [b"(", b"\xa5\x80", b"\xff\xa6", b"\x14\x15", b"\x01", bytes(range(1, 256))]
# Endings that show the state in which a file that stops anywhere has left the reader.
ENDINGS = [b" ><highlights><loc pg=9 pos=9></body>", b'"/>\n<loc pg="9" pos="9"/>\n</Body>', b"</Body>"]
ENDINGS += [b" ' > <loc> </Body>"]
MARKS = [b">", b"<", b"><", b'"', b"'", b"(", b")", b"=", b" ", b"\n", b"!", b"/"]


class Generator:
    def __init__(self, seed, block):
        self.random = random.Random("%s:%s" % (seed, block))
        self.pool = []
        self.oddity = 0.1  # share of malformed attributes

    # ----------------------------------------------------------------------------------------------- small pieces

    def chance(self, probability):
        return self.random.random() < probability

    def pick(self, choices):
        return choices[int(self.random.random() * len(choices))]

    def below(self, limit):
        return int(self.random.random() * limit)

    def letters(self, word):
        """The word in some mixture of upper and lower case."""
        kind = self.below(8)
        if kind < 4:
            return word
        if kind == 4:
            return word.lower()
        if kind == 5:
            return word.upper()
        if kind == 6:
            return word.title()
        return bytes(c ^ 0x20 if 0x41 <= c & ~0x20 <= 0x5A and self.chance(0.5) else c for c in word)

    def any_bytes(self, count):
        return bytes(self.below(256) for _ in range(count))

    def run(self):
        """A run of one class of characters, mostly around the length at which tokens are split."""
        members = self.pick(RUN_CLASSES)
        kind = self.below(10)
        length = self.random.randint(244, 256)
        if kind >= 7:
            length = self.random.randint(494, 506) if kind < 9 else self.below(1200)
        if self.chance(0.5):
            return (members * (length // len(members) + 1))[:length]
        return bytes(self.random.choices(members, k=length))

    def before_split(self, word):
        """Word characters before a word, so that the split falls into the word or exactly before or after it."""
        fill = 250 - self.below(len(word) + 2) + self.below(2)
        members = b"a" if self.chance(0.7) else self.pick((b"Z9", b"'", b"(a", b"<b>", b"/"))
        return (members * fill)[:fill] + word

    def spacing(self):
        return self.pick(WHITE_SPACE_SEPARATORS)

    def number(self):
        kind = self.below(20)
        if kind < 13:
            return b"%d" % self.below(20)
        if kind < 16:
            return b"%d" % self.below(70000)
        if kind < 17:
            return b"%d" % self.random.randint(-(2**33), 2**33)
        if kind < 18:
            return self.letters(self.pick(HEADER_NAMES + LOCATION_NAMES))
        return self.pick(NUMBERS)

    def color(self):
        length = 6 if self.chance(0.6) else self.below(11)
        digits = bytes(self.random.choices(HEX_DIGITS, k=length))
        kind = self.below(20)
        if kind < 12:
            return b"#" + digits
        if kind < 16:
            return digits
        return self.pick((b"0x", b"#0X", b"##", b"#-", b"'#", b"#g", b"red", b"#\xe0", b"# ", b"#0x")) + digits

    def text(self):
        kind = self.below(40)
        if kind == 0:
            return self.run()
        if kind == 1:
            return self.before_split(self.letters(self.pick(TAGS)))
        if kind < 4:
            return self.any_bytes(self.below(12))
        if kind < 8:
            return self.letters(self.pick(TAGS))
        return self.pick(TEXTS)

    # --------------------------------------------------------------------------------------------- grammar, by tags

    def attribute(self, name, value):
        name = self.letters(name)
        if not self.chance(self.oddity):
            return name + b'="' + value + b'"' if self.chance(0.7) else name + b"=" + value
        return (
            name + b"='" + value + b"'",
            name + b"='" + value + b"' ",
            name + b"=(" + value + b") ",
            name + b' = "' + value + b'"',
            name + b" " + value,
            name,
            name + b"=",
            b'"' + name + b'"="' + value + b'"',
            name + self.spacing() + b"=" + self.spacing() + value,
            name + b'="' + value + b'"' + self.text(),
        )[self.below(10)]

    def tag(self, opening, attributes, space):
        pieces = [self.letters(opening)]
        for attribute in attributes:
            pieces.append(self.spacing() if space is None else space)
            pieces.append(attribute)
        kind = self.below(20)
        pieces.append(ENDS_OF_TAG[kind - 13] if kind >= 13 and self.chance(0.6) else b">")
        return b"".join(pieces)

    def body(self):
        if self.chance(0.12):
            return self.letters(b"<Body>")
        attributes = []
        if self.chance(0.75):
            units = self.letters(b"characters") if self.chance(0.5) else self.pick(UNITS)
            attributes.append(self.attribute(b"Units", units))
        if self.chance(0.5):
            attributes.append(self.attribute(b"color", self.color()))
        if self.chance(0.4):
            mode = self.letters(b"active") if self.chance(0.5) else self.pick(MODES)
            attributes.append(self.attribute(b"mode", mode))
        if self.chance(0.5):
            version = b"%d" % (1 + self.below(3)) if self.chance(0.6) else self.pick(VERSIONS)
            attributes.append(self.attribute(b"version", version))
        if self.chance(0.05):
            attributes.append(self.attribute(self.pick(HEADER_NAMES), self.pick(HEADER_NAMES)))
        if self.chance(0.05):
            attributes.append(self.attribute(b"id", self.number()))
        if self.chance(0.2):
            self.random.shuffle(attributes)
        return self.tag(b"<Body", attributes, None if self.chance(0.2) else b" ")

    def ending(self, probability):
        return self.pick(ENDINGS) if self.chance(probability) else b""

    def location(self):
        if self.chance(0.02):
            return self.letters(self.pick((b"<loc>", b"<location>", b"<loc/>")))
        attributes = []
        if self.chance(0.96):
            attributes.append(self.attribute(self.pick((b"page", b"pg")), self.number()))
        if self.chance(0.96):
            attributes.append(self.attribute(self.pick((b"position", b"pos")), self.number()))
        if self.chance(0.8):
            attributes.append(self.attribute(self.pick((b"length", b"len")), self.number()))
        if self.chance(0.03):
            attributes.append(self.attribute(self.pick(LOCATION_NAMES), self.number()))
        if self.chance(0.1):
            self.random.shuffle(attributes)
        return self.tag(self.pick((b"<loc", b"<location")), attributes, None if self.chance(0.15) else b" ")

    def opening(self):
        kind = self.below(50)
        if kind < 20:
            return [self.letters(b"<XML>")]
        if kind < 40:
            return [self.letters(b"<?xml") + self.pick(DECLARATIONS), self.letters(b"<XML>")]
        if kind < 48:
            return [self.spacing() + self.letters(b"<XML>")]
        return [self.text(), self.letters(b"<XML>")]

    def file(self):
        noise = self.pick((0.0, 0.0, 0.03, 0.1))
        self.oddity = self.pick((0.0, 0.02, 0.1, 0.3))
        style = self.below(4)  # joined, one tag per line, one space, anything
        most = 4 if self.chance(0.5) else 12 if self.chance(0.97) else 400
        tags = self.opening()
        if not self.chance(0.03):
            tags.append(self.body())
        if self.chance(0.04):
            tags.append(self.body())
        for _ in range(1 if self.chance(0.9) else self.below(4)):
            if not self.chance(0.03):
                tags.append(self.letters(self.pick((b"<highlights>", b"<highlights>", b"<highlight>"))))
            elif self.chance(0.3):
                tags.append(b'<highlights version="2">')
            tags.extend([self.location() for _ in range(1 + self.below(most))])
            if not self.chance(0.05):
                tags.append(self.letters(self.pick((b"</highlights>", b"</highlights>", b"</highlight>"))))
            if self.chance(0.05):
                tags.append(self.letters(self.pick((b"</Body>", b"</Body", b"</Body >"))))
        if not self.chance(0.03):
            tags.append(self.letters(b"</Body>"))
        if not self.chance(0.1):
            tags.append(self.letters(b"</XML>"))
        pieces = []
        for tag in tags:
            pieces.append(tag)
            if noise and self.chance(noise):
                pieces.append(self.text())
            if style == 1:
                pieces.append(b"\n" if not self.chance(0.2) else b"\r\n")
            elif style == 2:
                pieces.append(b" ")
            elif style == 3:
                pieces.append(self.spacing() if self.chance(0.7) else b"")
            if noise and self.chance(noise):
                pieces.append(self.text())
        return b"".join(pieces)

    def soup(self):
        """Words of the format in any order, after a header mostly. Few, as one of them ends the file."""
        pieces = [b"<XML>", b" <highlights> " if self.chance(0.7) else b"<highlight>"] if self.chance(0.9) else []
        for _ in range(self.below(40)):
            kind = self.below(20)
            pieces.append(self.letters(self.pick(TAGS)) if kind < 15 else self.number() if kind < 18 else self.text())
            if self.chance(0.75):
                pieces.append(self.spacing() if self.chance(0.8) else self.pick((b"=", b'="', b'"', b"", b"!", b"\0")))
        return b"".join(pieces) + self.ending(0.7)

    # ------------------------------------------------------------------------------------------------- made from others

    def insertion(self):
        kind = self.below(8)
        if kind < 3:
            return self.any_bytes(1 + self.below(3))
        if kind < 5:
            return self.text()
        if kind == 5:
            return self.pick(MARKS)
        if kind == 6:
            return self.letters(self.pick(TAGS)) + self.spacing()
        return b"\0" if self.chance(0.1) else self.location()

    def mutation(self, data):
        data = bytearray(data)
        for _ in range(1 + self.below(3)):
            at = self.below(len(data) + 1)
            span = 1 + self.below(4) if self.chance(0.7) else 1 + self.below(60)
            kind = self.below(7)
            if kind == 0 and at < len(data):
                data[at] ^= 1 << self.below(8)
            elif kind == 1 and at < len(data):
                data[at] = self.below(256)
            elif kind == 2:
                data[at:at] = self.insertion()
            elif kind == 3:
                del data[at : at + span]
            elif kind == 4:
                data[at:at] = data[at : at + span]
            elif kind == 5:
                other = self.pick(self.pool)
                start = self.below(len(other) + 1)
                data[at : at + (span if self.chance(0.5) else 0)] = other[start : start + span]
            else:
                there = self.below(len(data) + 1)
                data[at:at] = data[there : there + span]
        return bytes(data) + self.ending(0.3)

    def family(self, data):
        """One change at every offset of a file."""
        kind = self.below(4)
        byte = self.any_bytes(1) if self.chance(0.3) else self.pick(MARKS)
        ending = self.ending(0.5)
        for at in range(len(data)):
            if kind == 0:
                yield data[:at] + ending
            elif kind == 1:
                yield data[:at] + data[at + 1 :]
            elif kind == 2:
                yield data[:at] + byte + data[at:]
            else:
                yield data[:at] + byte + data[at + 1 :]

    def files(self):
        """Endless."""
        while True:
            kind = self.random.random()
            if len(self.pool) < 4 or kind < 0.55:
                file = self.file()
                if len(self.pool) < 40:
                    self.pool.append(file)
                else:
                    self.pool[self.below(40)] = file
                yield file
            elif kind < 0.949:
                yield self.mutation(self.pick(self.pool))
            elif kind < 0.999:
                yield self.soup()
            else:
                short = min((self.pick(self.pool) for _ in range(3)), key=len)
                yield from self.family(short[:400])


def block(seed, number):
    """The block's files: (bytes, the user's answer to the version question)."""
    generator = Generator(seed, number)
    files = generator.files()
    return [(next(files), generator.chance(0.5)) for _ in range(FILES_IN_BLOCK)]


def edges():
    """Files that random generation makes too seldom; the result is like that of `block`."""
    head, tail = b"<XML><Body Units=characters><highlights>", b"</highlights></Body>"
    files = [b"", b"\0", b" ", b"\0<XML>", b"<XML>", b"<?xml", b"<html><XML>" + head + b"<loc pg=1 pos=1>" + tail]
    files.append(head + b"".join([b"<loc pg=%d pos=1>\n" % i for i in range(2000)]) + tail)
    # Every byte next to every class of bytes, and as a separator in a file.
    for byte in [bytes([i]) for i in range(256)]:
        files += [b"a" + byte + b"b", b"'a" + byte + b"' b'" + byte, b"\n " + byte + b"\n!" + byte + b"!", byte * 600]
        files += [b"<XML>" + byte + head[5:] + b"<loc pg=1" + byte + b"pos=2>" + tail]
    # Runs that end exactly at, before and after a split.
    for byte in b"a", b"<", b">", b"'", b"(", b" ", b"\n", b"!", b"=", b"\x80":
        for length in 249, 250, 251, 499, 500, 501:
            files += [byte * length + end for end in (b"", b"a", b" ", b"\n", b"!", b"=", b"' ", b") ")]
    # More positions on one page than a page holds. Only once, as each position is compared with all others.
    full = head + b"".join([b"<loc pg=1 pos=%d len=1>\n" % (i * 3 % 65536) for i in range(65536)]) + tail
    return [(data, answer) for data in files for answer in (True, False)] + [(full, True)]


def framed(files):
    """The driver's input: length and, in its top bit, whether the user answers no; then the bytes."""
    return b"".join(
        [struct.pack("<I", len(data) | (0 if answer else 0x80000000)) + data for data, answer in files]
    )


if __name__ == "__main__":
    made = edges() if sys.argv[2] == "-1" else block(sys.argv[1], int(sys.argv[2]))
    sys.stdout.buffer.write(framed(made) if len(sys.argv) < 4 else made[int(sys.argv[3])][0])
