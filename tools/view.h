// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// `tavrel view`: shows documents in a window.
#pragma once

namespace CLI {
class App;
}

namespace tools {

/// Adds the subcommand; when it is called it sets `status` to an ExitStatus. Both live as long as the parser.
void addViewCommand(CLI::App &app, int &status);

} // namespace tools
