// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Copies and concatenations, bounded and not, of both kinds of strings. Expectations show every byte of the buffer.
#include <gtest/gtest.h>

#include "plugin/util/miUtils.h"
#include "tests/plugin/util/strings.h"
#include "tests/support/Rows.h"

namespace {

TEST(Strcpy, ByteStringReturnsTheDestination) {
  std::string buffer = dots(5);
  EXPECT_EQ(miStrcpySAFE(buffer.data(), "abc"), buffer.data());
  EXPECT_EQ(buffer, "abc" + nul + ".");
}

// Unlike a byte string.
TEST(Strcpy, UcsStringReturnsThePositionAfterTheTerminator) {
  std::string buffer = dots(10);
  const std::string source = ended(ucs("AB"));
  EXPECT_EQ(miStrcpySAFE(buffer.data(), source.c_str()) - buffer.data(), 8);
  EXPECT_EQ(buffer, ucs("AB") + nulUnit + "..");
}

TEST(Strcpy, UcsMarkAlone) {
  std::string buffer = dots(6);
  const std::string source = ended(ucs(""));
  EXPECT_EQ(miStrcpySAFE(buffer.data(), source.c_str()) - buffer.data(), 4);
  EXPECT_EQ(buffer, ucs("") + nulUnit + "..");
}

TEST(Strcpy, UcsUnitsWithZeroBytesAreCopied) {
  std::string buffer = dots(8);
  const std::string source = ended(ucs({0x4100, 0x0042}));
  miStrcpySAFE(buffer.data(), source.c_str());
  EXPECT_EQ(buffer, ucs({0x4100, 0x0042}) + nulUnit);
}

// Concatenation: the destination decides.

std::string concatenated(std::string destination, const std::string &source, size_t size) {
  destination = ended(destination);
  destination.resize(size, '.');
  EXPECT_EQ(miStrcatSAFE(destination.data(), ended(source).c_str()), destination.data());
  return destination;
}

TEST(Strcat, ByteStrings) { EXPECT_EQ(concatenated("abc", "de", 8), "abcde" + nul + ".."); }

TEST(Strcat, NothingOntoNothing) { EXPECT_EQ(concatenated("", "", 3), nulUnit + "."); }

TEST(Strcat, UcsStringsLoseTheSecondMark) { EXPECT_EQ(concatenated(ucs("A"), ucs("BCD"), 12), ucs("ABCD") + nulUnit); }

TEST(Strcat, UcsMarkAloneAddsNothing) { EXPECT_EQ(concatenated(ucs("AB"), ucs(""), 10), ucs("AB") + nulUnit + ".."); }

TEST(Strcat, OntoUcsTheSourceIsTakenForUcs) {
  EXPECT_EQ(concatenated(ucs("A"), std::string("xy\0B", 4), 10), ucs("AB") + nulUnit + "..");
}

TEST(Strcat, OntoBytesAUcsSourceIsBytes) { EXPECT_EQ(concatenated("a", ucs("B"), 6), "a\xFE\xFF" + nul + ".."); }

// Bounded copies.

struct CopyRow : Row {
  std::string source;
  uint32_t size;
  int result;
  std::string buffer; ///< the bytes that were written; dots follow
};

/// The buffer after a copy into it, twelve bytes long.
template <typename Copy> std::string after(Copy copy, const CopyRow &row) {
  std::string buffer = dots(12);
  EXPECT_EQ(copy(buffer.data(), ended(row.source).c_str(), row.size), row.result);
  return buffer;
}

std::string dotted(const std::string &written) { return written + dots(12 - written.size()); }

class BoundedCopy : public testing::TestWithParam<CopyRow> {};

TEST_P(BoundedCopy, Fits) { EXPECT_EQ(after(miStrncpySAFE, GetParam()), dotted(GetParam().buffer)); }

const CopyRow copies[] = {
    {{"OneByteTooShort"}, "hello", 5, 0, "hell" + nul},
    {{"FitsExactly"}, "hello", 6, 1, "hello" + nul},
    {{"MoreSpaceThanNeeded"}, "hello", 10, 1, "hello" + nul},
    {{"OnlyTheTerminator"}, "hello", 1, 0, nul},
    {{"Empty"}, "", 1, 1, nul},
    {{"UcsFitsExactly"}, ucs("AB"), 8, 1, ucs("AB") + nulUnit},
    {{"UcsMoreSpaceThanNeeded"}, ucs("AB"), 11, 1, ucs("AB") + nulUnit},
    {{"UcsOddSizeIsRoundedDown"}, ucs("AB"), 7, 0, ucs("A") + nulUnit},
    {{"UcsOddSizeThatSuffices"}, ucs("AB"), 9, 1, ucs("AB") + nulUnit},
    {{"UcsTooShort"}, ucs("AB"), 6, 0, ucs("A") + nulUnit},
    {{"UcsOnlyTheMark"}, ucs("AB"), 4, 0, ucs("") + nulUnit},
    {{"UcsOnlyTheTerminator"}, ucs("AB"), 2, 0, nulUnit},
    {{"UcsOddSizeForTheTerminator"}, ucs("AB"), 3, 0, nulUnit},
    {{"UcsMarkFits"}, ucs(""), 4, 1, ucs("") + nulUnit},
    // Too small for any terminator: nothing is written, least of all before the buffer.
    {{"SizeZero"}, "hello", 0, 0, ""},
    {{"UcsSizeZero"}, ucs("AB"), 0, 0, ""},
    {{"UcsSizeOne"}, ucs("AB"), 1, 0, ""},
};
INSTANTIATE_TEST_SUITE_P(Sizes, BoundedCopy, testing::ValuesIn(copies), rowName<CopyRow>);

class StandardCopy : public testing::TestWithParam<CopyRow> {};

TEST_P(StandardCopy, EndsOnlyShorterStrings) {
  EXPECT_EQ(after(miStrncpy_StandardSAFE, GetParam()), dotted(GetParam().buffer));
}

const CopyRow standardCopies[] = {
    {{"AsLongAsTheBuffer"}, "abc", 3, 0, "abc"},
    {{"Longer"}, "abcde", 3, 0, "abc"},
    {{"Shorter"}, "abc", 4, 1, "abc" + nul},
    {{"MuchShorter"}, "a", 9, 1, "a" + nul},
    {{"Empty"}, "", 1, 1, nul},
    {{"NoBytes"}, "abc", 0, 0, ""},
    {{"EmptyIntoNoBytes"}, "", 0, 0, ""},
    {{"UcsShorter"}, ucs("A"), 5, 1, ucs("A") + nulUnit},
    {{"UcsAsLong"}, ucs("A"), 4, 0, ucs("A")},
    {{"UcsTruncatedInAUnit"}, ucs("A"), 3, 0, ucs("") + nul},
};
INSTANTIATE_TEST_SUITE_P(Sizes, StandardCopy, testing::ValuesIn(standardCopies), rowName<CopyRow>);

struct CatRow : Row {
  std::string destination, source;
  uint32_t size;
  int result;
  std::string buffer;
};

class BoundedConcatenation : public testing::TestWithParam<CatRow> {};

TEST_P(BoundedConcatenation, Fits) {
  std::string buffer = dotted(ended(GetParam().destination));
  EXPECT_EQ(miStrncatSAFE(buffer.data(), ended(GetParam().source).c_str(), GetParam().size), GetParam().result);
  EXPECT_EQ(buffer.substr(0, GetParam().buffer.size()), GetParam().buffer);
  EXPECT_EQ(buffer.substr(GetParam().size), dotted(ended(GetParam().destination)).substr(GetParam().size))
      << "nothing is written beyond the size";
}

const CatRow concatenations[] = {
    {{"FitsExactly"}, "abc", "de", 6, 1, "abcde" + nul},
    {{"OneByteTooShort"}, "abc", "de", 5, 0, "abcd" + nul},
    {{"NoSpace"}, "abc", "de", 4, 0, "abc" + nul},
    {{"MoreSpaceThanNeeded"}, "abc", "de", 12, 1, "abcde" + nul},
    {{"OntoNothing"}, "", "de", 3, 1, "de" + nul},
    {{"OntoNothingTooShort"}, "", "de", 2, 0, "d" + nul},
    {{"Nothing"}, "abc", "", 4, 1, "abc" + nul},
    {{"NothingOntoNothing"}, "", "", 1, 1, nul},
    {{"UcsFits"}, ucs("A"), ucs("B"), 12, 1, ucs("AB") + nulUnit},
    {{"DestinationTooLong"}, "abcdef", "g", 3, 0, "ab" + nul},
    {{"UcsTruncatedEndsInAUnit"}, ucs({0x4E2D}), ucs({0x4E2D}), 8, 0, ucs({0x4E2D}) + "\xFE\xFF" + nulUnit},
    {{"UcsEndsAtAnOddSize"}, ucs({0x4E2D}), ucs({0x4E2D, 0x4E2D}), 9, 0, ucs({0x4E2D}) + "\xFE\xFF" + nulUnit + nul},
    {{"UcsTruncatedToNothing"}, ucs({0x4E2D}), ucs({0x4E2D}), 2, 0, nulUnit},
    {{"UcsTruncatedToOneByte"}, ucs({0x4E2D}), ucs({0x4E2D}), 1, 0, nul},
    {{"SizeZero"}, "abc", "de", 0, 0, "abc"},
};
INSTANTIATE_TEST_SUITE_P(Sizes, BoundedConcatenation, testing::ValuesIn(concatenations), rowName<CatRow>);

// Formats.

TEST(Sprintf, ReturnsItsLength) {
  std::string buffer = dots(10);
  EXPECT_EQ(miSprintfSAFE(buffer.data(), "%d-%s", 12, "ab"), 5);
  EXPECT_EQ(buffer, "12-ab" + nul + "....");
}

struct FormatRow : Row {
  uint32_t size;
  int number, result;
  std::string buffer;
};

class BoundedFormat : public testing::TestWithParam<FormatRow> {};

TEST_P(BoundedFormat, IsTruncatedAndTerminated) {
  std::string buffer = dots(12);
  EXPECT_EQ(miSnprintfSAFE(buffer.data(), GetParam().size, "%d", GetParam().number), GetParam().result);
  EXPECT_EQ(buffer.substr(0, GetParam().buffer.size()), GetParam().buffer);
  EXPECT_EQ(buffer.substr(GetParam().size), dots(12 - GetParam().size));
}

const FormatRow formats[] = {
    {{"FirstThreeOfFiveDigits"}, 4, 12345, 5, "123" + nul},
    {{"OneByteTooShort"}, 5, 12345, 5, "1234" + nul},
    {{"FitsExactly"}, 6, 12345, 5, "12345" + nul},
    {{"OnlyTheTerminator"}, 1, 12345, 5, nul},
    {{"LastByteIsZeroedToo"}, 10, 12345, 5, "12345" + nul + "..." + nul},
};
INSTANTIATE_TEST_SUITE_P(Sizes, BoundedFormat, testing::ValuesIn(formats), rowName<FormatRow>);

TEST(BoundedFormats, SizeZeroWritesNothing) {
  std::string buffer = dots(3);
  miSnprintfSAFE(buffer.data() + 1, 0, "%d", 12345);
  EXPECT_EQ(buffer, dots(3));
}

int32_t formatWithArguments(char *destination, int size, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int32_t count = size < 0 ? miVsprintfSAFE(destination, format, arguments)
                                 : miVsnprintfSAFE(destination, static_cast<uint32_t>(size), format, arguments);
  va_end(arguments);
  return count;
}

TEST(FormatsWithArgumentLists, DoTheSame) {
  std::string buffer = dots(8);
  EXPECT_EQ(formatWithArguments(buffer.data(), -1, "%s%c%d", "ab", '-', 7), 4);
  EXPECT_EQ(buffer, "ab-7" + nul + "...");
  EXPECT_EQ(formatWithArguments(buffer.data(), 3, "%s%c%d", "xy", '-', 7), 4);
  EXPECT_EQ(buffer, "xy" + nul + "7" + nul + "...");
}

} // namespace
