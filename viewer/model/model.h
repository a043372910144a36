// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The owners of the viewer's state, for the window and for commands. The session makes them.
#pragma once

#include "viewer/model/listtexts.h"
#include "viewer/model/matchcount.h"
#include "viewer/model/opener.h"
#include "viewer/model/screen.h"

namespace viewer {

struct Model {
  Changes &changes;
  StatusLine &status;
  Documents &documents;
  Opener &opener;
  Moving &moving;
  Tiles &tiles;
  Finding &finding;
  MatchCount &matchCount;
  Screen &screen;
  ListTexts &listTexts;
};

} // namespace viewer
