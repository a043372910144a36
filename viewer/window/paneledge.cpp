// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/paneledge.h"

#include <X11/cursorfont.h>
#include <Xm/DrawingA.h>

#include <utility>

#include "viewer/window/motif.h"

namespace viewer {

PanelEdge::PanelEdge(::Widget parent, ::Widget above, ::Widget below, int width, std::function<void(int left)> dragged)
    : edge_(XtVaCreateWidget("sidePanelEdge", xmDrawingAreaWidgetClass, parent, XmNmarginWidth, 0, XmNmarginHeight, 0,
                             XmNresizePolicy, XmRESIZE_NONE, XmNtraversalOn, False, XmNleftAttachment, XmATTACH_FORM,
                             XmNrightAttachment, XmATTACH_OPPOSITE_FORM, XmNtopAttachment, XmATTACH_WIDGET,
                             XmNtopWidget, above, XmNbottomAttachment, XmATTACH_WIDGET, XmNbottomWidget, below,
                             nullptr)),
      width_(width), dragged_(std::move(dragged)) {
  XtAddEventHandler(edge_, ButtonPressMask | Button1MotionMask, False, handle, this);
}

void PanelEdge::show(int left) {
  XtVaSetValues(edge_, XmNleftOffset, left, XmNrightOffset, -(left + width_), nullptr);
  if (XtIsManaged(edge_) != 0) return;
  XtManageChild(edge_);
  const Cursor arrows = XCreateFontCursor(XtDisplay(edge_), XC_sb_h_double_arrow);
  XDefineCursor(XtDisplay(edge_), XtWindow(edge_), arrows);
  XFreeCursor(XtDisplay(edge_), arrows);
}

void PanelEdge::hide() { XtUnmanageChild(edge_); }

// Relative to the screen: the edge moves while it is dragged.
void PanelEdge::handle(::Widget widget, XtPointer self, XEvent *event, Boolean * /*continueToDispatch*/) {
  auto &edge = *static_cast<PanelEdge *>(self);
  if (event->type == ButtonPress) {
    Position left = 0;
    XtVaGetValues(widget, XmNx, &left, nullptr);
    edge.offset_ = left - event->xbutton.x_root;
  } else {
    guarded([&] { edge.dragged_(edge.offset_ + event->xmotion.x_root); });
  }
}

} // namespace viewer
