// The window around: followed in its size, and gone with it.
#include "viewer/window/embedding.h"

#include <X11/IntrinsicP.h>
#include <X11/Shell.h>

#include <cstdlib>

#include "host/kernel/error.h"
#include "viewer/window/mainwindow.h"

namespace viewer {
namespace {

bool s_refused;
int noteError(::Display * /*display*/, XErrorEvent * /*event*/) {
  s_refused = true;
  return 0;
}

} // namespace

Embedding::Embedding(Toolkit &toolkit, MainWindow &window, const std::string &into)
    : toolkit_(toolkit), window_(window) {
  char *end = nullptr;
  outer_ = std::strtoul(into.c_str(), &end, 0);
  ::Display *display = toolkit.display();
  s_refused = into.empty() || *end != '\0' || outer_ == 0;
  if (!s_refused) {
    const auto before = XSetErrorHandler(noteError);
    XSelectInput(display, outer_, StructureNotifyMask);
    XReparentWindow(display, XtWindow(toolkit.shell()), outer_, 0, 0);
    XSync(display, False);
    XSetErrorHandler(before);
  }
  if (s_refused) throw host::HostError(tavrel::errGeneric, "window " + into + ": there is no such window");
  XtRegisterDrawable(display, outer_, toolkit.shell());
  XtAddEventHandler(toolkit.shell(), StructureNotifyMask | ButtonPressMask, False, handle, this);
  fill();
}

Embedding::~Embedding() {
  XtRemoveEventHandler(toolkit_.shell(), StructureNotifyMask | ButtonPressMask, False, handle, this);
  XtUnregisterDrawable(toolkit_.display(), outer_);
}

void Embedding::fill() {
  XWindowAttributes outer{};
  if (XGetWindowAttributes(toolkit_.display(), outer_, &outer) != 0)
    XtResizeWidget(toolkit_.shell(), static_cast<Dimension>(outer.width), static_cast<Dimension>(outer.height), 0);
}

void Embedding::handle(::Widget /*widget*/, XtPointer self, XEvent *event, Boolean * /*goesOn*/) {
  auto &embedding = *static_cast<Embedding *>(self);
  if (embedding.gone_) return;
  if (event->type == DestroyNotify) { // ours goes with it
    embedding.gone_ = true;
    embedding.toolkit_.abandon();
    embedding.window_.quit();
  } else if (event->type == ConfigureNotify && event->xconfigure.window == embedding.outer_) {
    embedding.fill();
  }
}

} // namespace viewer
