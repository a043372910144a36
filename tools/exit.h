// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The exit statuses of the command, documented in its help and its manual page.
#pragma once

namespace tools {

enum ExitStatus : int {
  exitDone = 0,
  exitHostFailure = 1,   ///< no display, a plug-in that cannot be loaded, memory exhausted, or a process that
                         ///< cannot be started
  exitUsage = 2,         ///< invalid arguments
  exitDocument = 3,      ///< the document cannot be read
  exitPassword = 4,      ///< the document is encrypted: a password is needed, or another one
  exitNothingMarked = 5, ///< no hits: nothing found, or nothing in the highlight file that the document has
  exitHighlightFile = 6, ///< the highlight file cannot be read
  exitOutput = 7,        ///< an output cannot be written
  exitPagesLeftOut = 8,  ///< done, except for the pages of the document that cannot be read
};

} // namespace tools
