// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The locale and the environment variables of Xlib.
#pragma once

namespace viewer {

/// Must be called before threads are started, which read both, and before the toolkit is.
void prepareEnvironment();

} // namespace viewer
