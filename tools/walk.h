// Goes through a document's pages the way a reader does, and has each page drawn.
#pragma once

#include <functional>

#include "host/view/application.h"

namespace tools {

/// What a walk comes across: each page once. Drawings are to keep.
struct PageSink {
  std::function<void(host::Drawing &&drawing)> drawn;
  std::function<void(int32_t page)> damaged; ///< a page that cannot be drawn (DocumentError); the walk goes on
};

/// The button that goes on to the next hit.
inline constexpr const char *nextButton = "TavrelGLT:Next";

/// Draws what is shown and presses the button that goes on for as long as it is enabled; the sink gets the pages on
/// which marks were painted or could not be, and the damaged ones. Ends, too, when more than `limit` presses in a row
/// brought no new page: a plug-in may offer hits on pages that the document lacks. Throws HostError where no page can
/// be drawn.
void walkMarkedPages(host::Application &app, host::ViewerDocument &document, size_t limit, const PageSink &sink);

/// Shows and draws every page of the document, in order.
void walkAllPages(host::Application &app, host::ViewerDocument &document, const PageSink &sink);

} // namespace tools
