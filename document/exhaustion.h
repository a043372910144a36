// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What happens when memory is exhausted while a request is answered: the process says so and ends. The PDF library goes
// on without the memory, and then draws a page of which a part is missing, or crashes.
#pragma once

#include <cstddef>
#include <string>

namespace document {

/// While it exists, an allocation that fails sends a message through the socket of the owner and ends the process;
/// unless it is larger than all memory that the process may have, which only a damaged file asks for. There is one at a
/// time, in one thread. Has no effect under the sanitizers, which have allocators of their own.
class LastWords {
public:
  /// The message outlives this object. `memory` is the limit, in bytes; 0: none.
  LastWords(const std::string &message, size_t memory);
  LastWords(const LastWords &) = delete;
  LastWords &operator=(const LastWords &) = delete;
  ~LastWords();
};

} // namespace document
