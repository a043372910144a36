// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/opener.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace viewer {
namespace {

// How long a plug-in waits for a page, and the window with it.
constexpr auto waitingLimit = std::chrono::seconds(1);

void notify(const std::vector<WhenOpened> &callers, const std::string &failure) {
  for (const WhenOpened &opened : callers)
    opened(failure);
}

// Whether the document in front stays there when a file has been opened: one of those that were requested together, and
// with hits while the file has none, or else a later one.
bool staysInFront(const OpenDocument &front, const Opening::File &file) {
  if (file.together == 0 || front.number < file.together) return false;
  return std::pair(hasHighlightFile(front.target), front.number) >
         std::pair(hasHighlightFile(file.target), file.number);
}

} // namespace

void Opener::openAll(const std::vector<Target> &targets, const std::string &password) {
  const uint64_t first = numbers_ + 1;
  for (const Target &target : targets)
    open(target, password, {}, first);
}

void Opener::open(const Target &target, const std::string &password, const WhenOpened &opened, uint64_t together) {
  std::vector<WhenOpened> callers;
  if (opened) callers.push_back(opened);
  Target absolute = target;
  std::error_code unknown;
  if (const auto path = std::filesystem::absolute(target.file, unknown); !unknown) absolute.file = path;
  absolute.file = absolute.file.lexically_normal();
  const auto same = [&](const Target &other) {
    return other.file == absolute.file && (absolute.parameters.empty() || other == absolute);
  };
  if (const OpenDocument *there = documents_.findIf([&](const OpenDocument &one) { return same(one.target); })) {
    if (together == 0) documents_.bringToFront(*there);
    status_.set("");
    return notify(callers, "");
  }
  if (Opening::File *underWay = opening_.findIf([&](const Opening::File &file) { return same(file.target); })) {
    underWay->opened.insert(underWay->opened.end(), callers.begin(), callers.end());
    if (together == 0) underWay->together = 0; // chosen now, so it comes to the front
    return;
  }
  std::string line = "Opening " + target.file.filename().string();
  opening_.request(
      {.number = ++numbers_, .target = absolute, .password = password, .together = together, .opened = callers});
  openingLine_ = line;
  status_.set(std::move(line));
}

void Opener::reload() {
  const OpenDocument *document = documents_.frontDocument();
  if (document == nullptr) return;
  const auto asked = questionsOfReloads_.find(document->number);
  if (asked == questionsOfReloads_.end() || asked->second.expired()) reload(*document, document->password, true);
}

void Opener::reload(const OpenDocument &document, const std::string &password, bool known) {
  if (opening_.any([&](const Opening::File &file) { return file.replaces == document.number; })) return;
  opening_.request({.number = ++numbers_,
                    .target = document.target,
                    .password = password,
                    .replaces = document.number,
                    .passwordIsKnown = known});
}

void Opener::closes(const OpenDocument &document) {
  opening_.dropReload(document.number);
  questionsOfReloads_.erase(document.number);
  try {
    opening_.proceed();
  } catch (const std::exception &) { // takeOpened() does it
  }
}

void Opener::takeOpened() {
  opening_.proceed();
  if (const std::optional<Opening::File> file = opening_.take()) take(*file);
}

void Opener::take(const Opening::File &file) {
  status_.remove(openingLine_); // but not an error of another file
  changes_.note(allParts);
  const auto *failed = std::get_if<host::Failure>(&file.answer->value);
  asksPassword_ = failed != nullptr && failed->reason == host::DocumentError::wrongPassword && questions != nullptr;
  if (failed == nullptr) return takeDocument(file, std::get<host::Opened>(file.answer->value));
  notify(file.opened, asksPassword_ ? "" : failed->line); // before any other dialog
  if (asksPassword_)
    ask(file);
  else
    status_.report(failed->line);
}

void Opener::ask(const Opening::File &file) {
  const auto question = std::make_shared<char>();
  if (file.replaces) questionsOfReloads_[*file.replaces] = question;
  const auto answer = [this, question, target = file.target, replaces = file.replaces,
                       together = file.together](const std::string &password) {
    if (!replaces) return open(target, password, {}, together);
    questionsOfReloads_.erase(*replaces);
    if (const OpenDocument *document = documents_.find(*replaces)) reload(*document, password, false);
  };
  questions->askPassword(file.target, !file.password.empty() && !file.passwordIsKnown, answer);
}

void Opener::takeDocument(const Opening::File &file, const host::Opened &opened) {
  const OpenDocument *const before = file.replaces ? documents_.find(*file.replaces) : nullptr;
  const OpenDocument *const front = documents_.frontDocument();
  std::exception_ptr failure;
  try {
    documents_.add(host::Document::of({file.service, waitingLimit}, opened),
                   {file.number, nullptr, nullptr, file.target, file.password, file.service});
  } catch (const std::exception &error) {
    if (documents_.find(file.number) == nullptr) {
      for (DocumentKeeper *keeper : documents_.keepers)
        keeper->isNotOpened(file.number);
      const bool memory = dynamic_cast<const std::bad_alloc *>(&error) != nullptr;
      const std::string line =
          host::nameInMessage(file.target.file) + ": " + (memory ? "memory is exhausted" : error.what());
      notify(file.opened, line);
      return status_.report(line);
    }
    failure = std::current_exception();
  }
  notify(file.opened, "");
  if (before != nullptr) {
    const bool wasFront = before == front;
    try {
      documents_.replace(*before);
    } catch (const std::exception &) { // it is replaced nevertheless
      if (!failure) failure = std::current_exception();
    }
    if (wasFront)
      status_.set("");
    else
      documents_.bringToFront(*front);
  } else if (front != nullptr && staysInFront(*front, file)) {
    documents_.bringToFront(*front);
  }
  reportUnread(*documents_.find(file.number)); // last: the calls before take messages away
  if (failure) std::rethrow_exception(failure);
}

void Opener::reportUnread(const OpenDocument &document) {
  const std::string &parameters = document.target.parameters;
  if (!parameters.empty() && !document.document->parametersRead)
    status_.report(host::nameInMessage(document.target.file) + ": no plug-in is loaded that handles #" +
                   host::nameInMessage(parameters));
}

} // namespace viewer
