// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The application. Programs make one after the runtime; it owns the open documents and the tool bar.
#include "host/view/application.h"

#include <algorithm>
#include <iterator>

#include "tavrel/DocModel.h"

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
  documents_.push_back(std::move(opened));
  try {
    documentHandles_.add(&document);
    if (document.view) viewHandles_.add(document.view.get());
    if (prepare) prepare(document);
  } catch (...) { // no plug-in knows of it yet
    forget(document);
    throw;
  }
  notify(tavrel::notifyDocDidOpen, document);
  return document;
}

void Application::close(ViewerDocument &document) {
  try {
    notify(tavrel::notifyDocDidClose, document);
  } catch (...) {
    forget(document);
    throw;
  }
  forget(document);
}

void Application::forget(ViewerDocument &document) {
  documentHandles_.remove(&document);
  if (document.view) viewHandles_.remove(document.view.get());
  std::erase_if(documents_, [&](const auto &one) { return one.get() == &document; });
}

void Application::bringToFront(ViewerDocument &document) {
  const auto found =
      std::find_if(documents_.begin(), documents_.end(), [&](const auto &one) { return one.get() == &document; });
  if (found != documents_.end()) std::rotate(found, found + 1, documents_.end());
}

std::optional<Drawing> Application::draw(ViewerDocument &document) {
  if (!document.view) return std::nullopt;
  PageView &view = *document.view;
  return view.draw(
      [&] { callEach<tavrel::PageDrawProc>(pageDraw_, "the page-draw procedure", viewHandles_.handle(&view)); });
}

std::optional<Drawing> Application::drawIfNeeded(ViewerDocument &document) {
  if (!document.view || !document.view->invalid()) return std::nullopt;
  return draw(document);
}

void Application::registerNotification(int32_t selector, const Registration &registration) {
  constexpr tavrel::Notification all[] = {tavrel::notifyDocDidOpen, tavrel::notifyDocDidClose,
                                          tavrel::notifyMarkedPageChosen, tavrel::notifyPageAwaited};
  if (std::find(std::begin(all), std::end(all), selector) == std::end(all))
    throw HostError(tavrel::errBadArgument, "no notification " + std::to_string(selector));
  addOnce(notifications_[selector], registration);
}

void Application::notify(tavrel::Notification selector, ViewerDocument &document) {
  callEach<tavrel::DocNotifyProc>(notifications_[selector], "a notification", documentHandles_.handle(&document));
}

ViewerDocument *Application::documentOf(const PageView &view) const {
  const auto found =
      std::find_if(documents_.begin(), documents_.end(), [&](const auto &one) { return one->view.get() == &view; });
  return found == documents_.end() ? nullptr : found->get();
}

void Application::setStatusText(tavrel::ExtensionID extension, const std::string &text) {
  const auto known = statusTexts_.find(extension);
  if ((known == statusTexts_.end() ? std::string() : known->second) == text) return;
  if (text.empty())
    statusTexts_.erase(extension);
  else
    statusTexts_[extension] = text;
  notifyStatus();
}

void Application::notifyStatus() const {
  if (statusListener) statusListener();
}

void Application::markPages(tavrel::ExtensionID extension, ViewerDocument &document, std::span<const int32_t> pages) {
  std::vector<int32_t> marked;
  std::copy_if(pages.begin(), pages.end(), std::back_inserter(marked),
               [&](int32_t page) { return page >= 0 && page < document.model->pageCount(); });
  std::sort(marked.begin(), marked.end());
  marked.erase(std::unique(marked.begin(), marked.end()), marked.end());
  const auto before = document.markedPages.find(extension);
  if (before == document.markedPages.end() ? marked.empty() : before->second == marked) return;
  if (marked.empty())
    document.markedPages.erase(extension);
  else
    document.markedPages[extension] = std::move(marked);
  notifyStatus();
}

std::string Application::statusText() const {
  std::string all;
  for (const auto &[extension, text] : statusTexts_)
    all += (all.empty() ? "" : "; ") + text;
  return all;
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

void Application::beforeCall() {
  for (const auto &document : documents_)
    if (document->view) document->view->expectCall();
  for (const auto &document : documents_)
    if (document->view) document->view->beforeCall();
}

void Application::afterCall() noexcept {
  for (const auto &document : documents_)
    if (document->view) document->view->afterCall();
}

void Application::retired(tavrel::ExtensionID extension) {
  retire(pageDraw_, extension);
  for (auto &[selector, list] : notifications_)
    retire(list, extension);
  auxData.retire(extension);
  if (toolBar_) toolBar_->retire(extension);
  size_t shown = statusTexts_.erase(extension);
  for (const auto &document : documents_)
    shown += document->markedPages.erase(extension) + document->lists.retire(extension);
  if (shown > 0) notifyStatus();
}

void addHostTables(Runtime &runtime) {
  // The older versions are the same table: a client of one does not read beyond its end.
  runtime.addTable("DocModel", 0x00050000, docModelTable());
  runtime.addTable("DocModel", tavrel::docModelVersion, docModelTable());
  runtime.addTable("TavrelView", 0x00050001, viewTable());
  runtime.addTable("TavrelView", tavrel::tavrelViewStatusVersion, viewTable());
  runtime.addTable("TavrelView", tavrel::tavrelViewMarksVersion, viewTable());
  runtime.addTable("TavrelView", tavrel::tavrelViewVersion, viewTable());
  runtime.addTable("Desktop", 0x00040000, desktopTable());
}

} // namespace host
