// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// `tavrel hits DOC WORDS...`: searches a document for a phrase and writes a highlight file. Exit statuses: exit.h.
#include "tools/hits.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>

#include "host/document/documenterror.h"
#include "tools/ahead.h"
#include "tools/exit.h"
#include "tools/failure.h"
#include "tools/leftout.h"
#include "tools/options.h"
#include "tools/output.h"
#include "tools/reading.h"
#include "tools/workers.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

// Positions in a highlight file have 16 bits; the highest value means none.
constexpr uint32_t lastPosition = 65534;

constexpr char hexDigits[] = "0123456789ABCDEF";

// The colour as "#RRGGBB". The reader of highlight files takes the two digits of a component in reversed order. A
// component of two different digits would mean another colour, so it is refused.
std::string checkedColor(const std::string &asked) {
  const std::string digits = asked.substr(asked.starts_with('#') ? 1 : 0);
  if (digits.size() != 6 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
    throw CommandFailure(exitUsage, "--color " + asked + ": a colour is six hexadecimal digits, RRGGBB");
  std::string nearest = "#";
  bool carried = true;
  for (size_t i = 0; i < digits.size(); i += 2) {
    const unsigned long component = std::stoul(digits.substr(i, 2), nullptr, 16);
    const unsigned long digit = (component + 8) / 17;
    carried = carried && component == digit * 17;
    nearest.append(2, hexDigits[digit]);
  }
  if (!carried)
    throw CommandFailure(exitUsage,
                         "--color " + asked +
                             ": a highlight file carries only components of two equal digits; the nearest is " +
                             nearest.substr(1));
  return nearest;
}

Phrase phraseOf(const std::vector<std::string> &words) {
  try {
    return Phrase(words);
  } catch (const std::invalid_argument &error) {
    throw CommandFailure(exitUsage, error.what());
  }
}

std::string counted(size_t count, const char *noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string joined(const std::vector<std::string> &words) {
  std::string result;
  for (const std::string &word : words)
    result += (result.empty() ? "" : " ") + word;
  return result;
}

class PageCounter {
public:
  PageCounter(bool enabled, std::ostream &err) : enabled_(enabled), err_(err) {}
  PageCounter(const PageCounter &) = delete;
  PageCounter &operator=(const PageCounter &) = delete;
  ~PageCounter() {
    if (enabled_) err_ << "\r\033[K" << std::flush;
  }
  void show(int32_t page, int32_t pages) {
    if (enabled_) err_ << "\rsearching page " << page + 1 << " of " << pages << std::flush;
  }

private:
  bool enabled_;
  std::ostream &err_;
};

[[noreturn]] void failOutput(const std::string &name) {
  throw CommandFailure(exitOutput, name + ": " + (errno != 0 ? std::strerror(errno) : "cannot be written"));
}

// Writes a complete file or none. A terminal, a pipe or a device is written to directly; a link to an
// existing file stays a link.
void writeFile(const std::string &name, const std::string &text) {
  std::error_code error;
  const fs::file_status status = fs::status(name, error);
  if (fs::is_directory(status)) throw CommandFailure(exitOutput, name + ": this is a directory");
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    errno = 0;
    std::ofstream stream(name, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) failOutput(name);
    return;
  }
  OutputFile file(fs::exists(status) ? fs::canonical(name) : fs::path(name));
  file.write(text);
  file.commit();
}

struct Found {
  std::vector<PageHits> pages;
  size_t hits = 0, leftOut = 0;
  int32_t pageCount = 0;
  PagesLeftOut leftOutPages;
};

Found search(const HitsOptions &options, const Phrase &phrase, std::ostream &err) {
  constexpr size_t pagesAhead = 64; // words have no weight
  host::ProcessOptions processes = options.processes;
  processes.wordProcesses = usableProcessors();
  processes.imageProcesses = 0;
  const OpenedDocument document = openDocument(options.document, options.password, processes);
  Found found;
  found.pageCount = document.opened.pageCount;
  PagesAhead<host::PagePlainWords> ahead(*document.service, found.pageCount,
                                         [](int32_t page) { return host::PlainWordsRequest{page}; }, {pagesAhead});
  PageCounter counter(options.progress, err);
  for (int32_t page = 0; page < found.pageCount; ++page) {
    counter.show(page, found.pageCount);
    std::vector<Hit> hits;
    try {
      hits = phrase.find(ahead.take(page).words);
    } catch (const host::DocumentError &error) {
      found.leftOutPages.add(page, error.reason);
    }
    found.leftOut += dropUnplaceable(hits, options.units == "words");
    found.hits += hits.size();
    if (!hits.empty()) found.pages.push_back({page, std::move(hits)});
  }
  return found;
}

ExitStatus searchAndWrite(const HitsOptions &options, std::ostream &out, std::ostream &err) {
  std::error_code isNone; // one of them does not exist
  if (fs::equivalent(options.output, options.document, isNone))
    throw CommandFailure(exitUsage, options.output + ": this is the document itself");
  const std::string color = options.color.empty() ? "" : checkedColor(options.color);
  const Phrase phrase = phraseOf(options.words);
  const Found found = search(options, phrase, err);
  const std::string document = options.document.string();
  const ExitStatus status = found.leftOutPages.none() ? exitDone : exitPagesLeftOut;
  found.leftOutPages.report(err, document, found.pageCount, PagesLeftOut::Processed::allPages, options.processes);
  if (found.leftOut > 0)
    err << "tavrel: " << document << ": " << counted(found.leftOut, "hit")
        << " left out: a highlight file has positions up to " << lastPosition << "\n";
  if (found.hits == 0)
    throw CommandFailure(exitNothingMarked, document + ": " + (found.leftOut > 0 ? "no other hits of" : "no hits of") +
                                                " \"" + joined(options.words) + "\"" + found.leftOutPages.otherPages());

  const std::string text = highlightFile(found.pages, options.units, color, options.mode);
  if (options.output == "-") {
    errno = 0;
    out << text << std::flush;
    if (!out) failOutput("standard output");
    return status;
  }
  writeFile(options.output, text);
  out << counted(found.hits, "hit") << " on " << found.pages.size() << " of "
      << counted(static_cast<size_t>(found.pageCount), "page") << " -> " << options.output << std::endl;
  return status;
}

} // namespace

size_t dropUnplaceable(std::vector<Hit> &hits, bool inWords) {
  return std::erase_if(hits, [inWords](const Hit &hit) { return (inWords ? hit.word : hit.offset) > lastPosition; });
}

std::string highlightFile(std::span<const PageHits> pages, const std::string &units, const std::string &color,
                          const std::string &mode) {
  const bool inWords = units == "words";
  std::string file = "<?xml version=\"1.0\"?>\n<XML>\n<Body Units=\"" + units + "\"";
  if (!color.empty()) file += " color=\"" + color + "\"";
  if (!mode.empty()) file += " mode=\"" + mode + "\"";
  file += " version=\"2\">\n<highlights>\n"; // words are numbered in reading order
  for (const PageHits &page : pages)
    for (const Hit &hit : page.hits)
      file += "<loc pg=\"" + std::to_string(page.page) + "\" pos=\"" + std::to_string(inWords ? hit.word : hit.offset) +
              "\" len=\"" + std::to_string(inWords ? hit.words : hit.length) + "\"/>\n";
  return file + "</highlights>\n</Body>\n</XML>\n";
}

int writeHits(const HitsOptions &options, std::ostream &out, std::ostream &err) {
  try {
    return searchAndWrite(options, out, err);
  } catch (const CommandFailure &failure) {
    err << "tavrel: " << failure.what() << "\n";
    return failure.status;
  } catch (const host::DocumentError &error) {
    err << "tavrel: " << error.what() << "\n";
    return error.reason == host::DocumentError::wrongPassword ? exitPassword : exitDocument;
  } catch (const std::bad_alloc &) {
    err << "tavrel: " << options.document.string() << ": memory is exhausted\n";
  } catch (const std::exception &error) {
    err << "tavrel: " << error.what() << "\n";
  }
  return exitHostFailure;
}

void addHitsCommand(CLI::App &app, int &status) {
  const auto options = std::make_shared<HitsOptions>();
  CLI::App *command = app.add_subcommand("hits", "Find a phrase in a document and write a highlight file of its hits");
  command->add_option("DOC", options->document, "The PDF to search")->required();
  command->add_option("WORDS", options->words, "The phrase: whole words; case, accents and punctuation do not count")
      ->required();
  command->add_option("--units", options->units, "Mark the letters found, or the words that contain them")
      ->check(oneOf({"characters", "words"}))
      ->capture_default_str();
  command->add_option("--color", options->color, "Colour of the marks, RRGGBB; the digits of each pair are equal");
  command->add_option("--mode", options->mode, "active: viewers scroll to the first hit")->check(oneOf({"active"}));
  addPasswordOptions(*command, options->password);
  addProcessOptions(*command, options->processes);
  command->add_option("-o,--output", options->output, "Where to write the highlight file; - is standard output")
      ->capture_default_str();
  command->callback([options, &status] {
    options->progress = isatty(STDERR_FILENO) != 0;
    status = writeHits(*options, std::cout, std::cerr);
  });
}

} // namespace tools
