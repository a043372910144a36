// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/here.h"

#include <utility>

#include "document/answering.h"

namespace document {
namespace {

class AtOnce final : public host::Backend {
public:
  explicit AtOnce(std::unique_ptr<PdfFile> file) : file_(std::move(file)) {}

  void start(host::Orders order) noexcept override {
    order.front().answer = answerFrom(*file_, order.front().request, file_->file());
    answered_.splice(answered_.end(), order);
  }
  void setUrgency(uint64_t /*id*/, host::Urgency /*urgency*/) noexcept override {}
  void cancel(uint64_t /*id*/) noexcept override {} // all have been begun
  bool underWay(uint64_t /*id*/) const noexcept override { return false; }
  host::Orders take() noexcept override { return std::exchange(answered_, {}); }
  host::Orders await(uint64_t id, host::Time /*deadline*/) noexcept override { return host::extract(answered_, id); }

private:
  std::unique_ptr<PdfFile> file_;
  host::Orders answered_;
};

} // namespace

std::unique_ptr<host::Backend> answeringAtOnce(std::unique_ptr<PdfFile> file) {
  return std::make_unique<AtOnce>(std::move(file));
}

std::unique_ptr<host::Document> documentOf(std::unique_ptr<PdfFile> file) {
  const host::Opened opened{file->pageCount(), {}};
  const std::filesystem::path name = file->file();
  auto service = std::make_shared<host::Service>(name, answeringAtOnce(std::move(file)));
  return host::Document::of({std::move(service)}, opened);
}

std::unique_ptr<host::Document> openedHere(const std::filesystem::path &file, const std::string &password) {
  return documentOf(PdfFile::open(file, password));
}

} // namespace document
