// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The links, forms and annotations of a page.
#pragma once

#include "document/frames.h"
#include "document/owned.h"
#include "host/document/structure.h"

namespace document {

/// Without the number of the page.
host::PageStructure pageStructureOf(PopplerDocument &pdf, PopplerPage &page, PageFrames &frames);

} // namespace document
