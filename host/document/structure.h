// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What a document says about itself besides its pages' words and images: its title, the names of its pages, its
// outline, the files in it; and the links, forms and annotations of a page. Texts are UTF-8. A line has no control
// characters; lines have line feeds and tabs besides.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/document/page.h"

namespace host {

/// A position in the document; what is not given is as the reader has it.
struct PageTarget {
  int32_t page = 0;
  std::optional<double> left = {}, top = {}; ///< points in the page's space, see Box; may be beyond the page
  std::optional<double> zoom = {};           ///< 1 is the page's size
};

struct UriTarget {
  std::string uri; ///< printable ASCII without spaces; not checked besides
};

/// Another file, which may be a document. What else it may be, it must not be run.
struct FileTarget {
  std::string file;                 ///< a line, as the document has it: any path
  std::optional<int32_t> page = {}; ///< its destination, unless it has a name
  std::string destination = {};     ///< a line
};

/// Something that a reader can do anyway.
struct ActionTarget {
  std::string name; ///< a line; those of the PDF standard are NextPage, PrevPage, FirstPage and LastPage
};

/// Where a link leads. None for what is not there, and for what nobody should follow, such as a script.
using Target = std::variant<std::monostate, PageTarget, UriTarget, FileTarget, ActionTarget>;

struct Metadata {
  std::string title, author, subject, keywords, creator, producer; ///< lines
  std::optional<int64_t> created = {}, modified = {};              ///< seconds since 1970, UTC
  std::string format = {};                                         ///< a line, such as "PDF-1.7"
};

struct OutlineEntry {
  int32_t depth = 0; ///< 0 at the top level, and at most one more than that of the entry before
  std::string title; ///< a line
  bool isOpen = false;
  Target target = {};
};

/// A file in the document.
struct Attachment {
  std::string name, description;     ///< lines
  std::string type = {};             ///< a line, as the document has it: a MIME type, or empty
  std::optional<uint64_t> size = {}; ///< bytes, as the document has it: it may be wrong
};

struct Structure {
  Metadata metadata;
  std::vector<std::string> labels; ///< of all pages, lines; none if they are the numbers from 1
  std::vector<OutlineEntry> outline;
  std::vector<Attachment> attachments;
};

struct Link {
  Box area;
  Target target;
};

struct FormField {
  enum class Kind : uint8_t { button, checkBox, radioButton, text, choice, signature, unknown };
  Kind kind = Kind::unknown;
  Box area = {};
  std::string name = {};     ///< a line
  std::string contents = {}; ///< lines: a text, or what is chosen, each in a line; not of a password
  bool isOn = false;         ///< of a check box or radio button
  bool isReadOnly = false;
};

struct Annotation {
  enum class Kind : uint8_t {
    note,
    freeText,
    line,
    square,
    circle,
    polygon,
    polyLine,
    highlight,
    underline,
    squiggly,
    strikeOut,
    stamp,
    caret,
    ink,
    file,
    other
  };
  Kind kind = Kind::other;
  Box area = {};
  std::string contents = {}; ///< lines
};

/// What is on a page besides its contents. The areas are parts of the page.
struct PageStructure {
  int32_t page = 0;
  std::vector<Link> links;
  std::vector<FormField> fields;
  std::vector<Annotation> annotations; ///< that are shown; neither links nor fields
};

struct AttachedFile {
  uint32_t index = 0; ///< into Structure::attachments
  std::string bytes;
};

/// The most that is taken of a document. What is beyond is left out, or truncated.
namespace most {
inline constexpr size_t outline = 100'000;
inline constexpr int32_t depth = 64; ///< levels of the outline
inline constexpr size_t attachments = 10'000;
inline constexpr size_t onPage = 10'000;              ///< links, fields, annotations, each
inline constexpr size_t line = 4096, lines = 1 << 16; ///< bytes
inline constexpr size_t text = 16 << 20;              ///< bytes, of all texts in an answer
inline constexpr size_t attachedFile = 48 << 20;      ///< bytes
} // namespace most

/// Whether it is all as described here; `pages` is the document's number of pages.
bool isValid(const Structure &structure, int32_t pages);
bool isValid(const PageStructure &structure, int32_t pages);

/// Whether a number of points or a zoom can be computed with.
bool isUsablePosition(double points);
bool isUsableZoom(double zoom);
/// Whether it has only the characters of a URI.
bool isUri(std::string_view text);

} // namespace host
