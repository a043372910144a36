// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/details.h"

#include <poppler-document.h>
#include <poppler-embedded-file.h>
#include <poppler-page.h>

#include <utility>

namespace document {

Details::Details(std::span<const char> bytes, std::string password) : bytes_(bytes), password_(std::move(password)) {}

Details::~Details() = default;

poppler::document *Details::pdf() {
  if (!std::exchange(isOpened_, true))
    pdf_.reset(
        poppler::document::load_from_raw_data(bytes_.data(), static_cast<int>(bytes_.size()), password_, password_));
  return pdf_ != nullptr && !pdf_->is_locked() ? pdf_.get() : nullptr;
}

int Details::quarterTurns(int32_t page) {
  if (pdf() == nullptr || page < 0 || page >= pdf()->pages()) return 0;
  const std::unique_ptr<poppler::page> read(pdf()->create_page(page));
  if (read == nullptr) return 0;
  switch (read->orientation()) {
  case poppler::page::landscape:
    return 1;
  case poppler::page::upside_down:
    return 2;
  case poppler::page::seascape:
    return 3;
  default:
    return 0;
  }
}

std::vector<std::string> Details::attachmentTypes() {
  std::vector<std::string> types;
  if (pdf() == nullptr || !pdf()->has_embedded_files()) return types;
  for (const poppler::embedded_file *file : pdf()->embedded_files()) // the document owns them
    types.push_back(file->is_valid() ? file->mime_type() : "");
  return types;
}

} // namespace document
