// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document service that answers at once, but holds back some of its answers, for which nobody waits.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "document/here.h"

namespace test {

class LateBackend final : public host::Backend {
public:
  using IsLate = std::function<bool(const host::Request &request)>;

  /// Answers to late requests are handed over once `released` is true.
  LateBackend(std::unique_ptr<host::Backend> right, IsLate isLate, const bool &released)
      : right_(std::move(right)), isLate_(std::move(isLate)), released_(released) {}

  void start(host::Orders order) noexcept override {
    const uint64_t id = order.front().id;
    host::Orders &list = isLate_(order.front().request) ? late_ : ready_;
    right_->start(std::move(order));
    list.splice(list.end(), right_->await(id, {}));
  }
  void setUrgency(uint64_t /*id*/, host::Urgency /*urgency*/) noexcept override {}
  void cancel(uint64_t id) noexcept override {
    host::extract(ready_, id);
    host::extract(late_, id);
  }
  bool underWay(uint64_t /*id*/) const noexcept override { return false; }
  host::Orders take() noexcept override {
    if (released_) ready_.splice(ready_.end(), late_);
    return std::exchange(ready_, {});
  }
  host::Orders await(uint64_t /*id*/, host::Time /*deadline*/) noexcept override { return {}; }

private:
  std::unique_ptr<host::Backend> right_;
  IsLate isLate_;
  const bool &released_;
  host::Orders ready_, late_;
};

inline std::shared_ptr<host::Service> lateService(const std::filesystem::path &file, LateBackend::IsLate isLate,
                                                  const bool &released) {
  return std::make_shared<host::Service>(
      file, std::make_unique<LateBackend>(document::answeringAtOnce(document::PdfFile::open(file, "")),
                                          std::move(isLate), released));
}

} // namespace test
