// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A stand-in for the toolkit on machines without X: a top-level widget that is only an address, and the plug-in's shell
// with the same host calls. Code that only passes widgets on is tested as on other machines.
#include "plugin/md/mdResources.h"
#include "plugin/md/mdUtils.h"
#include "plugin/pi/miPI.h"
#include "tavrel/Desktop.h"
#include "tests/support/TopLevel.h"
#include "tests/support/Xvfb.h"

tavrel::Widget rootWidget;

namespace {

char s_topLevel, s_shell;
const std::function<void()> *s_notify;

tavrel::Widget widgetAt(char &address) { return reinterpret_cast<tavrel::Widget>(&address); }

} // namespace

PrivateXvfb::PrivateXvfb(const std::string & /*screen*/) : display_("none needed") {}
PrivateXvfb::~PrivateXvfb() = default;

TopLevel::TopLevel(const std::string & /*display*/, const std::string & /*name*/)
    : application_(nullptr), widget_(widgetAt(s_topLevel)) {}
TopLevel::~TopLevel() = default;

void onDestruction(tavrel::Widget /*widget*/, const std::function<void()> &notify) { s_notify = &notify; }

tavrel::Widget mdInitUtils() {
  if (Desktop::GetTopLevelWidget() == nullptr) return nullptr;
  static const char *const noLines[] = {nullptr};
  Desktop::RegisterResourceClass("Highlight", noLines);
  if (Desktop::GetTopLevelWidget() != nullptr) rootWidget = widgetAt(s_shell);
  return rootWidget;
}

tavrel::Bool16 mdInit() {
  gData->shell = mdInitUtils();
  return gData->shell != nullptr;
}

void mdTerm() {
  if (gData == nullptr || gData->shell == nullptr || s_notify == nullptr) return;
  (*s_notify)();
  s_notify = nullptr;
}

uint32_t mdGetBitmapSize(tavrel::Bitmap /*bitmap*/) { return 0; }
