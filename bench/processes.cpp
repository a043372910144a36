// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What a document's processes cost, and what they are good for: a page that takes minutes keeps nobody waiting.
#include "host/document/processes.h"

#include <poll.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "bench/measure.h"
#include "support/pdf.h"

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int32_t slowPage = 0, quickPage = 1;
constexpr double dpi = 100;

// One page that takes minutes, and one with as many words as a page of a book.
const std::filesystem::path &document() {
  static const test::ScratchFolder folder;
  static const std::filesystem::path file = [] {
    test::PdfPage slow, quick;
    for (int layer = 0; layer < 150; ++layer)
      slow.drawing += "0." + std::to_string(layer % 10) + " g 0 0 m 400 0 l 400 600 l 0 600 l h f\n";
    for (int times = 0; times < 9; ++times)
      slow.drawing += slow.drawing;
    for (int line = 0; line < 40; ++line)
      quick.texts.push_back({.x = 20, .y = 20.0 + 14 * line, .text = "ten words are in each line of this short page"});
    return folder.pdf({slow, quick});
  }();
  return file;
}

class Reader {
public:
  Reader() { ask(host::OpenRequest{document(), {}}); }

  /// Waits for the answer.
  void ask(const host::Request &request) {
    bool isFailure = true;
    const host::Ticket ticket = service_->ask(request, host::Urgency::shown, [&](host::Answer &answer) {
      isFailure = std::holds_alternative<host::Failure>(answer.value);
    });
    service_->await(ticket, Clock::time_point::max());
    if (isFailure) throw std::runtime_error("a request has failed");
  }
  /// The slow page, which has been drawn for so long that a user would turn the page.
  host::Ticket drawSlowPage() {
    host::Ticket ticket = service_->ask(image(slowPage), host::Urgency::shown, [](host::Answer &) {});
    while (!ticket.underWay()) {
      pollfd ready{processes_.descriptor(), POLLIN, 0};
      poll(&ready, 1, 1);
      service_->collect();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    return ticket;
  }
  static host::Request image(int32_t page) { return host::ImageRequest{page, dpi, host::imageSize({400, 600}, dpi)}; }

private:
  host::Processes processes_{{host::documentProgram()}};
  std::shared_ptr<host::Service> service_ = std::make_shared<host::Service>(document(), processes_.backend(document()));
};

// Before each iteration `prepare` is called, whose time does not count.
template <typename Prepare, typename Body>
void measurePrepared(const std::string &line, const std::string &column, Prepare prepare, Body body) {
  measureManually("processes", line, column, [prepare, body](benchmark::State &state) {
    auto reader = std::make_unique<Reader>();
    for (auto _ : state) {
      auto prepared = prepare(reader);
      const auto before = Clock::now();
      body(*reader, prepared);
      state.SetIterationTime(std::chrono::duration<double>(Clock::now() - before).count());
    }
  });
}

} // namespace

void measureProcesses() {
  using Prepared = std::unique_ptr<Reader>;
  const auto nothing = [](const Prepared & /*reader*/) { return 0; };
  const auto askWords = [](Reader &reader, auto & /*prepared*/) { reader.ask(host::WordsRequest{quickPage, true}); };

  const std::string turning = "a page's image";
  measurePrepared(turning, "alone", nothing, [](Reader &reader, int) { reader.ask(Reader::image(quickPage)); });
  measurePrepared(
      turning, "turning from a page that takes minutes", [](const Prepared &reader) { return reader->drawSlowPage(); },
      [](Reader &reader, host::Ticket &ticket) {
        ticket.reset();
        reader.ask(Reader::image(quickPage));
      });

  const std::string words = "a page's words";
  measurePrepared(words, "alone", nothing, askWords);
  measurePrepared(
      words, "while another page is drawn",
      [=](const Prepared &reader) {
        host::Ticket ticket = reader->drawSlowPage();
        askWords(*reader, ticket); // starts the process for words
        return ticket;
      },
      askWords);
  measurePrepared(
      words, "while another page is drawn, the first time",
      [](Prepared &reader) {
        reader = std::make_unique<Reader>();
        return reader->drawSlowPage();
      },
      askWords);
}

} // namespace bench
