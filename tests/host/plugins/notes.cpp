// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in with notes before its version's, each of which a careless search takes for it: another owner of the same
// length, the same owner with another type, an owner and a content whose sizes are no multiples of four.
#include "LoadedPlugin.h"
#include "tavrel/plugin.h"

const LoadedPlugin loadedPlugin = {.name = "notes"};

namespace {

struct OtherNote {
  uint32_t ownerSize, textSize, type;
  char owner[8], text[8];
};

// One object, so that no compiler changes their order.
struct Notes {
  OtherNote otherOwner = {7, 8, 1, "Gravel", "owner"};
  OtherNote otherType = {7, 8, 2, "Tavrel", "type"};
  OtherNote unevenSizes = {5, 6, 1, "Five", "sizes"};
  tavrel::VersionNote own = {.text = "a version of 31 characters....."};
};

[[gnu::section(".note.tavrel"), gnu::used, gnu::aligned(4)]] const Notes notes{};

} // namespace
