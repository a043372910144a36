// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Steps through a document's pages as a user does, and draws each page.
#pragma once

#include <functional>

#include "host/document/documenterror.h"
#include "host/view/application.h"

namespace tools {

/// Receives the pages of a walk, each once, and owns their drawings.
struct PageSink {
  std::function<void(host::Drawing &&drawing)> drawn;
  /// A page that cannot be drawn; the walk goes on.
  std::function<void(int32_t page, const host::DocumentError &error)> failed;
};

/// Draws the page shown and presses the button that steps to the next hit as long as it is enabled. The sink gets the
/// pages on which there are marks, painted or outside of the page, and those that fail. Ends, too, after more than
/// `limit` presses in a row without a new page: a plug-in may have hits on pages that the document lacks. Throws
/// HostError if no page can be drawn.
void walkMarkedPages(host::Application &app, host::ViewerDocument &document, size_t limit, const PageSink &sink);

/// Shows and draws every page of the document, in order.
void walkAllPages(host::Application &app, host::ViewerDocument &document, const PageSink &sink);

} // namespace tools
