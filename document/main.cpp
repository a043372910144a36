// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// tavrel-document: reads one PDF for the program that has started it, and knows nothing of that program but a socket.
// The first request brings the file's descriptor, each request for an image the memory for its pixels. It ends when the
// socket does.
#include <signal.h>
#include <sys/prctl.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

#include "host/document/answering.h"
#include "host/document/channel.h"
#include "host/document/process.h"
#include "host/document/sharedpixels.h"
#include "host/document/wire.h"

namespace {

enum ExitStatus { exitDone = 0, exitInvalidRequest = 1 };

// Moves the pixels into the memory that came with the request.
host::Answer inShared(host::Answer answer, host::Descriptor memory, const host::ImageRequest &request,
                      const std::filesystem::path &name) {
  auto *image = std::get_if<host::PageImage>(&answer.value);
  if (image == nullptr) return answer;
  if (image->image.width != request.size.width || image->image.height != request.size.height)
    return {host::Failure{tavrel::errBadArgument, false,
                          host::nameInMessage(name) + ": page " + std::to_string(int64_t{request.page} + 1) +
                              ": its image has a wrong size"}};
  host::SharedPixels shared(std::move(memory), image->image.pixels.size());
  std::copy(image->image.pixels.begin(), image->image.pixels.end(), shared.pixels().begin());
  return answer;
}

class Reader {
public:
  host::Answer answer(const host::Request &request, host::Descriptor passed) {
    if (const auto *open = std::get_if<host::OpenRequest>(&request)) {
      name_ = open->file;
      return host::answerOpen(*open, std::move(passed), file_);
    }
    if (file_ == nullptr) return {host::Failure{tavrel::errGeneric, false, "no document is open"}};
    host::Answer answer = host::answerFrom(*file_, request, name_);
    const auto *image = std::get_if<host::ImageRequest>(&request);
    return image == nullptr ? std::move(answer) : inShared(std::move(answer), std::move(passed), *image, name_);
  }

  std::string message(const host::Answer &answer) const {
    try {
      return host::messageOf(answer);
    } catch (const std::length_error &) {
      return host::messageOf(host::Answer{
          host::Failure{tavrel::errDocument, false, host::nameInMessage(name_) + ": a page has too much text"}});
    }
  }

private:
  std::filesystem::path name_;
  std::unique_ptr<host::PdfFile> file_;
};

} // namespace

int main() {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  host::Channel channel(host::Descriptor(host::documentSocket), host::Channel::Takes::descriptors);
  Reader reader;
  for (;;) {
    host::Received received = channel.await();
    if (received.what == host::Received::ended) return exitDone;
    const auto request = received.what == host::Received::message ? host::requestIn(received.content) : std::nullopt;
    if (!request) return exitInvalidRequest;
    const host::Answer answer = reader.answer(*request, std::move(received.descriptor));
    if (!channel.send(reader.message(answer))) return exitDone;
  }
}
