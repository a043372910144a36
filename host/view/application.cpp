// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The application. Programs make one after the runtime; it owns the open documents and the tool bar.
#include "host/view/application.h"

namespace host {

Application::Application(Runtime &runtime)
    : alert(answerAlerts(false)), runtime_(runtime), toolBar_(std::make_unique<ToolBar>(runtime.atoms)) {
  toolBarHandles_.add(toolBar_.get());
  runtime_.watch(this);
}

Application::~Application() {
  while (ViewerDocument *document = front())
    close(*document);
  runtime_.unwatch(this);
}

ViewerDocument &Application::open(std::unique_ptr<Document> model, const std::filesystem::path &file, double dpi,
                                  const std::string &parameters) {
  auto pages = dpi > 0 ? std::make_unique<WholePages>(*model, dpi) : nullptr;
  return open(std::move(model), std::move(pages), file, parameters);
}

ViewerDocument &Application::open(std::unique_ptr<Document> model, std::unique_ptr<Viewport> viewport,
                                  const std::filesystem::path &file, const std::string &parameters) {
  auto opened = std::make_unique<ViewerDocument>();
  ViewerDocument &document = *opened;
  document.file = std::filesystem::absolute(file);
  document.parameters = parameters;
  document.model = std::move(model);
  if (viewport != nullptr)
    document.view = std::make_unique<PageView>(*document.model, std::move(viewport), [this, &document] {
      if (listener) listener(document);
    });
  documents_.add(std::move(opened));
  try {
    if (prepare) prepare(document);
  } catch (...) { // no plug-in knows of it yet
    documents_.remove(document);
    throw;
  }
  notify(tavrel::notifyDocDidOpen, document);
  return document;
}

void Application::close(ViewerDocument &document) {
  try {
    notify(tavrel::notifyDocDidClose, document);
  } catch (...) {
    documents_.remove(document);
    throw;
  }
  documents_.remove(document);
}

std::optional<Drawing> Application::draw(ViewerDocument &document) {
  if (!document.view) return std::nullopt;
  PageView &view = *document.view;
  return view.draw(
      [&] { callEach<tavrel::PageDrawProc>(pageDraw_, "the page-draw procedure", documents_.views().handle(&view)); });
}

std::optional<Drawing> Application::drawIfNeeded(ViewerDocument &document) {
  if (!document.view || !document.view->invalid()) return std::nullopt;
  return draw(document);
}

void Application::setStatusText(tavrel::ExtensionID extension, const std::string &text) {
  if (statusTexts_.set(extension, text)) notifyStatus();
}

void Application::notifyStatus() const {
  if (statusListener) statusListener();
}

void Application::markPages(tavrel::ExtensionID extension, ViewerDocument &document, std::span<const int32_t> pages) {
  if (document.mark(extension, pages)) notifyStatus();
}

void Application::removeToolBar() {
  toolBarHandles_.remove(toolBar_.get());
  toolBar_.reset();
}

bool Application::press(ToolButton &button, uint32_t modifiers) {
  const bool enabled = toolBar_->test(button);
  if (enabled) {
    struct Held {
      uint32_t &keys;
      ~Held() { keys = 0; }
    } const held{modifierKeys = modifiers};
    toolBar_->press(button);
  }
  toolBar_->updateStates();
  return enabled;
}

void Application::retired(tavrel::ExtensionID extension) {
  retire(pageDraw_, extension);
  notifications_.retire(extension);
  auxData.retire(extension);
  if (toolBar_) toolBar_->retire(extension);
  if (statusTexts_.retire(extension) + documents_.retire(extension) > 0) notifyStatus();
}

} // namespace host
