// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// tavrel-structure: reads the structure of one PDF for the program that has started it. A program of its own, because
// what it links would make tavrel-document start slower.
#include <memory>

#include "document/answering.h"
#include "document/serving.h"
#include "document/structure.h"

namespace {

class Reader {
public:
  host::Answer answer(const host::Request &request, int passed) {
    if (const auto *open = std::get_if<host::OpenRequest>(&request)) try {
        auto bytes = std::make_unique<const document::MappedFile>(passed, open->file);
        structure_ = std::make_unique<document::StructureReader>(std::move(bytes), open->file, open->password);
      } catch (const std::exception &) {
        return {document::caughtFailure(open->file)};
      }
    if (structure_ == nullptr) return {host::Failure{tavrel::errBadArgument, "no document is open"}};
    return structure_->answer(request);
  }

private:
  std::unique_ptr<document::StructureReader> structure_;
};

} // namespace

int main(int argc, char **argv) {
  document::PdfFile::prepareLibrary();
  document::StructureReader::prepareLibraries();
  Reader reader;
  document::serve(argc, argv, [&](const host::Request &request, const host::Descriptor &passed) {
    return reader.answer(request, passed.number());
  });
}
