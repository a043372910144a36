# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""A second implementation of the plug-in's lexer and reader of highlight files, in simple Python.

It is independent of the C++ code. compare.py runs both on the same files and reports differences.
`python3 model.py FILE...` prints the tokens and the result of the given files.
"""

import sys

# ---------------------------------------------------------------------------------------------------------- the lexer

PARA, PUNCT, WORD, OTHER, NEWLINE, SPACE = 301, 302, 303, 304, 305, 306
LONGEST = 250  # characters in a token; the rest of a longer run is the next token

LINE_FEED = 10
WHITE_SPACE = frozenset(b" \t\n\v\f\r")
SENTENCE_END = frozenset(b".?!\0")  # the C search for a character in ".?!" finds its terminating NUL, too
PUNCTUATION = frozenset(b".?! \t\0")


def _word_characters():
    members = set(b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789`'?-*{}<>._#&()/\x14\x15")
    for first, last in ((0x80, 0xA5), (0xB5, 0xB8), (0xBD, 0xBE), (0xC6, 0xC7), (0xCF, 0xD8), (0xE0, 0xED)):
        members.update(range(first, last + 1))
    return frozenset(members)


WORD_CHARACTERS = _word_characters()
CLOSING = {ord("'"): ord("'"), ord("("): ord(")")}


class Lexer:
    """Splits a text, which ends at its first NUL, into tokens."""

    def __init__(self, text):
        self.text = text + b"\0"
        self.cursor = 0
        self.pending1 = 0
        self.pending2 = 0
        self.pending_text = b""

    def at_end(self):
        return self.text[self.cursor] == 0

    def getch(self):
        character = self.text[self.cursor]
        if character:
            self.cursor += 1
        return character

    def match(self):
        """The next token: (kind, bytes)."""
        first = self.pending1
        if first:
            self.pending1, self.pending2 = self.pending2, 0
            if first == SPACE:
                return SPACE, self.pending_text
        else:
            first = self.getch()
        if first in WORD_CHARACTERS:
            return self.word(first)
        if first == LINE_FEED:
            return self.line_break(bytearray(), first)
        if first in WHITE_SPACE:
            return self.space(first)
        if first in SENTENCE_END:
            return self.punctuation(first)
        return self.other(first)

    def word(self, character):
        stored = bytearray()
        closing = CLOSING.get(character)  # None: not, or no longer, quoted
        while True:
            stored.append(character)
            character = self.getch()
            if character == closing and self.text[self.cursor] not in WORD_CHARACTERS:
                closing = None  # the closing character still belongs to the word
            if len(stored) == LONGEST or character == 0:
                break
            if character not in WORD_CHARACTERS and closing is None:
                break
        self.pending1 = character
        return WORD, bytes(stored)

    def line_break(self, stored, character):
        """`stored`: the white space before the line feed `character`."""
        stored.append(character)
        after_last_feed = len(stored)
        kind = NEWLINE
        character = self.getch()
        while character in WHITE_SPACE and len(stored) < LONGEST:
            stored.append(character)
            if character == LINE_FEED:
                after_last_feed = len(stored)
                kind = PARA
            character = self.getch()
        if after_last_feed == len(stored):
            self.pending1 = character
        else:
            self.pending_text = bytes(stored[after_last_feed:])
            self.pending1, self.pending2 = SPACE, character
        return kind, bytes(stored[:after_last_feed])

    def space(self, character):
        stored = bytearray()
        while character in WHITE_SPACE and len(stored) < LONGEST:
            if character == LINE_FEED:
                return self.line_break(stored, character)
            stored.append(character)
            character = self.getch()
        self.pending1 = character
        return SPACE, bytes(stored)

    def punctuation(self, character):
        stored = bytearray([character])
        character = self.pending1 or self.getch()
        self.pending1 = 0
        while character in PUNCTUATION and len(stored) < LONGEST:
            stored.append(character)
            character = self.getch()
        self.pending1 = character
        return PUNCT, bytes(stored).split(b"\0")[0]  # NULs of the text's end are stored, but end the token's text

    def other(self, character):
        stored = bytearray()
        while len(stored) < LONGEST and not (
            character in WORD_CHARACTERS or character in WHITE_SPACE or character in SENTENCE_END
        ):
            stored.append(character)
            character = self.getch()
        self.pending1 = character
        return OTHER, bytes(stored)


def all_tokens(text):
    """All tokens, and how many of them a caller gets that stops when the cursor is at the end.

    Such a caller loses the pending tokens: at most one run of spaces and one character.
    """
    lexer = Lexer(text)
    tokens = []
    reached = 0
    while True:
        if not lexer.at_end():
            reached = len(tokens) + 1
        elif not lexer.pending1:
            return tokens, reached
        tokens.append(lexer.match())


# --------------------------------------------------------------------------------------------------------- the reader


class Words:
    """The words of a file; tags that are joined without a separator are split here."""

    def __init__(self, tokens):
        self.tokens = iter(tokens)
        self.left = len(tokens)
        self.pieces = []  # further pieces of the last word

    def text_remains(self):
        return self.left > 0 or bool(self.pieces)

    def next(self):
        """The next word, or None when the text has run out."""
        while True:
            if self.pieces:
                return self.pieces.pop(0)
            if self.left == 0:
                return None
            self.left -= 1
            kind, text = next(self.tokens)
            if kind != WORD:
                continue
            if text[:1] in (b"'", b"("):
                return text
            self.pieces = text.replace(b"><", b">\0<").split(b"\0")


def same(word, name):
    return word.lower() == name  # bytes.lower() knows ASCII letters only, as tolower does in the "C" locale


def to_number(text):
    """What the C conversions give: leading sign and digits, 0 without any; clamped to 32 bits."""
    text = text.lstrip(b" \t\n\v\f\r")
    sign = 1
    if text[:1] in (b"-", b"+"):
        sign = -1 if text[:1] == b"-" else 1
        text = text[1:]
    value = 0
    for character in text:
        if not 0x30 <= character <= 0x39:
            break
        value = value * 10 + character - 0x30
    return max(-(2**31), min(2**31 - 1, sign * value))


def low16(value):
    return value & 0xFFFF


def signed16(value):
    value = low16(value)
    return value - 0x10000 if value & 0x8000 else value


def hex_to_int(text):
    """The leftmost digit is the least significant."""
    value = 0
    for position, character in enumerate(text[:4]):
        digit = character - 0x30 if 0x30 <= character <= 0x39 else character - 55
        value += digit * 16**position
    return low16(value)


def parse_rgb(text):
    """(red, green, blue), or None for a text that is no colour."""
    text = text.upper()
    if any(character not in b"0123456789ABCDEF" for character in text):
        return None
    return tuple(hex_to_int(text[start : start + 2]) for start in (0, 2, 4))


class HighlightList:
    """Pages in the order of adding, and in each the positions in the order of adding."""

    MOST_ON_A_PAGE = 65519  # entries that a page can hold; further ones are counted, but not stored

    def __init__(self):
        self.pages = {}
        self.word_count = 0

    def add(self, page, position, length):
        words = self.pages.setdefault(page, {})
        if position in words:
            return
        if len(words) < self.MOST_ON_A_PAGE:
            words[position] = length
        self.word_count += 1

    def entries(self):
        return [(page, pos, length) for page, words in self.pages.items() for pos, length in words.items()]


class Result:
    """The result of reading one file. Fields below `asked` are valid only if the file was registered."""

    def __init__(self):
        self.registered = False
        self.checked = None  # the word extraction version requested from the host, or None
        self.asked = False  # whether the user was asked about the version
        self.units = ""  # "characters" or "words"
        self.colour = None  # or (red, green, blue)
        self.scroll = False
        self.version_text = b""
        self.version = None  # of word extraction, for word offsets; None for character offsets
        self.entries = []
        self.word_count = 0  # accepted additions; can exceed the entries


class Reader:
    """Reads one file. `versions`: those that the host has; `answer`: the user's answer to the version question."""

    def __init__(self, versions, answer):
        self.versions = versions
        self.answer = answer
        self.units_text = b""
        self.version_text = b""
        self.rgb = None
        self.active = False
        self.page = self.position = self.length = 0
        self.header_names = [
            [(b"units",), self.set_units, False],
            [(b"color",), self.set_color, False],
            [(b"mode",), self.set_mode, False],
            [(b"version",), self.set_version, False],
        ]
        self.location_names = [
            [(b"page", b"pg"), self.set_page, False],
            [(b"position", b"pos"), self.set_position, False],
            [(b"length", b"len"), self.set_length, False],
        ]

    def set_units(self, value):
        self.units_text = value[:14]

    def set_color(self, value):
        self.rgb = parse_rgb(value[1:] if value[:1] == b"#" else value)

    def set_mode(self, value):
        if same(value, b"active"):
            self.active = True

    def set_version(self, value):
        self.version_text = value[:9]

    def set_page(self, value):
        self.page = to_number(value)

    def set_position(self, value):
        self.position = low16(to_number(value))

    def set_length(self, value):
        self.length = low16(to_number(value))

    def attributes(self, words, names):
        """A name without a value stays pending into the next tag of its kind: `names` outlives the tag."""
        while words.text_remains():
            word = words.next()
            if word is None:
                return
            last = word.endswith(b">")
            if last:
                word = word[:-1]
            for entry in names:
                spellings, take, pending = entry
                if any(same(word, spelling) for spelling in spellings):
                    entry[2] = True
                    break
                if pending:
                    entry[2] = False
                    take(word)
                    break
            if last:
                return

    def location(self, words, highlights):
        self.page, self.position, self.length = -1, 0xFFFF, 0
        self.attributes(words, self.location_names)
        if self.page != -1 and self.position != 0xFFFF:
            highlights.add(self.page, self.position, self.length)

    def find_highlights(self, words):
        """The list at the </Body> that ends a file, None if there is none."""
        header = True
        highlights = None
        section = False
        while words.text_remains():
            word = words.next()
            if word is None:
                return None
            if header:
                if not (same(word, b"<xml>") or same(word, b"<?xml")):
                    return None
                header = False
            elif same(word, b"<body>") or same(word, b"<body"):
                if not word.endswith(b">") and words.text_remains():
                    self.attributes(words, self.header_names)
            elif same(word, b"<highlights>") or same(word, b"<highlight>"):
                if highlights is None:
                    highlights = HighlightList()
                section = True
            elif highlights is not None and (same(word, b"</highlights>") or same(word, b"</highlight>")):
                section = False
            elif section and (same(word, b"<location") or same(word, b"<loc")):
                self.location(words, highlights)
            elif section and (same(word, b"<location>") or same(word, b"<loc>")):
                pass  # carries no attributes and adds nothing
            elif same(word, b"</body>"):
                if highlights is not None and highlights.word_count:
                    return highlights
            elif same(word, b"</xml>"):
                return None
        return None

    def read(self, tokens):
        result = Result()
        highlights = self.find_highlights(Words(tokens))
        if highlights is None:
            return result
        result.colour = self.rgb
        result.units = "characters" if same(self.units_text, b"characters") else "words"
        result.version_text = self.version_text or b"2"
        if result.units == "words":
            result.version = result.checked = signed16(to_number(result.version_text))
            if result.version not in self.versions:
                result.asked = True
                result.version = 2
                if not self.answer:
                    return result
        result.registered = True
        result.scroll = self.active
        result.entries = highlights.entries()
        result.word_count = highlights.word_count
        return result


# ------------------------------------------------------------------------------------------------------------- output

HOST_VERSIONS = frozenset((1, 2))


def model(data, answer=True, versions=HOST_VERSIONS):
    """(tokens, result) of a file's bytes."""
    tokens, reached = all_tokens(data.split(b"\0")[0])
    return tokens, Reader(versions, answer).read(tokens[:reached])


def tokens_line(tokens):
    return ",".join(["%d:%s" % (kind, text.hex()) for kind, text in tokens])


def result_line(result):
    """One line with everything about a result that is visible from outside."""
    check = "checked=%s asked=%d" % ("-" if result.checked is None else result.checked, result.asked)
    if not result.registered:
        return "unregistered " + check
    return "registered %s units=%s version=%s colour=%s scroll=%d words=%d list=%s" % (
        check,
        result.units,
        "-" if result.version is None else result.version,
        "-" if result.colour is None else "%d,%d,%d" % result.colour,
        result.scroll,
        result.word_count,
        ",".join(["%d:%d+%d" % entry for entry in result.entries]),
    )


def line(data, answer=True):
    """The line that the driver prints for the same file, and the result."""
    tokens, result = model(data, answer)
    return tokens_line(tokens) + " " + result_line(result), result


def main(names):
    for name in names:
        with open(name, "rb") as file:
            tokens, result = model(file.read())
        for kind, text in tokens:
            print(kind, text)
        print(result_line(result))


if __name__ == "__main__":
    main(sys.argv[1:])
