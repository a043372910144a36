// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A table by which the plug-ins of the loader's tests record what was called. The test offers it.
#pragma once

#include "tavrel/hft.h"

extern tavrel::HFT gJournalHFT;

namespace test {
inline constexpr const char *journalName = "Journal";
inline constexpr uint32_t journalVersion = 1;
/// Notes a line.
inline constexpr tavrel::Operation<gJournalHFT, 0, void(const char *line)> note{"note"};
} // namespace test
