// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// An open document, and those who keep something of the documents.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/document/service.h"
#include "host/view/application.h"
#include "viewer/model/pagewindow.h"
#include "viewer/model/target.h"

namespace viewer {

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
  /// What would be a document with that number has not been opened.
  virtual void isNotOpened(uint64_t /*number*/) {}
  /// A document opened for the second time takes the place of its first.
  virtual void replaces(const OpenDocument & /*before*/, const OpenDocument & /*now*/) {}
  /// A document is about to be closed. Called before the plug-ins are notified of it.
  virtual void closes(const OpenDocument & /*document*/) {}
  /// Another document is in front, or none.
  virtual void frontChanged() {}
};

} // namespace viewer
