// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// tavrel-document: reads one PDF for the program that has started it, and knows nothing of that program but a socket.
// The first request brings the file's descriptor. A request for an image brings the memory for its pixels, unless those
// of the one before have as much.
#include <unistd.h>

#include <memory>
#include <new>

#include "document/answering.h"
#include "document/serving.h"
#include "document/structure.h"
#include "host/document/sharedpixels.h"

namespace {

class Reader {
public:
  host::Answer answer(const host::Request &request, host::Descriptor passed) {
    host::Answer answer;
    try {
      answer = found(request, std::move(passed));
    } catch (const std::bad_alloc &) {
      answer = {host::Failure{tavrel::errNoMemory, false, {}}};
    }
    // The memory of this process is limited: that it is not enough is an error of the document, not its owner's.
    if (auto *failure = std::get_if<host::Failure>(&answer.value);
        failure != nullptr && failure->code == tavrel::errNoMemory)
      *failure = {tavrel::errDocument, false,
                  host::nameInMessage(name_) + ": it takes more memory than its process may have"};
    return answer;
  }

private:
  host::Answer found(const host::Request &request, host::Descriptor passed) {
    if (const auto *open = std::get_if<host::OpenRequest>(&request)) {
      name_ = open->file;
      return opened(*open, passed);
    }
    if (file_ == nullptr) return {host::Failure{tavrel::errGeneric, false, "no document is open"}};
    if (document::StructureReader::answers(request)) return structure_->answer(request);
    const auto *image = std::get_if<host::ImageRequest>(&request);
    if (image == nullptr) return document::answerFrom(*file_, request, name_);
    host::Answer answer = document::answerFrom(*file_, request, name_, memoryFor(image->size, std::move(passed)));
    if (!pixels_->isWorthKeeping()) pixels_.reset();
    return answer;
  }
  host::Answer opened(const host::OpenRequest &request, const host::Descriptor &passed) {
    std::shared_ptr<const document::MappedFile> bytes;
    try {
      bytes = std::make_shared<const document::MappedFile>(passed.number(), name_);
      structure_ = std::make_unique<document::StructureReader>(bytes, name_, request.password);
    } catch (const std::exception &) {
      return {document::caughtFailure(name_)};
    }
    return document::answerOpen(request, std::move(bytes), file_);
  }
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
  std::unique_ptr<document::StructureReader> structure_;
  std::unique_ptr<host::SharedPixels> pixels_;
};

} // namespace

int main(int argc, char **argv) {
  // While files can still be opened.
  document::PdfFile::prepareLibrary();
  document::StructureReader::prepareLibraries();
  Reader reader;
  // At once: what libraries do at a usual end, like looking for leaks, may be denied.
  _exit(document::serve(argc, argv, [&](const host::Request &request, host::Descriptor passed) {
    return reader.answer(request, std::move(passed));
  }));
}
