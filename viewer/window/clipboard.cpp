// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Uses the toolkit's selections, which transfer large texts in parts.
#include "viewer/window/clipboard.h"

#include <X11/Xatom.h>

#include <algorithm>
#include <cstring>

#include "viewer/model/onelinetext.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

std::string s_copied; // while the selection is the program's

::Atom atom(::Widget widget, const char *name) { return XInternAtom(XtDisplay(widget), name, False); }

::Widget shellOf(::Widget widget) {
  while (XtParent(widget) != nullptr)
    widget = XtParent(widget);
  return widget;
}

std::string latin1Of(const std::string &utf8) {
  std::string bytes;
  for (size_t i = 0; i < utf8.size(); ++i) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    if (c < 0x80) bytes += utf8[i];
    if (c < 0xC0) continue;
    const bool fits = c < 0xC4 && i + 1 < utf8.size();
    bytes += fits ? static_cast<char>((c & 3U) << 6U | (static_cast<unsigned char>(utf8[i + 1]) & 0x3FU)) : '?';
  }
  return bytes;
}

template <typename T>
void give(const T *items, size_t count, int format, XtPointer *value, unsigned long *length, int *itsFormat) {
  *value = XtMalloc(static_cast<Cardinal>(std::max<size_t>(1, count * sizeof(T))));
  std::memcpy(*value, items, count * sizeof(T));
  *length = count;
  *itsFormat = format;
}

bool giveAs(::Widget shell, const ::Atom *target, ::Atom *type, XtPointer *value, unsigned long *length, int *format) {
  const ::Atom utf8 = atom(shell, "UTF8_STRING"), text = atom(shell, "TEXT"), targets = atom(shell, "TARGETS"),
               mime = atom(shell, "text/plain;charset=utf-8");
  constexpr int byte = 8, number = 32;
  if (*target == targets) {
    const ::Atom offered[] = {targets, atom(shell, "TIMESTAMP"), utf8, mime, text, XA_STRING};
    give(offered, std::size(offered), number, value, length, format);
    *type = XA_ATOM;
  } else if (*target == utf8 || *target == mime || *target == text) {
    give(s_copied.data(), s_copied.size(), byte, value, length, format);
    *type = *target == mime ? mime : utf8;
  } else if (*target == XA_STRING) {
    const std::string bytes = latin1Of(s_copied);
    give(bytes.data(), bytes.size(), byte, value, length, format);
    *type = XA_STRING;
  } else {
    return false;
  }
  return true;
}

Boolean convert(::Widget shell, ::Atom * /*selection*/, ::Atom *target, ::Atom *type, XtPointer *value,
                unsigned long *length, int *format) {
  bool given = false;
  guarded([&] { given = giveAs(shell, target, type, value, length, format); });
  return given ? True : False;
}

void lose(::Widget /*shell*/, ::Atom * /*selection*/) { s_copied.clear(); }

} // namespace

void copyToClipboard(::Widget widget, const std::string &text, ::Time time) {
  ::Widget shell = shellOf(widget);
  if (XtOwnSelection(shell, atom(shell, "CLIPBOARD"), time, convert, lose, nullptr) != False) s_copied = text;
}

} // namespace viewer
