// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The viewer as plug-ins see it: its open documents, its tool bar, and everything that they have registered. It is long
// because all that plug-ins ask of the viewer begins here; most of it is a line that calls a part.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/kernel/current.h"
#include "host/kernel/runtime.h"
#include "host/view/alerts.h"
#include "host/view/auxdata.h"
#include "host/view/notifications.h"
#include "host/view/statustexts.h"
#include "host/view/toolbar.h"
#include "host/view/viewerdocuments.h"

namespace host {

class Application : public Current<Application>, private CallWatcher {
public:
  explicit Application(Runtime &runtime);
  ~Application() override; ///< closes the documents and notifies the plug-ins

  /// Opens a document in front of all others and notifies the plug-ins, after `prepare`; where that throws, the
  /// document is not opened. Without a viewport it has no view.
  ViewerDocument &open(std::unique_ptr<Document> model, std::unique_ptr<Viewport> viewport,
                       const std::filesystem::path &file, const std::string &parameters = {});
  /// The same, showing whole pages. dpi 0: without a view.
  ViewerDocument &open(std::unique_ptr<Document> model, const std::filesystem::path &file, double dpi,
                       const std::string &parameters = {});
  /// Notifies the plug-ins while the document still exists, and closes it, also where notifying throws.
  void close(ViewerDocument &document);
  /// Null without any document.
  ViewerDocument *front() const { return documents_.front(); }
  void bringToFront(ViewerDocument &document) { documents_.bringToFront(document); }

  /// Draws the page shown and has every page-draw procedure paint on it. Nothing within a batch or another drawing, or
  /// without a view.
  std::optional<Drawing> draw(ViewerDocument &document);
  /// The same; nothing where nothing has changed since the last drawing.
  std::optional<Drawing> drawIfNeeded(ViewerDocument &document);

  void registerNotification(int32_t selector, const Registration &registration) {
    notifications_.add(selector, registration);
  }
  void registerPageDraw(const Registration &registration) { addOnce(pageDraw_, registration); }

  Handles<tavrel::Doc, ViewerDocument> &documents() { return documents_.handles(); }
  Handles<tavrel::PageView, PageView> &views() { return documents_.views(); }
  /// The document that a view shows, or null.
  ViewerDocument *documentOf(const PageView &view) const { return documents_.documentOf(view); }
  /// Throws errBadHandle for another tool bar's handle.
  ToolBar &findToolBar(tavrel::ToolBar handle) const { return toolBarHandles_.find(handle); }
  /// Null where the application has none.
  ToolBar *toolBar() const { return toolBar_.get(); }
  tavrel::ToolBar toolBarHandle() const { return toolBarHandles_.handle(toolBar_.get()); }
  void removeToolBar();
  /// Presses a button of the tool bar while the modifier keys (ModifierKey) are held. False if it is greyed.
  bool press(ToolButton &button, uint32_t modifiers);

  /// Sets a plug-in's text on the status line; empty removes it.
  void setStatusText(tavrel::ExtensionID extension, const std::string &text);
  /// The status texts of all plug-ins, in the order in which they were loaded.
  std::string statusText() const { return statusTexts_.all(); }
  /// Marks pages on a document's scroll bar; pages that it does not have are ignored.
  void markPages(tavrel::ExtensionID extension, ViewerDocument &document, std::span<const int32_t> pages);
  /// Notifies the plug-ins that the user has chosen a marked page, which the view shows.
  void markedPageChosen(ViewerDocument &document) { notify(tavrel::notifyMarkedPageChosen, document); }
  /// Notifies the plug-ins that a page is shown whose picture is still being rendered.
  void pageAwaited(ViewerDocument &document) { notify(tavrel::notifyPageAwaited, document); }
  /// Whether a call into a plug-in is under way: then nothing is drawn.
  bool calling() const { return runtime_.running() != hostExtension; }

  AuxData auxData;
  AlertHandler alert;        ///< initially one that answers no
  uint32_t modifierKeys = 0; ///< flags (ModifierKey)
  /// Called before the plug-ins are notified of a document: sets the size of its window and where its pages come from.
  std::function<void(ViewerDocument &document)> prepare;
  /// Called when a document's view has something to draw.
  std::function<void(ViewerDocument &document)> listener;
  /// Called when the status text, the marked pages or the lists of a document have changed.
  std::function<void()> statusListener;
  void notifyStatus() const;

private:
  void notify(tavrel::Notification selector, ViewerDocument &document) {
    notifications_.notify(selector, documents().handle(&document));
  }
  void beforeCall() override { documents_.beforeCall(); }
  void afterCall() noexcept override { documents_.afterCall(); }
  void retired(tavrel::ExtensionID extension) override;

  Runtime &runtime_;
  ViewerDocuments documents_;
  Handles<tavrel::ToolBar, ToolBar> toolBarHandles_{"tool bar"};
  std::unique_ptr<ToolBar> toolBar_;
  Notifications notifications_;
  std::vector<Registration> pageDraw_;
  StatusTexts statusTexts_;
};

} // namespace host
