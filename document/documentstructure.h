// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What a document says about itself besides its pages.
#pragma once

#include "document/details.h"
#include "document/frames.h"
#include "document/owned.h"
#include "host/document/structure.h"

namespace document {

host::Structure structureOf(PopplerDocument &pdf, PageFrames &frames, Details &details);

} // namespace document
