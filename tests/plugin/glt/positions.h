// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Registered lists and current positions, for tests.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <vector>

#include "plugin/glt/glt.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"

/// The current highlight: page index and word index.
struct Position {
  uint32_t page;
  uint16_t word;
  bool operator==(const Position &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const Position &p) {
  return out << '(' << p.page << ", " << p.word << ')';
}

/// The document's record, without a call in the trace; null where there is none.
inline GLTRecord *recordOf(tavrel::Doc document) {
  RecordingHost &host = RecordingHost::current();
  const size_t calls = host.calls, length = host.trace.size();
  GLTRecord *record = GLTFindRecord(document);
  host.calls = calls;
  host.trace.resize(length);
  return record;
}

/// The current position of a document with a registered list.
inline Position positionOf(tavrel::Doc document) {
  const GLTRecord *record = recordOf(document);
  return {record->curPage, record->curWord};
}

/// Sets the current position without any check.
inline void setPosition(tavrel::Doc document, Position position) {
  GLTRecord *record = recordOf(document);
  record->curPage = position.page;
  record->curWord = position.word;
}

/// Registers a list of character offsets for the host's document and clears the trace.
inline void registerPages(RecordingHost &host, std::initializer_list<Highlight> highlights) {
  const ListOwner list(highlights);
  GLT_RegisterHLL(host.doc, list, tavrel::GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  host.clear();
}

/// A page record of a list: its number and how many highlights it has.
struct PageOf {
  int32_t page;
  uint16_t highlights;
};

/// Registers an empty list and fills the registry's copy, which may then have pages without highlights. Clears the
/// trace.
inline void registerRecords(RecordingHost &host, const std::vector<PageOf> &pages, tavrel::GLTJumpProc jumpProc) {
  const ListOwner empty({}, &host);
  GLT_RegisterHLL(host.doc, empty, tavrel::GLT_CHARACTER_OFFSETS, jumpProc, nullptr, 0, nullptr);
  HLL *list = recordOf(host.doc)->hll;
  for (const auto &[page, highlights] : pages) {
    HLLInsertPage(list, page);
    for (uint16_t pos = 0; pos < highlights; ++pos)
      HLL_AddHL(list, page, pos, 1);
  }
  host.clear();
}

/// A new-list procedure that records its call in the trace.
inline void noteNew(tavrel::Doc document, HLL *list, void *userData) {
  RecordingHost::current().trace.push_back("newProc(" + describe(document) + ", " + describe(list) + ", " +
                                           describe(userData) + ")");
}
