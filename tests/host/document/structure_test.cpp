// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Which structures of a document are taken from another program.
#include "host/document/structure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace host {
namespace {

constexpr int32_t pages = 3;

std::string line(size_t bytes) { return std::string(bytes, 'a'); }

// One of everything, of three pages.
Structure structure() {
  Structure made;
  made.metadata.title = "title";
  made.labels = {"i", "ii", "iii"};
  made.outline = {{0, "a"}, {1, "b", true, PageTarget{2, -5, 10, 0.5}}, {2, "c"}, {0, "d"}};
  made.attachments = {{"a.txt", "text", "text/plain", 5}};
  return made;
}

PageStructure pageStructure() {
  const Box area{.left = 1, .top = 4, .right = 3, .bottom = 2};
  return {1,
          {{area, UriTarget{"a:b"}}},
          {{FormField::Kind::text, area, "name", "two\nlines"}},
          {{Annotation::Kind::note, area, "two\nlines"}}};
}

template <typename Changed> struct CaseOf {
  const char *name;
  bool isTaken;
  std::function<void(Changed &)> change;
};
using Case = CaseOf<Structure>;
using PageCase = CaseOf<PageStructure>;

template <typename Changed> void PrintTo(const CaseOf<Changed> &one, std::ostream *out) { *out << one.name; }

class Structures : public testing::TestWithParam<Case> {};

TEST_P(Structures, AreCheckedBeforeTheyAreTaken) {
  Structure made = structure();
  GetParam().change(made);
  EXPECT_EQ(isValid(made, pages), GetParam().isTaken);
}

Case ofTarget(const char *name, bool isTaken, const Target &target) {
  return {name, isTaken, [=](Structure &made) { made.outline[1].target = target; }};
}

INSTANTIATE_TEST_SUITE_P(
    Of, Structures,
    testing::Values(
        Case{"AllParts", true, [](Structure &) {}}, //
        Case{"NoParts", true, [](Structure &made) { made = {}; }},
        Case{"ATitleOfTwoLines", false, [](Structure &made) { made.metadata.title = "a\nb"; }},
        Case{"AnAuthorOfNoUtf8", false, [](Structure &made) { made.metadata.author = "\xFF"; }},
        Case{"ASubjectOfControlCharacters", false, [](Structure &made) { made.metadata.subject = "\x1B[1m"; }},
        Case{"KeywordsOfTheLongest", true, [](Structure &made) { made.metadata.keywords = line(most::line); }},
        Case{"TooManyKeywords", false, [](Structure &made) { made.metadata.keywords = line(most::line + 1); }},
        Case{"ACreatorOfTwoLines", false, [](Structure &made) { made.metadata.creator = "\n"; }},
        Case{"AProducerOfTwoLines", false, [](Structure &made) { made.metadata.producer = "\n"; }},
        Case{"AFormatOfTwoLines", false, [](Structure &made) { made.metadata.format = "\n"; }},
        Case{"TooFewLabels", false, [](Structure &made) { made.labels.pop_back(); }},
        Case{"TooManyLabels", false, [](Structure &made) { made.labels.emplace_back("iv"); }},
        Case{"ALabelOfTwoLines", false, [](Structure &made) { made.labels[2] = "a\nb"; }},
        Case{"AnEntryOfTwoLines", false, [](Structure &made) { made.outline[3].title = "a\nb"; }},
        Case{"AFirstEntryBelowNothing", false, [](Structure &made) { made.outline[0].depth = 1; }},
        Case{"AnEntryTwoLevelsDown", false, [](Structure &made) { made.outline[3].depth = 4; }},
        Case{"AnEntryAsDeepAsANumberCanBe", false, [](Structure &made) { made.outline[3].depth = INT32_MAX; }},
        Case{"AnEntryOneLevelDown", true, [](Structure &made) { made.outline[3].depth = 3; }},
        Case{"AnEntryAboveAll", false, [](Structure &made) { made.outline[3].depth = -1; }},
        Case{"TheDeepestOutline", true,
             [](Structure &made) {
               made.outline.clear();
               for (int32_t depth = 0; depth < most::depth; ++depth)
                 made.outline.push_back({depth, "a"});
             }},
        Case{"TooDeepAnOutline", false,
             [](Structure &made) {
               made.outline.clear();
               for (int32_t depth = 0; depth <= most::depth; ++depth)
                 made.outline.push_back({depth, "a"});
             }},
        Case{"TheLongestOutline", true, [](Structure &made) { made.outline.resize(most::outline); }},
        Case{"TooLongAnOutline", false, [](Structure &made) { made.outline.resize(most::outline + 1); }},
        Case{"AnAttachmentsNameOfTwoLines", false, [](Structure &made) { made.attachments[0].name = "a\nb"; }},
        Case{"AnAttachmentsDescriptionOfTwoLines", false,
             [](Structure &made) { made.attachments[0].description = "a\nb"; }},
        Case{"AnAttachmentsTypeOfTwoLines", false, [](Structure &made) { made.attachments[0].type = "a\nb"; }},
        Case{"AsManyAttachmentsAsThereMayBe", true,
             [](Structure &made) { made.attachments.resize(most::attachments); }},
        Case{"TooManyAttachments", false, [](Structure &made) { made.attachments.resize(most::attachments + 1); }}),
    [](const auto &one) { return one.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Leading, Structures,
    testing::Values(
        ofTarget("Nowhere", true, {}), ofTarget("ToTheLastPage", true, PageTarget{pages - 1}),
        ofTarget("ToAPageThatIsNotThere", false, PageTarget{pages}), ofTarget("ToANegativePage", false, PageTarget{-1}),
        ofTarget("FarAway", true, PageTarget{0, 1e9, -1e9, 100}), ofTarget("TooFarLeft", false, PageTarget{0, -1.1e9}),
        ofTarget("TooFarUp", false, PageTarget{0, std::nullopt, HUGE_VAL}),
        ofTarget("ToNoNumber", false, PageTarget{0, std::nan("")}),
        ofTarget("ToTheSmallest", true, PageTarget{0, 0, 0, 0.01}),
        ofTarget("ToTheTooSmall", false, PageTarget{0, 0, 0, 0.009}),
        ofTarget("ToTheTooLarge", false, PageTarget{0, 0, 0, 101}),
        ofTarget("ToNoSize", false, PageTarget{0, 0, 0, std::nan("")}), ofTarget("ToAUri", true, UriTarget{"a:!~"}),
        ofTarget("ToAnEmptyUri", false, UriTarget{""}), ofTarget("ToAUriWithASpace", false, UriTarget{"a b"}),
        ofTarget("ToAUriBeyondAscii", false, UriTarget{"a\u00E4"}),
        ofTarget("ToAUriWithDelete", false, UriTarget{"\x7F"}),
        ofTarget("ToTheLongestUri", true, UriTarget{line(most::line)}),
        ofTarget("ToTooLongAUri", false, UriTarget{line(most::line + 1)}),
        ofTarget("ToAFile", true, FileTarget{"\u00E4 b.pdf", 7, "there"}),
        ofTarget("ToNoFile", false, FileTarget{"", 7, "there"}),
        ofTarget("ToAFileOfTwoLines", false, FileTarget{"a\nb"}),
        ofTarget("ToANegativePageOfAFile", false, FileTarget{"a", -1}),
        ofTarget("ToTwoLinesInAFile", false, FileTarget{"a", std::nullopt, "a\nb"}),
        ofTarget("ToTheNextPage", true, ActionTarget{"NextPage"}), ofTarget("ToNoAction", false, ActionTarget{""}),
        ofTarget("ToAnActionOfTwoLines", false, ActionTarget{"a\nb"})),
    [](const auto &one) { return one.param.name; });

class PageStructures : public testing::TestWithParam<PageCase> {};

TEST_P(PageStructures, AreCheckedBeforeTheyAreTaken) {
  PageStructure made = pageStructure();
  GetParam().change(made);
  EXPECT_EQ(isValid(made, pages), GetParam().isTaken);
}

INSTANTIATE_TEST_SUITE_P(
    Of, PageStructures,
    testing::Values(
        PageCase{"AllParts", true, [](PageStructure &) {}}, //
        PageCase{"NoParts", true,
                 [](PageStructure &made) {
                   made = {1, {}, {}, {}};
                 }},
        PageCase{"ALinkWithoutWidth", false, [](PageStructure &made) { made.links[0].area.right = 1; }},
        PageCase{"ALinkWithoutHeight", false, [](PageStructure &made) { made.links[0].area.top = 2; }},
        PageCase{"ALinkWithoutAPlace", false, [](PageStructure &made) { made.links[0].area.left = std::nan(""); }},
        PageCase{"ALinkToNoPage", false, [](PageStructure &made) { made.links[0].target = PageTarget{pages}; }},
        PageCase{"TheMostLinks", true,
                 [](PageStructure &made) { made.links = std::vector<Link>(most::onPage, made.links[0]); }},
        PageCase{"TooManyLinks", false,
                 [](PageStructure &made) { made.links = std::vector<Link>(most::onPage + 1, made.links[0]); }},
        PageCase{"AFieldOfAnUnknownKind", false, [](PageStructure &made) { made.fields[0].kind = FormField::Kind{7}; }},
        PageCase{"AFieldFarAway", false, [](PageStructure &made) { made.fields[0].area.right = 1.1e9; }},
        PageCase{"AFieldOfTwoLines", false, [](PageStructure &made) { made.fields[0].name = "a\nb"; }},
        PageCase{"AFieldOfControlCharacters", false, [](PageStructure &made) { made.fields[0].contents = "\x1B"; }},
        PageCase{"AFieldOfTheLongestText", true,
                 [](PageStructure &made) { made.fields[0].contents = line(most::lines); }},
        PageCase{"AFieldOfTooLongAText", false,
                 [](PageStructure &made) { made.fields[0].contents = line(most::lines + 1); }},
        PageCase{"TooManyFields", false,
                 [](PageStructure &made) { made.fields = std::vector<FormField>(most::onPage + 1, made.fields[0]); }},
        PageCase{"AnAnnotationOfAnUnknownKind", false,
                 [](PageStructure &made) { made.annotations[0].kind = Annotation::Kind{16}; }},
        PageCase{"AnAnnotationUpsideDown", false, [](PageStructure &made) { made.annotations[0].area.bottom = 5; }},
        PageCase{"AnAnnotationOfNoUtf8", false, [](PageStructure &made) { made.annotations[0].contents = "\xC3"; }},
        PageCase{"TooManyAnnotations", false,
                 [](PageStructure &made) {
                   made.annotations = std::vector<Annotation>(most::onPage + 1, made.annotations[0]);
                 }}),
    [](const auto &one) { return one.param.name; });

} // namespace
} // namespace host
