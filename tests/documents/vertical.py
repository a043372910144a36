#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Writes a PDF with vertical writing: vertical.py FONT.ttf OUT.pdf

The complete font is embedded; its glyphs are shown by Identity-V. PAGES describes the pages.
"""
import struct
import sys
import zlib

# Of each page: columns as (x, y, size, text); x is the middle of the column, y its upper end, in points.
PAGES = [
    [(300, 500, 24, "検索結果")],
    [(120, 400, 48, "東京")],
    [(340, 550, 14, "検索 結果を表示"), (320, 550, 14, "東京と大阪、検索"), (300, 550, 14, "表示する。")],
]
WIDTH, HEIGHT = 400, 600


def glyphs(font):
    """The font's glyph number of each code point of the basic plane."""
    tables = {}
    for i in range(struct.unpack(">H", font[4:6])[0]):
        tag, _, offset, length = struct.unpack(">4sIII", font[12 + 16 * i : 28 + 16 * i])
        tables[tag] = font[offset : offset + length]
    cmap = tables[b"cmap"]
    for i in range(struct.unpack(">H", cmap[2:4])[0]):
        platform, encoding, offset = struct.unpack(">HHI", cmap[4 + 8 * i : 12 + 8 * i])
        if (platform, encoding) == (3, 1):
            return lambda c: format4(cmap[offset:], c)
    raise SystemExit("the font has no map of the basic plane")


def format4(map, c):
    segments = struct.unpack(">H", map[6:8])[0] // 2

    def word(array, i):
        at = 14 + 2 * segments * array + (2 if array else 0) + 2 * i
        return struct.unpack(">H", map[at : at + 2])[0], at
    for i in range(segments):
        end, start = word(0, i)[0], word(1, i)[0]
        if start <= c <= end:
            delta, (offset, at) = word(2, i)[0], word(3, i)
            if offset == 0:
                return (c + delta) & 0xFFFF
            position = at + offset + 2 * (c - start)
            glyph = struct.unpack(">H", map[position : position + 2])[0]
            return (glyph + delta) & 0xFFFF if glyph else 0
    return 0


def pdf(font):
    glyph = glyphs(font)
    used = sorted({c for page in PAGES for column in page for c in column[3]})

    def stream(data, extra=b""):
        packed = zlib.compress(data)
        return b"<< /Length %d /Filter /FlateDecode %s>>\nstream\n%s\nendstream" % (len(packed), extra, packed)
    meanings = "/CIDInit /ProcSet findresource begin 12 dict begin begincmap /CMapType 2 def\n" \
               "1 begincodespacerange <0000> <FFFF> endcodespacerange\n"
    for c in used:
        meanings += "1 beginbfchar <%04X> <%04X> endbfchar\n" % (glyph(ord(c)), ord(c))
    meanings += "endcmap CMapName currentdict /CMap defineresource pop end end\n"
    kids = " ".join("%d 0 R" % (8 + 2 * i) for i in range(len(PAGES)))
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [%s] /Count %d >>" % (kids.encode(), len(PAGES)),
        b"<< /Type /Font /Subtype /Type0 /BaseFont /Fallback /Encoding /Identity-V /DescendantFonts [4 0 R] "
        b"/ToUnicode 6 0 R >>",
        b"<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Fallback /CIDSystemInfo << /Registry (Adobe) "
        b"/Ordering (Identity) /Supplement 0 >> /FontDescriptor 5 0 R /DW 1000 /CIDToGIDMap /Identity >>",
        b"<< /Type /FontDescriptor /FontName /Fallback /Flags 4 /FontBBox [0 -120 1000 880] /ItalicAngle 0 "
        b"/Ascent 880 /Descent -120 /CapHeight 880 /StemV 80 /FontFile2 7 0 R >>",
        stream(meanings.encode()),
        stream(font, b"/Length1 %d " % len(font)),
    ]
    for page in PAGES:
        content = ""
        for x, y, size, text in page:
            codes = "".join("%04X" % glyph(ord(c)) for c in text)
            content += "BT /F %g Tf 1 0 0 1 %g %g Tm <%s> Tj ET\n" % (size, x, y, codes)
        objects.append(b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 %d %d] /Resources << /Font << /F 3 0 R >> >> "
                       b"/Contents %d 0 R >>" % (WIDTH, HEIGHT, len(objects) + 2))
        objects.append(stream(content.encode()))
    out, offsets = b"%PDF-1.5\n", []
    for number, body in enumerate(objects, 1):
        offsets.append(len(out))
        out += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    start = len(out)
    out += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    out += b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    return out + b"trailer << /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, start)


if __name__ == "__main__":
    with open(sys.argv[1], "rb") as file:
        data = file.read()
    with open(sys.argv[2], "wb") as file:
        file.write(pdf(data))
