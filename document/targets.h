// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Where links and entries of the outline lead.
#pragma once

#include "document/frames.h"
#include "document/owned.h"
#include "document/texts.h"
#include "host/document/structure.h"

namespace document {

class Targets {
public:
  /// For one answer, whose texts are counted by `texts`.
  Targets(PopplerDocument &pdf, PageFrames &frames, Texts &texts) : pdf_(pdf), frames_(frames), texts_(texts) {}

  /// Of an action, which may be null.
  host::Target of(const PopplerAction *action) const;

private:
  host::Target onPage(const PopplerDest *destination) const;
  host::Target inDocument(const PopplerDest *destination) const;
  host::Target inFile(const char *name, const PopplerDest *destination) const;

  PopplerDocument &pdf_;
  PageFrames &frames_;
  Texts &texts_;
};

} // namespace document
