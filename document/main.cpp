// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// tavrel-document: draws the pages of one PDF and reads its words for the program that has started it, and knows
// nothing of that program but a socket. A request for an image brings the memory for its pixels, unless those of the
// one before have as much.
#include <malloc.h>

#include <memory>
#include <new>

#include "document/answering.h"
#include "document/serving.h"
#include "host/document/sharedpixels.h"

namespace {

class Reader {
public:
  host::Answer answer(const host::Request &request, host::Descriptor passed) {
    if (const auto *open = std::get_if<host::OpenRequest>(&request)) {
      name_ = open->file;
      return document::answerOpen(*open, passed.number(), file_);
    }
    if (file_ == nullptr) return {host::Failure{tavrel::errBadArgument, "no document is open"}};
    const auto *image = std::get_if<host::ImageRequest>(&request);
    if (image == nullptr) return document::answerFrom(*file_, request, name_);
    host::Answer answer =
        document::answerFrom(*file_, request, name_, memoryFor(host::sizeOf(image->drawn()), std::move(passed)));
    if (!pixels_->isWorthKeeping()) pixels_.reset();
    return answer;
  }

private:
  // The pixels of an image: in the memory that has been passed, or in that of the last image.
  std::span<uint32_t> memoryFor(const host::PixelSize &size, host::Descriptor passed) {
    const size_t count = static_cast<size_t>(size.width) * static_cast<size_t>(size.height);
    if (passed) {
      pixels_.reset();
      pixels_ = std::make_unique<host::SharedPixels>(std::move(passed), count);
    }
    if (pixels_ == nullptr || pixels_->pixels().size() != count) throw std::bad_alloc();
    return pixels_->pixels();
  }

  std::filesystem::path name_;
  std::unique_ptr<document::PdfFile> file_;
  std::unique_ptr<host::SharedPixels> pixels_;
};

// The memory of an image is kept for the next one, because new memory costs a third of the time that drawing takes.
void keepMemory() {
  constexpr int image = 32 << 20, all = 64 << 20; // bytes
  mallopt(M_MMAP_THRESHOLD, image);
  mallopt(M_TRIM_THRESHOLD, all);
}

} // namespace

int main(int argc, char **argv) {
  keepMemory();
  document::PdfFile::prepareLibrary();
  Reader reader;
  document::serve(argc, argv, [&](const host::Request &request, host::Descriptor passed) {
    return reader.answer(request, std::move(passed));
  });
}
