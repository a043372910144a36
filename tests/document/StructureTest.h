// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Asks for the structure of documents that tests make. Every answer has to be one that the owner of the process takes.
#pragma once

#include <gmock/gmock.h>

#include "document/structure.h"
#include "host/document/openfile.h"
#include "host/document/orders.h"
#include "support/pdfparts.h"

namespace document {

struct StructureTest : testing::Test {
  StructureTest() { StructureReader::prepareLibraries(); }

  // Writes a document, and opens it.
  void write(const std::vector<test::PdfPage> &pages, const test::PdfParts &parts = {}) {
    open(folder.pdf(pages, {}, {}, parts), static_cast<int32_t>(pages.size()));
  }
  void open(const std::filesystem::path &name, int32_t pages, const std::string &password = {}) {
    file = name;
    count = pages;
    auto bytes = std::make_unique<const MappedFile>(host::OpenFile(name).descriptor(), name);
    reader = std::make_unique<StructureReader>(std::move(bytes), "paper.pdf", password);
  }

  host::Answer answer(const host::Request &request) const {
    EXPECT_EQ(host::kindOf(request), host::ProcessKind::structure);
    host::Answer answer = reader->answer(request);
    EXPECT_TRUE(host::fits(request, answer));
    return answer;
  }
  template <typename Expected> Expected get(const host::Request &request) const {
    const host::Answer given = answer(request);
    const auto *failure = std::get_if<host::Failure>(&given.value);
    EXPECT_EQ(failure, nullptr) << failure->line;
    return failure != nullptr ? Expected() : std::get<Expected>(given.value);
  }
  // The line of the failure.
  std::string error(const host::Request &request) const {
    const host::Answer given = answer(request);
    const auto *failure = std::get_if<host::Failure>(&given.value);
    return failure == nullptr ? "none" : failure->line;
  }
  host::Structure structure() const { return get<host::Structure>(host::StructureRequest{count}); }
  host::PageStructure page(int32_t page = 0) const {
    return get<host::PageStructure>(host::PageStructureRequest{page, count});
  }

  test::ScratchFolder folder;
  std::filesystem::path file;
  int32_t count = 0;
  std::unique_ptr<StructureReader> reader;
};

} // namespace document
