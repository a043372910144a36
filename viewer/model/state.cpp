// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/state.h"

#include "viewer/model/json.h"

namespace viewer {
namespace {

template <typename Items, typename Write> std::string listOf(const Items &items, const Write &write) {
  Json list('[');
  for (const auto &item : items)
    list.item(write(item));
  return list.done();
}

std::string jsonOf(const FieldState &field) {
  return Json('{').text("name", field.name).text("text", field.text).place(field.place).done();
}

std::string jsonOf(const ListState &list) {
  return Json('{')
      .text("name", list.name)
      .member("items", listOf(list.items, quoted))
      .member("selected", static_cast<double>(list.selected))
      .place(list.place)
      .done();
}

std::string jsonOf(const DialogState &dialog) {
  const auto button = [](const ButtonState &one) {
    return Json('{').text("label", one.name).flag("enabled", one.enabled).place(one.place).done();
  };
  const auto field = [](const FieldState &one) { return jsonOf(one); };
  return Json('{')
      .text("name", dialog.name)
      .member("texts", listOf(dialog.texts, quoted))
      .member("buttons", listOf(dialog.buttons, button))
      .member("fields", listOf(dialog.fields, field))
      .member("lists", listOf(dialog.lists, [](const ListState &one) { return jsonOf(one); }))
      .place(dialog.place)
      .done();
}

std::string jsonOf(const ButtonState &button) {
  return Json('{')
      .text("name", button.name)
      .text("tip", button.tip)
      .flag("enabled", button.enabled)
      .place(button.place)
      .done();
}

std::string jsonOf(const PanelState &panel) {
  return Json('{')
      .flag("shown", panel.shown)
      .text("title", panel.title)
      .member("first", panel.first)
      .member("current", static_cast<double>(panel.current))
      .member("texts", listOf(panel.texts, quoted))
      .member("rowHeight", panel.rowHeight)
      .member("paints", static_cast<double>(panel.paints))
      .place(panel.place)
      .done();
}

std::string jsonOf(const Shown &shown, const Place &page) {
  return Json('{')
      .flag("there", shown.drawing.has_value())
      .member("page", shown.page + 1)
      .member("marks", shown.drawing ? static_cast<double>(shown.drawing->marks) : 0)
      .member("scrollX", shown.scrollX)
      .member("scrollY", shown.scrollY)
      .place(page)
      .done();
}

} // namespace

std::string stateOf(const Model &model, const std::string &pluginText, const WindowState &window) {
  const Documents &documents = model.documents;
  const auto nameOf = [](const host::ViewerDocument *document) { return quoted(document->file.filename().string()); };
  const auto number = [](int32_t value) { return std::to_string(value); };
  return Json('{')
      .text("title", documents.title())
      .text("status", model.status.message())
      .text("plugins", pluginText)
      .member("documents", listOf(documents.all(), nameOf))
      .member("front", static_cast<double>(documents.frontIndex()))
      .flag("opening", model.opener.opening())
      .member("page", documents.page() + 1)
      .member("pages", documents.pageCount())
      .member("zoom", model.moving.zoom())
      .member("fit", static_cast<double>(model.moving.fit()))
      .member("ticks", listOf(window.ticks, number))
      .member("drawn", jsonOf(model.screen.shown(), window.page))
      .member("area", Json('{').place(window.area).done())
      .text("note", window.note)
      .member("marksShown", static_cast<double>(window.marksShown))
      .member("buttons", listOf(window.buttons, [](const ButtonState &one) { return jsonOf(one); }))
      .member("pageField", jsonOf(window.pageField))
      .member("panel", jsonOf(window.panel))
      .text("findMessage", model.finding.message())
      .member("dialogs", listOf(window.dialogs, [](const DialogState &one) { return jsonOf(one); }))
      .member("cacheBytes", static_cast<double>(model.tiles.cache().bytes()))
      .member("longestIteration", window.longestIteration)
      .done();
}

} // namespace viewer
