// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The toolkit would keep all of a text in memory, also one that never ends. Here, each request has a window, whose
// property gets the text: complete, or in parts (INCR). What exceeds the limit is not fetched from the X server; a
// program that sends parts is answered until its end, or until time is up, because it waits for that.
#include "viewer/window/paste.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xatom.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "viewer/model/onelinetext.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

constexpr unsigned long timeout = 5000; // milliseconds

class Paste {
public:
  using Take = std::function<void(const std::string &text)>;

  Paste(::Widget shell, ::Time time, Take take)
      : display_(XtDisplay(shell)), clipboard_(atom("CLIPBOARD")), property_(atom("TAVREL_PASTE")), incr_(atom("INCR")),
        target_(atom("UTF8_STRING")), time_(time), take_(std::move(take)) {
    window_ = XtVaCreatePopupShell("paste", overrideShellWidgetClass, shell, XtNwidth, 1, XtNheight, 1, nullptr);
    XtRealizeWidget(window_); // never mapped
    XtAddEventHandler(window_, PropertyChangeMask, True, receive, this);
    XtAddCallback(window_, XtNdestroyCallback, destroy, this);
    timer_ = XtAppAddTimeOut(XtWidgetToApplicationContext(window_), timeout, giveUp, this);
    request();
  }
  ~Paste() {
    if (timer_ != 0) XtRemoveTimeOut(timer_);
  }
  Paste(const Paste &) = delete;
  Paste &operator=(const Paste &) = delete;

private:
  static void receive(::Widget /*window*/, XtPointer self, XEvent *event, Boolean * /*dispatch*/) {
    guarded([&] { static_cast<Paste *>(self)->receive(*event); });
  }
  static void destroy(::Widget /*window*/, XtPointer self, XtPointer /*data*/) { delete static_cast<Paste *>(self); }
  static void giveUp(XtPointer self, XtIntervalId * /*timer*/) {
    auto *paste = static_cast<Paste *>(self);
    paste->timer_ = 0;
    paste->end();
  }

  ::Atom atom(const char *name) const { return XInternAtom(display_, name, False); }
  void request() { XConvertSelection(display_, clipboard_, target_, property_, XtWindow(window_), time_); }
  void end() { XtDestroyWidget(window_); } // which destroys this object

  void receive(const XEvent &event) {
    if (event.type == SelectionNotify && event.xselection.selection == clipboard_ && !inParts_)
      receiveAnswer(event.xselection.property != None);
    else if (event.type == PropertyNotify && event.xproperty.atom == property_ &&
             event.xproperty.state == PropertyNewValue && inParts_)
      receivePart();
  }

  void receiveAnswer(bool there) {
    const Part part = there ? read() : Part{};
    if (part.type == incr_) {
      inParts_ = true;
    } else if (part.ofBytes) {
      give();
      end();
    } else if (target_ != XA_STRING) { // old programs
      target_ = XA_STRING;
      request();
    } else {
      end();
    }
  }

  void receivePart() {
    const Part part = read();
    if (text_.size() == mostPasted || part.last) give();
    if (part.last) end();
  }

  struct Part {
    ::Atom type = None;
    bool ofBytes = false, last = true;
  };

  // Adds the property's bytes to the text, as many as it may have, and removes the property: then the next part is
  // sent.
  Part read() {
    struct Free {
      void operator()(unsigned char *bytes) const { XFree(bytes); }
    };
    constexpr long unit = 4; // bytes, in which the protocol counts
    const auto capacity = static_cast<long>(mostPasted - text_.size());
    Part part;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char *bytes = nullptr;
    const int status = XGetWindowProperty(display_, XtWindow(window_), property_, 0, (capacity + unit - 1) / unit,
                                          False, AnyPropertyType, &part.type, &format, &count, &left, &bytes);
    const std::unique_ptr<unsigned char, Free> kept(bytes);
    XDeleteProperty(display_, XtWindow(window_), property_);
    if (status != Success || part.type == None || part.type == incr_) return part;
    part.ofBytes = format == 8;
    part.last = count == 0 && left == 0;
    if (part.ofBytes && bytes != nullptr)
      text_.append(reinterpret_cast<const char *>(bytes), std::min(count, static_cast<unsigned long>(capacity)));
    return part;
  }

  void give() {
    if (const Take take = std::exchange(take_, {})) take(target_ == XA_STRING ? utf8OfLatin1(text_) : text_);
  }

  Display *display_;
  ::Atom clipboard_, property_, incr_, target_;
  ::Time time_;
  Take take_; ///< empty when it has been called
  ::Widget window_ = nullptr;
  XtIntervalId timer_ = 0;
  bool inParts_ = false;
  std::string text_;
};

} // namespace

void pasteFromClipboard(::Widget widget, ::Time time, const std::function<void(const std::string &)> &take) {
  while (XtParent(widget) != nullptr) // the program's shell: the window outlives a dialog
    widget = XtParent(widget);
  new Paste(widget, time, take); // deletes itself
}

} // namespace viewer
