// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The files that are being opened.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/document/service.h"
#include "viewer/model/target.h"

namespace viewer {

/// Called when a file has been opened or its password is asked for, with an empty text, or with the reason why it
/// cannot be opened.
using WhenOpened = std::function<void(const std::string &failure)>;

/// Makes a service for a file, which its first request opens.
using ServiceMaker = std::function<std::shared_ptr<host::Service>(const std::filesystem::path &file)>;
using Services = std::vector<std::shared_ptr<host::Service>>;

class Opening {
public:
  struct File {
    uint64_t number = 0;
    Target target;
    std::string password;
    std::optional<uint64_t> replaces = {}; ///< the open document that is being reloaded
    uint64_t together = 0;                 ///< the number of the first file that was requested with it; 0: alone
    bool passwordIsKnown = false;          ///< it opened the document before: no answer of the user's
    std::vector<WhenOpened> opened = {};
    std::shared_ptr<host::Service> service = {}; ///< null while it waits
    host::Time begun = {};
    host::Ticket ticket = {};
    std::optional<host::Answer> answer = {}; ///< host::Opened or host::Failure
  };

  explicit Opening(ServiceMaker makeService) : makeService_(std::move(makeService)) {}

  /// How many files are opened at the same time: each takes a process. One that takes long, as on a network that does
  /// not answer, is not counted.
  static constexpr int64_t atOnce = 4;
  static constexpr auto countedFor = std::chrono::seconds(3);

  /// Opens a file, after those that were requested before. If memory is exhausted, throws and does nothing.
  void request(File file);
  /// Goes on with those that wait. If memory is exhausted, throws; a further call goes on.
  void proceed();
  bool empty() const { return files_.empty(); }
  template <typename Predicate> bool any(const Predicate &predicate) const {
    return std::any_of(files_.begin(), files_.end(), predicate);
  }
  /// The first such file, until the next change; null: none.
  template <typename Predicate> File *findIf(const Predicate &predicate) {
    const auto found = std::find_if(files_.begin(), files_.end(), predicate);
    return found == files_.end() ? nullptr : &*found;
  }
  /// Whether a file has been opened, or could not be, that has not been taken.
  bool hasAnswer() const { return any(isAnswered); }
  /// The first one of these, if any.
  std::optional<File> take();
  /// The file, if it is the only one and has been opened; null otherwise, or if it could not be.
  const File *onlyOpened() const;
  /// Ends the reloading of a document.
  void dropReload(uint64_t document);
  void addServices(Services &services) const;

private:
  void ask(File &file);
  static bool isAnswered(const File &file) { return file.answer.has_value(); }

  ServiceMaker makeService_;
  std::vector<File> files_; ///< in the order of the requests
};

} // namespace viewer
