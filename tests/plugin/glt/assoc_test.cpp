// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The association table.
#include <gtest/gtest.h>

#include <cstring>

#include "plugin/glt/miAssoc.h"
#include "tests/host/RecordingHost.h"
#include "tests/support/FailingMemory.h"

namespace {

/// An empty table; emptied again at the end.
class Associations : public testing::Test {
protected:
  /// Stores a string.
  static tavrel::Bool16 put(void *object, uint16_t key1, uint16_t key2, const char *text) {
    return AssociateNew(object, key1, key2, text, static_cast<uint32_t>(strlen(text) + 1));
  }
  /// The string stored, or "".
  static std::string get(void *object, uint16_t key1, uint16_t key2) {
    const void *data = AssociateFind(object, key1, key2);
    return data != nullptr ? static_cast<const char *>(data) : "";
  }
  /// The strings of all entries, from the head.
  static std::vector<std::string> all() {
    std::vector<std::string> texts;
    for (const AssocEntry *entry = s_AssocList; entry != nullptr; entry = entry->next)
      texts.emplace_back(static_cast<const char *>(entry->data));
    return texts;
  }

  RecordingHost host_;
  void *docA = host_.doc, *docB = host_.otherDoc;
};

using Texts = std::vector<std::string>;

TEST_F(Associations, EmptyTableHasNothingToFindOrDelete) {
  EXPECT_EQ(s_AssocList, nullptr);
  EXPECT_EQ(AssociateFind(docA, 5, 5), nullptr);
  EXPECT_EQ(AssociateDelete(docA, 5, 5), 0);
}

TEST_F(Associations, ObjectsHaveSeparateEntries) {
  EXPECT_EQ(put(docA, 5, 5, "A"), 1);
  EXPECT_EQ(put(docB, 5, 5, "B"), 1);
  EXPECT_EQ(get(docB, 5, 5), "B");
  EXPECT_EQ(get(docA, 5, 5), "A");
}

TEST_F(Associations, NewEntriesAreAtTheHead) {
  put(docA, 5, 5, "first");
  put(docB, 5, 5, "second");
  EXPECT_EQ(all(), (Texts{"second", "first"}));
}

TEST_F(Associations, EachOfTheKeysCounts) {
  put(docA, 5, 5, "5 5");
  put(docA, 5, 6, "5 6");
  put(docA, 6, 5, "6 5");
  EXPECT_EQ((Texts{get(docA, 5, 5), get(docA, 5, 6), get(docA, 6, 5), get(docA, 6, 6)}),
            (Texts{"5 5", "5 6", "6 5", ""}));
}

TEST_F(Associations, KeysAndObjectsMayHaveAnyValue) {
  put(nullptr, 0, 65535, "odd");
  EXPECT_EQ(get(nullptr, 0, 65535), "odd");
  EXPECT_EQ(get(nullptr, 0, 0), "");
}

TEST_F(Associations, SecondTimeReplacesTheBytesInPlace) {
  put(docA, 5, 5, "old");
  put(docB, 5, 5, "B");
  const size_t blocks = liveBlocks();
  EXPECT_EQ(put(docA, 5, 5, "new and longer"), 1);
  EXPECT_EQ(liveBlocks(), blocks) << "the old bytes are freed";
  EXPECT_EQ(all(), (Texts{"B", "new and longer"}));
  EXPECT_EQ(s_AssocList->next->size, 15U);
}

TEST_F(Associations, BytesAreACopy) {
  char text[] = "before";
  put(docA, 5, 5, text);
  text[0] = 'X';
  EXPECT_EQ(get(docA, 5, 5), "before");
}

TEST_F(Associations, BytesCanBeChangedInPlace) {
  put(docA, 5, 5, "before");
  static_cast<char *>(AssociateFind(docA, 5, 5))[0] = 'B';
  EXPECT_EQ(get(docA, 5, 5), "Before");
}

TEST_F(Associations, DeletingRemovesOneEntryAtAnyPosition) {
  for (const uint16_t deleted : {1, 2, 3}) {
    for (const uint16_t key : {1, 2, 3})
      put(docA, key, 0, std::to_string(key).c_str());
    EXPECT_EQ(AssociateDelete(docA, deleted, 0), 1);
    EXPECT_EQ(get(docA, deleted, 0), "");
    EXPECT_EQ(all().size(), 2U);
    EXPECT_EQ(AssociateDelete(docA, deleted, 0), 0) << "it is deleted";
  }
}

TEST_F(Associations, ClearingFreesEverything) {
  const size_t blocks = liveBlocks();
  put(docA, 5, 5, "A");
  put(docB, 5, 5, "B");
  EXPECT_EQ(liveBlocks(), blocks + 4) << "two entries and their bytes";
  AssociateClear();
  EXPECT_EQ(liveBlocks(), blocks);
  s_AssocList = nullptr; // the head dangles
}

TEST_F(Associations, ClearingAnEmptyTableIsAllowed) {
  AssociateClear();
  EXPECT_EQ(s_AssocList, nullptr);
}

TEST_F(Associations, OutOfMemoryAddsNothing) {
  put(docB, 5, 5, "B");
  for (const size_t failing : {0, 1}) { // the entry, its bytes
    const FailingMemory memory(failing);
    EXPECT_EQ(put(docA, 5, 5, "A"), 0) << "allocation " << failing;
    EXPECT_EQ(all(), (Texts{"B"}));
  }
}

TEST_F(Associations, OneByteWithoutMemoryIsNotStored) {
  const FailingMemory memory(1);
  EXPECT_EQ(put(docA, 5, 5, ""), 0) << "its terminator alone";
  EXPECT_EQ(s_AssocList, nullptr);
}

TEST_F(Associations, NoBytesNeedNoMemory) {
  const FailingMemory memory(1); // the entry is allocated, its bytes are not
  EXPECT_EQ(AssociateNew(docA, 5, 5, nullptr, 0), 1);
  EXPECT_EQ(AssociateDelete(docA, 5, 5), 1);
}

TEST_F(Associations, ReplacementWithoutMemoryLeavesTheReleasedEntryLinked) {
  put(docA, 5, 5, "old");
  const auto entry = reinterpret_cast<uintptr_t>(s_AssocList);
  {
    const FailingMemory memory(0);
    EXPECT_EQ(put(docA, 5, 5, "new"), 0);
  }
  EXPECT_EQ(reinterpret_cast<uintptr_t>(s_AssocList), entry);
  s_AssocList = nullptr; // the entry and its bytes are freed already
}

TEST_F(Associations, MakeNoHostCall) {
  put(docA, 5, 5, "A");
  put(docA, 5, 5, "B");
  AssociateDelete(docA, 5, 5);
  EXPECT_EQ(host_.story(), "\n");
}

} // namespace
