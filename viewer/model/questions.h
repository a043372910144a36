// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <string>

#include "viewer/model/target.h"

namespace viewer {

/// Questions to the user.
class Questions {
public:
  virtual ~Questions() = default;
  using Answer = std::function<void(const std::string &password)>;
  /// A file is encrypted: a password is needed, or another one. The answer, if any, is a call of `answer`, later than
  /// this one. Without one, `answer` is destroyed when the question is no longer shown.
  virtual void askPassword(const Target &target, bool again, const Answer &answer) = 0;
};

} // namespace viewer
