// Goes through a document's pages the way a reader does, and has each page drawn.
#pragma once

#include <functional>

#include "host/view/application.h"

namespace tools {

/// Gets every page once, to keep.
using PageSink = std::function<void(host::Drawing &&drawing)>;

/// The button that goes on to the next hit.
inline constexpr const char *nextButton = "TavrelGLT:Next";

/// Draws what is shown and presses the button that goes on for as long as it is enabled; the sink gets the pages on
/// which marks were painted or could not be. Ends, too, when more than `patience` presses in a row brought no new page:
/// a plug-in may offer hits on pages that the document has not.
void walkMarkedPages(host::Application &app, host::ViewerDocument &document, size_t patience, const PageSink &sink);

/// Shows and draws every page of the document, in order.
void walkAllPages(host::Application &app, host::ViewerDocument &document, const PageSink &sink);

} // namespace tools
