// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A session whose documents are looked at by name, and questions that are noted.
#pragma once

#include <string>
#include <vector>

#include "Sessions.h"

namespace viewer {

struct Asked : Questions {
  void askPassword(const Target &target, bool again, const Answer &answer) override {
    files.push_back(target);
    agains.push_back(again);
    answers.push_back(answer);
  }
  std::vector<Target> files;
  std::vector<bool> agains;
  std::vector<Answer> answers;
};

struct SessionTest : test::Sessions {
  // The names of the open documents, in their order.
  std::vector<std::string> names() {
    std::vector<std::string> result;
    for (const host::ViewerDocument *document : session().documents.all())
      result.push_back(document->file.filename());
    return result;
  }
  std::string frontName() {
    return session().documents.front() == nullptr ? "" : session().documents.front()->file.filename().string();
  }
  // What is printed to standard error until all files are open or refused.
  std::string errorsOf(const std::filesystem::path &file) {
    testing::internal::CaptureStderr();
    open(file);
    return testing::internal::GetCapturedStderr();
  }
  std::filesystem::path secret() { return test::locked(write("secret.pdf", test::numberedPages(2))); }
};

} // namespace viewer
