// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// tavrel-document: reads one PDF for the program that has started it, and knows nothing of that program but a socket.
// The first request brings the file's descriptor, each request for an image the memory for its pixels.
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>

#include "document/answering.h"
#include "document/serving.h"
#include "document/structure.h"
#include "host/document/sharedpixels.h"

namespace {

class Reader {
public:
  host::Answer answer(const host::Request &request, host::Descriptor passed) {
    if (const auto *open = std::get_if<host::OpenRequest>(&request)) {
      name_ = open->file;
      structure_ =
          std::make_unique<document::StructureReader>(host::Descriptor(dup(passed.number())), name_, open->password);
      return document::answerOpen(*open, std::move(passed), file_);
    }
    if (file_ == nullptr) return {host::Failure{tavrel::errGeneric, false, "no document is open"}};
    if (document::StructureReader::answers(request)) return structure_->answer(request);
    host::Answer answer = document::answerFrom(*file_, request, name_);
    if (const auto *image = std::get_if<host::ImageRequest>(&request)) share(answer, std::move(passed), *image);
    return answer;
  }

private:
  // Moves the pixels into the memory that came with the request.
  void share(host::Answer &answer, host::Descriptor memory, const host::ImageRequest &request) const {
    const auto *made = std::get_if<host::PageImage>(&answer.value);
    if (made == nullptr) return;
    if (made->image.width != request.size.width || made->image.height != request.size.height) {
      const std::string page = std::to_string(int64_t{request.page} + 1);
      answer.value = host::Failure{tavrel::errBadArgument, false,
                                   host::nameInMessage(name_) + ": page " + page + ": its image has a wrong size"};
      return;
    }
    host::SharedPixels shared(std::move(memory), made->image.pixels.size());
    std::copy(made->image.pixels.begin(), made->image.pixels.end(), shared.pixels().begin());
  }

  std::filesystem::path name_;
  std::unique_ptr<document::PdfFile> file_;
  std::unique_ptr<document::StructureReader> structure_;
};

} // namespace

int main(int argc, char **argv) {
  // While files can still be opened.
  document::PdfFile::prepareLibrary();
  document::StructureReader::prepareLibraries();
  Reader reader;
  return document::serve(argc, argv, [&](const host::Request &request, host::Descriptor passed) {
    return reader.answer(request, std::move(passed));
  });
}
