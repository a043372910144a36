// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The "Desktop" table, by way of the current window system.
#include "tavrel/Desktop.h"

#include "host/kernel/table.h"
#include "host/view/desktop.h"
#include "host/view/tables.h"

namespace host {
namespace {

tavrel::Widget topLevelWidget() {
  const WindowSystem *system = WindowSystem::find();
  return system == nullptr ? nullptr : system->topLevel();
}

void registerResourceClass(const char *className, const char *const *fallbackLines) {
  WindowSystem::current().registerClass(className, fallbackLines);
}

const char *resourceString(tavrel::Widget widget, const char *key, const char *builtIn) {
  return WindowSystem::current().text(widget, key, builtIn);
}

tavrel::Bitmap resourceBitmap(tavrel::Widget widget, const char *name, const char *className, const unsigned char *bits,
                              uint32_t width, uint32_t height) {
  return WindowSystem::current().bitmap(widget, name, className, bits, width, height);
}

Table build() {
  Table table("Desktop", ::Desktop::operations);
  table.provideBare<topLevelWidget>(::Desktop::GetTopLevelWidget);
  table.provide<registerResourceClass>(::Desktop::RegisterResourceClass);
  table.provide<resourceString>(::Desktop::GetResourceString);
  table.provide<resourceBitmap>(::Desktop::GetResourceBitmap);
  return table;
}

} // namespace

tavrel::HFT desktopTable() {
  static Table table = build();
  return table.entries();
}

} // namespace host
