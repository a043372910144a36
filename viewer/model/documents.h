// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The open documents: opening, passwords, reloading, closing, and which one is in front.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/view/application.h"
#include "viewer/model/changes.h"
#include "viewer/model/opening.h"
#include "viewer/model/pagewindow.h"
#include "viewer/model/statusline.h"
#include "viewer/model/target.h"

namespace viewer {

/// Questions to the user.
class Questions {
public:
  virtual ~Questions() = default;
  /// A file is encrypted: a password is needed, or another one. The answer, if any, is a call of Documents::open.
  virtual void askPassword(const Target &target, bool again) = 0;
};

/// An open document. Its number never returns.
struct OpenDocument {
  uint64_t number = 0;
  host::ViewerDocument *document = nullptr;
  PageWindow *window = nullptr; ///< of the document's view, which owns it
  Target target;
  std::string password;
  std::shared_ptr<host::Service> service;
  bool changeIsReported = false;
};

/// Those who keep something of the documents.
class DocumentKeeper {
public:
  virtual ~DocumentKeeper() = default;
  /// A document is about to be open and in front. Called before the plug-ins are notified of it. If it throws, the
  /// document is not opened.
  virtual void opens(const OpenDocument & /*document*/) {}
  /// A document opened for the second time takes the place of its first.
  virtual void replaces(const OpenDocument & /*before*/, const OpenDocument & /*now*/) {}
  /// A document is about to be closed. Called before the plug-ins are notified of it.
  virtual void closes(const OpenDocument & /*document*/) {}
  /// Another document is in front, or none.
  virtual void frontChanged() {}
};

class Documents {
public:
  Documents(host::Application &app, ServiceMaker makeService, StatusLine &status, Changes &changes);
  ~Documents();
  Documents(const Documents &) = delete;
  Documents &operator=(const Documents &) = delete;

  Questions *questions = nullptr;
  std::vector<DocumentKeeper *> keepers; ///< called in this order
  double screenDpi = 96;                 ///< the resolution of 100 %; to be set before the first document is open

  /// Opens a file; once it is open it is in front. A file that is open already is brought to front instead, unless the
  /// parameters differ. `opened`, if any, is called from the event loop, or at once for a file that is open.
  void open(const Target &target, const std::string &password = {}, const WhenOpened &opened = {});
  /// Whether a file is still being opened.
  bool opening() const { return !opening_.empty(); }
  /// Whether a password has been asked for.
  bool asksPassword() const { return asksPassword_; }
  void closeFront();
  void closeAll();
  /// Opens the front document's file again, on the same page. Until it is open, and if it cannot be opened any more,
  /// the document stays as it is.
  void reload();
  void bringToFront(size_t index);

  /// In the order in which they were opened.
  const std::vector<host::ViewerDocument *> &all() const { return order_; }
  size_t frontIndex() const;
  host::ViewerDocument *front() const { return app_.front(); }
  host::PageView *view() const { return front() == nullptr ? nullptr : front()->view.get(); }
  PageWindow *window() const;
  /// Null for a document that is not open, or no longer.
  const OpenDocument *find(const host::ViewerDocument *document) const;
  const OpenDocument *find(uint64_t number) const;
  const OpenDocument *frontDocument() const { return find(front()); }

  // Of the document in front; without one, none and the first.
  int32_t pageCount() const;
  int32_t page() const;
  std::vector<int32_t> markedPages() const;
  std::string title() const;

  /// The services of all documents, also of those that are being opened.
  Services services() const;
  /// Whether a file has been opened, or could not be, that has not been taken over.
  bool hasOpened() const { return opening_.hasAnswer(); }
  /// Takes over the next one of these, if any. If a plug-in fails when it is notified, the document is open, and the
  /// failure is thrown at the end.
  void takeOpened();
  /// Reports once that a document's file has changed.
  void reportChanged(uint64_t number);

private:
  void take(const Opening::File &file);
  void takeDocument(const Opening::File &file, const host::Opened &opened);
  void prepare(host::ViewerDocument &document);
  void reportUnread(const OpenDocument &document);
  void replace(const OpenDocument &before);
  void close(const OpenDocument &document);
  void showFront();

  host::Application &app_;
  StatusLine &status_;
  Changes &changes_;
  std::vector<std::unique_ptr<OpenDocument>> open_;
  std::vector<host::ViewerDocument *> order_;
  Opening opening_;
  uint64_t numbers_ = 0;
  bool asksPassword_ = false;
  std::string openingLine_;
};

} // namespace viewer
