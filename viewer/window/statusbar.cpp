// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/statusbar.h"

#include <Xm/Form.h>
#include <Xm/Label.h>

#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"

namespace viewer {
namespace {

// Sets a label to a text that it does not show yet; an empty one keeps its height.
void show(::Widget label, std::string &shown, const std::string &text) {
  if (text == shown) return;
  shown = text;
  setLabel(label, text.empty() ? " " : text);
}

// As much of a UTF-8 text as leaves space for another one beside it.
std::string truncated(const std::string &text) {
  constexpr size_t longest = 100;
  if (text.size() <= longest) return text;
  return std::string(firstBytes(text, longest)) + "\u2026";
}

} // namespace

StatusBar::StatusBar(const Toolkit &toolkit, ::Widget parent)
    : bar_(XtVaCreateManagedWidget("statusbar", xmFormWidgetClass, parent, XmNshadowThickness, 0, nullptr)) {
  plugins_ = XtVaCreateManagedWidget("pluginStatus", xmLabelWidgetClass, bar_, XmNalignment, XmALIGNMENT_END,
                                     XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, toolkit.pixels(10),
                                     XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                                     XmNmarginHeight, toolkit.pixels(3), nullptr);
  message_ = XtVaCreateManagedWidget("status", xmLabelWidgetClass, bar_, XmNalignment, XmALIGNMENT_BEGINNING,
                                     XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, toolkit.pixels(10),
                                     XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                                     XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget, plugins_, XmNrecomputeSize,
                                     False, XmNmarginHeight, toolkit.pixels(3), nullptr);
  setLabel(message_, " ");
  setLabel(plugins_, " ");
}

void StatusBar::show(const std::string &message, const std::string &plugins) {
  viewer::show(message_, messageText_, message);
  viewer::show(plugins_, pluginText_, truncated(plugins));
}

} // namespace viewer
