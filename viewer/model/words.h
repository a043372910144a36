// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which pages' words are asked for ahead and how long they are kept, in one document: a page's words take a hundred
// times the memory of its text.
#pragma once

#include <cstdint>
#include <vector>

#include "host/document/document.h"

namespace viewer {

class Words {
public:
  /// Asks for the words of a page that is shown or about to be.
  void expect(host::Document &document, int32_t page, bool shown);
  /// A page is shown: forgets the words of others, except those shown last, those next to it and those read last.
  void show(host::Document &document, int32_t page);
  /// The words of a page that is not shown have been read: keeps them with those read last.
  void read(host::Document &document, int32_t page);
  /// Nobody waits any more for the words of a page that is not shown.
  void drop(host::Document &document, int32_t page);

private:
  bool keeps(int32_t page) const;

  std::vector<int32_t> shown_;    ///< the last one shown last
  std::vector<int32_t> read_;     ///< likewise
  std::vector<int32_t> expected_; ///< the others that were asked for
};

} // namespace viewer
