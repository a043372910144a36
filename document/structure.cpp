// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/structure.h"

#include <iconv.h>

#include <new>
#include <utility>

#include "document/answering.h"
#include "document/attachments.h"
#include "document/details.h"
#include "document/documentstructure.h"
#include "document/frames.h"
#include "document/mappedfile.h"
#include "document/owned.h"
#include "document/pagestructure.h"
#include "host/document/documenterror.h"

namespace document {
namespace {

using Value = decltype(host::Answer::value);

[[noreturn]] void fail(tavrel::ErrorCode code, const std::filesystem::path &file, const std::string &reason) {
  throw host::HostError(code, host::nameInMessage(file) + ": " + reason);
}

// What the libraries print would be mixed up with what the viewer prints.
void silenceLibraries() {
  g_log_set_default_handler([](const char *, GLogLevelFlags, const char *, void *) {}, nullptr);
}

// The library makes Latin-1 of a password, which it takes for UTF-8; then it has the bytes by which the document is
// open already. Should it fail by them, it would try others, and crash.
std::string passwordOf(const std::string &bytes) {
  std::string utf8;
  for (const char c : bytes)
    if (const auto byte = static_cast<unsigned char>(c); byte < 0x80)
      utf8 += c;
    else
      utf8.append({static_cast<char>(0xC0 | (byte >> 6)), static_cast<char>(0x80 | (byte & 0x3F))});
  return utf8;
}

OwnedObject<PopplerDocument> openedDocument(std::span<const char> bytes, const std::filesystem::path &name,
                                            const std::string &password) {
  const Owned<GBytes, g_bytes_unref> given(g_bytes_new_static(bytes.data(), bytes.size()));
  OwnedObject<PopplerDocument> pdf(poppler_document_new_from_bytes(given.get(), passwordOf(password).c_str(), nullptr));
  if (pdf == nullptr) fail(tavrel::errDocument, name, "its structure cannot be read");
  return pdf;
}

} // namespace

// The open document. What refers to something else is declared after it.
class StructureReader::Pdf {
public:
  Pdf(const MappedFile &file, const std::filesystem::path &name, const std::string &password)
      : name_(name), pdf_(openedDocument(file.bytes(), name, password)), details_(file.bytes(), password) {}

  Value operator()(const host::OpenRequest & /*asked*/) {
    return host::Opened{poppler_document_get_n_pages(pdf_.get()), {}};
  }
  Value operator()(const host::StructureRequest &asked) {
    checkPages(asked.pages);
    return structureOf(*pdf_, frames_, details_);
  }
  Value operator()(const host::PageStructureRequest &asked) {
    checkPages(asked.pages);
    const std::string number = std::to_string(int64_t{asked.page} + 1);
    if (asked.page < 0 || asked.page >= asked.pages) fail(tavrel::errBadPage, name_, "no page " + number);
    const OwnedObject<PopplerPage> page(poppler_document_get_page(pdf_.get(), asked.page));
    if (page == nullptr) fail(tavrel::errDocument, name_, "page " + number + " is damaged");
    host::PageStructure structure = pageStructureOf(*pdf_, *page, frames_);
    structure.page = asked.page;
    return structure;
  }
  Value operator()(const host::AttachmentRequest &asked) {
    const std::string number = std::to_string(int64_t{asked.index} + 1);
    const Attached attached = attachedFile(*pdf_, asked.index);
    if (attached.state == Attached::noMemory) throw std::bad_alloc();
    if (attached.state == Attached::missing) fail(tavrel::errBadArgument, name_, "no attached file " + number);
    if (attached.state == Attached::tooLarge)
      fail(tavrel::errDocument, name_,
           "the attached file " + number + " is larger than " + std::to_string(host::most::attachedFile >> 20) + " MB");
    if (attached.state == Attached::damaged)
      fail(tavrel::errDocument, name_, "the attached file " + number + " is damaged");
    return host::AttachedFile{asked.index, attached.bytes};
  }
  template <typename Other> Value operator()(const Other & /*asked*/) {
    fail(tavrel::errBadArgument, name_, "this is not about its structure");
  }

private:
  // The owner has got the number of pages before, and checks targets against it.
  void checkPages(int32_t pages) const {
    if (pages != poppler_document_get_n_pages(pdf_.get()))
      fail(tavrel::errBadArgument, name_, "it does not have " + std::to_string(pages) + " pages");
  }

  std::filesystem::path name_;
  OwnedObject<PopplerDocument> pdf_;
  Details details_;
  PageFrames frames_{*pdf_, details_};
};

void StructureReader::prepareLibraries() {
  silenceLibraries();
  // For passwords: a module, which stays loaded while it is in use.
  [[maybe_unused]] static const iconv_t s_loaded = iconv_open("ISO-8859-1", "UTF-8");
}

StructureReader::StructureReader(std::unique_ptr<const MappedFile> file, std::filesystem::path name,
                                 std::string password)
    : file_(std::move(file)), name_(std::move(name)), password_(std::move(password)) {}

StructureReader::~StructureReader() = default;

host::Answer StructureReader::answer(const host::Request &request) noexcept {
  host::Answer answer;
  try {
    if (pdf_ == nullptr) pdf_ = std::make_unique<Pdf>(*file_, name_, password_);
    answer.value = std::visit(*pdf_, request);
  } catch (const std::exception &) {
    answer.value = caughtFailure(name_);
  }
  return answer;
}

} // namespace document
