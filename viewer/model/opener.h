// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Opens files and reloads them, with their passwords. Over 200 lines with its source because files, reloads and
// questions for passwords share what is under way.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "viewer/model/documents.h"
#include "viewer/model/opening.h"
#include "viewer/model/questions.h"

namespace viewer {

class Opener : public DocumentKeeper {
public:
  Opener(Documents &documents, ServiceMaker makeService, StatusLine &status, Changes &changes)
      : documents_(documents), status_(status), changes_(changes), opening_(std::move(makeService)) {}

  Questions *questions = nullptr;

  /// Opens a file; once it is open it is in front. A file that is open already is brought to front instead, unless the
  /// parameters differ. `opened`, if any, is called from the event loop, or at once for a file that is open.
  void open(const Target &target, const std::string &password = {}, const WhenOpened &opened = {}) {
    open(target, password, opened, 0);
  }
  /// Opens several files. Of those that could be opened, the last one with a highlight file is in front then; if none
  /// has one, the last one.
  void openAll(const std::vector<Target> &targets, const std::string &password);
  /// Opens the front document's file again, on the same page, with the same password. Until it is open, and if it
  /// cannot be opened any more, the document stays as it is. If another one is in front by then, that one stays there.
  void reload();
  /// Whether a file is still being opened.
  bool opening() const { return !opening_.empty(); }
  /// Whether a password has been asked for.
  bool asksPassword() const { return asksPassword_; }

  /// Whether a file has been opened, or could not be, that has not been taken over.
  bool hasOpened() const { return opening_.hasAnswer(); }
  /// The file that has been opened, if it is the only one; null otherwise.
  const Opening::File *onlyOpened() const { return opening_.onlyOpened(); }
  /// Takes over the next one of these, if any. If a plug-in fails when it is notified, the document is open, and the
  /// failure is thrown at the end.
  void takeOpened();
  /// Adds the services of the files that are being opened.
  void addServices(Services &services) const { opening_.addServices(services); }

  void closes(const OpenDocument &document) override;

private:
  void open(const Target &target, const std::string &password, const WhenOpened &opened, uint64_t together);
  void reload(const OpenDocument &document, const std::string &password, bool known);
  void ask(const Opening::File &file);
  void take(const Opening::File &file);
  void takeDocument(const Opening::File &file, const host::Opened &opened);
  void reportUnread(const OpenDocument &document);

  Documents &documents_;
  StatusLine &status_;
  Changes &changes_;
  Opening opening_;
  uint64_t numbers_ = 0;
  bool asksPassword_ = false;
  std::map<uint64_t, std::weak_ptr<void>> questionsOfReloads_; ///< by document; ends when its answer is dropped
  std::string openingLine_;
};

} // namespace viewer
