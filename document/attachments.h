// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The files in a document.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/details.h"
#include "document/owned.h"
#include "document/texts.h"
#include "host/document/structure.h"

namespace document {

std::vector<host::Attachment> attachmentsOf(PopplerDocument &pdf, Details &details, Texts &texts);

/// The bytes of one.
struct Attached {
  enum State { complete, missing, damaged, tooLarge, noMemory };
  State state = missing;
  std::string bytes = {}; ///< if it is complete
};

/// `index` is one into the result of attachmentsOf(). No more than the first `most::attachedFile` bytes are decoded.
Attached attachedFile(PopplerDocument &pdf, uint32_t index);

} // namespace document
