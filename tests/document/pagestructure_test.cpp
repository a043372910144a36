// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The links, forms and annotations of a page: where they are, and what they say.
#include "StructureTest.h"
#include "document/pdf.h"

namespace document {
namespace {

using Field = host::FormField::Kind;
using Note = host::Annotation::Kind;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A page with annotations, of 400 by 600 points.
test::PdfPage pageWith(std::vector<std::string> annotations) {
  test::PdfPage page;
  page.annotations = std::move(annotations);
  return page;
}

std::string linkTo(const std::string &entries, const std::string &area = "10 20 30 40") {
  return "/Subtype /Link /Rect [" + area + "] " + entries;
}

const host::Box usualArea{.left = 10, .top = 40, .right = 30, .bottom = 20};

// ---- areas ----

struct Turned {
  int rotate;
  const char *cropBox;
};

void PrintTo(const Turned &page, std::ostream *out) { *out << page.rotate << " degrees, cropped to " << page.cropBox; }

struct TurnedPages : StructureTest, testing::WithParamInterface<Turned> {
  // A page with a word of which links, fields, annotations and destinations are told in the file's coordinates: the
  // word begins at (100, 200), and is 24 points wide.
  static test::PdfPage page(std::vector<std::string> annotations) {
    test::PdfPage page = pageWith(std::move(annotations));
    page.texts = {{.x = 100, .y = 200, .text = "lamp"}};
    page.rotate = GetParam().rotate;
    page.cropBox = GetParam().cropBox;
    return page;
  }
  // As the word says.
  host::Box wordArea() const { return PdfFile::open(file, "")->text(0).words.at(0).bounds; }
  // One link, field or annotation, with the word's area but for the height of the font's letters.
  template <typename Part> void expectWordArea(const std::vector<Part> &parts) const {
    ASSERT_THAT(parts, SizeIs(1));
    const host::Box &area = parts[0].area;
    const host::Box word = wordArea();
    constexpr double letters = 2.6;
    EXPECT_NEAR(area.left, word.left, letters);
    EXPECT_NEAR(area.right, word.right, letters);
    EXPECT_NEAR(area.top, word.top, letters);
    EXPECT_NEAR(area.bottom, word.bottom, letters);
    EXPECT_NEAR(std::max(area.right - area.left, area.top - area.bottom), 24, 1e-6);
    EXPECT_NEAR(std::min(area.right - area.left, area.top - area.bottom), 10, 1e-6);
  }
};

constexpr const char *wordRect = "/Rect [100 198 124 208]";

TEST_P(TurnedPages, ALinkCoversItsWord) {
  write({page({std::string("/Subtype /Link /A << /S /URI /URI (a:b) >> ") + wordRect})});
  expectWordArea(this->StructureTest::page().links);
}

TEST_P(TurnedPages, AFieldCoversItsWord) {
  write({page({std::string("/Subtype /Widget /FT /Tx /T (a) ") + wordRect})});
  expectWordArea(this->StructureTest::page().fields);
}

TEST_P(TurnedPages, AnAnnotationCoversItsWord) {
  write({page({std::string("/Subtype /Square ") + wordRect})});
  expectWordArea(this->StructureTest::page().annotations);
}

// The upper left corner of the word as it is read.
TEST_P(TurnedPages, ADestinationIsAtItsWord) {
  write({page({std::string("/Subtype /Link /Dest [{page 0} /XYZ 100 208 0] ") + wordRect})});
  const auto links = this->StructureTest::page().links;
  ASSERT_THAT(links, SizeIs(1));
  const host::Box &area = links[0].area;
  const auto &target = std::get<host::PageTarget>(links[0].target);
  const int turns = GetParam().rotate / 90;
  EXPECT_EQ(target.left, turns == 0 || turns == 3 ? area.left : area.right);
  EXPECT_EQ(target.top, turns < 2 ? area.top : area.bottom);
}

// Of a line across the unrotated page only its distance from one side is known.
TEST_P(TurnedPages, ADestinationOfOneCoordinateHasOne) {
  write({page({std::string("/Subtype /Link /Dest [{page 0} /FitH 208] ") + wordRect})});
  const auto links = this->StructureTest::page().links;
  ASSERT_THAT(links, SizeIs(1));
  const auto &target = std::get<host::PageTarget>(links[0].target);
  EXPECT_EQ(target.top.has_value(), GetParam().rotate % 180 == 0);
  EXPECT_EQ(target.left.has_value(), GetParam().rotate % 180 != 0);
}

INSTANTIATE_TEST_SUITE_P(Of, TurnedPages,
                         testing::Values(Turned{0, ""}, Turned{90, ""}, Turned{180, ""}, Turned{270, ""},
                                         Turned{0, "50 60 350 500"}, Turned{90, "50 60 350 500"},
                                         Turned{180, "50 60 350 500"}, Turned{270, "50 60 350 500"}));

TEST_F(StructureTest, AreasThatAreNoneAreLeftOut) {
  const std::string entries = "/A << /S /URI /URI (a:b) >>";
  std::vector<std::string> links;
  for (const char *area : {"10 20 10 40", "10 20 30 20", "500 20 600 40", "-30 -40 -10 -20",
                           "-99999999999999999999 0 99999999999999999999 9"})
    links.push_back(linkTo(entries, area));
  links.push_back("/Subtype /Square /Rect [10 20 10 20]");
  links.push_back("/Subtype /Widget /FT /Tx /Rect [0 0 0 0]");
  write({pageWith(links)});
  EXPECT_THAT(page().links, IsEmpty());
  EXPECT_THAT(page().annotations, IsEmpty());
  EXPECT_THAT(page().fields, IsEmpty());
}

TEST_F(StructureTest, AnAreaIsThePartOnThePage) {
  write({pageWith(
      {linkTo("/Dest [{page 0} /Fit]", "-100 -200 1000 2000"), linkTo("/Dest [{page 0} /Fit]", "30 40 10 20")})});
  const auto links = page().links;
  ASSERT_THAT(links, SizeIs(2));
  EXPECT_EQ(links[0].area, (host::Box{.left = 0, .top = 600, .right = 400, .bottom = 0}));
  EXPECT_EQ(links[1].area, usualArea) << "its corners the other way round";
}

// ---- links ----

TEST_F(StructureTest, LinksHaveTheTargetsOfTheirActions) {
  write({pageWith({linkTo("/Dest [{page 1} /XYZ 1 2 0]"), linkTo("/A << /S /URI /URI (http://a.example/) >>"),
                   linkTo("/A << /S /GoToR /F (b.pdf) /D (there) >>"), linkTo("/A << /S /Named /N /LastPage >>")}),
         {}});
  const auto links = page().links;
  ASSERT_THAT(links, SizeIs(4));
  EXPECT_EQ(links[0].area, usualArea);
  EXPECT_EQ(std::get<host::PageTarget>(links[0].target).page, 1);
  EXPECT_EQ(std::get<host::PageTarget>(links[0].target).top, 2);
  EXPECT_EQ(std::get<host::UriTarget>(links[1].target).uri, "http://a.example/");
  EXPECT_EQ(std::get<host::FileTarget>(links[2].target).destination, "there");
  EXPECT_EQ(std::get<host::ActionTarget>(links[3].target).name, "LastPage");
  EXPECT_THAT(page(1).links, IsEmpty());
}

TEST_F(StructureTest, LinksThatLeadNowhereAreLeftOut) {
  write({pageWith({linkTo("/Dest [999 /Fit]"), linkTo("/Dest (nowhere)"), linkTo(""),
                   linkTo("/A << /S /JavaScript /JS (app.alert\\(1\\)) >>")})});
  EXPECT_THAT(page().links, IsEmpty());
}

// The PDF library takes a page with more for damaged.
TEST_F(StructureTest, AsManyLinksAreTakenAsAPageMayHave) {
  write({pageWith(std::vector<std::string>(host::most::onPage, linkTo("/Dest [{page 0} /Fit]")))});
  EXPECT_THAT(page().links, SizeIs(host::most::onPage));
}

// ---- forms ----

std::string field(const std::string &entries) { return "/Subtype /Widget /Rect [10 20 30 40] " + entries; }

struct FieldTest : StructureTest {
  host::FormField only(const std::string &entries) {
    write({pageWith({field(entries)})});
    auto fields = page().fields;
    EXPECT_THAT(fields, SizeIs(1)) << entries;
    EXPECT_THAT(page().annotations, IsEmpty());
    return fields.empty() ? host::FormField() : fields[0];
  }
};

TEST_F(FieldTest, AFieldHasItsNameAndText) {
  const auto text = only("/FT /Tx /T (na\tme) /V " + test::pdfString(U"\u00E4\nb"));
  EXPECT_EQ(text.kind, Field::text);
  EXPECT_EQ(text.area, usualArea);
  EXPECT_EQ(text.name, "na me");
  EXPECT_EQ(text.contents, "\u00E4\nb");
  EXPECT_FALSE(text.isReadOnly);
}

TEST_F(FieldTest, AFieldMayBeReadOnly) { EXPECT_TRUE(only("/FT /Tx /T (a) /Ff 1").isReadOnly); }

TEST_F(FieldTest, APasswordIsKept) { EXPECT_EQ(only("/FT /Tx /T (a) /V (secret) /Ff 8192").contents, ""); }

TEST_F(FieldTest, AChoiceIsWhatIsChosen) {
  const auto choice = only("/FT /Ch /T (a) /Opt [(one) (two) (three)] /Ff 2097152 /V [(one) (three)] /I [0 2]");
  EXPECT_EQ(choice.kind, Field::choice);
  EXPECT_EQ(choice.contents, "one\nthree");
}

TEST_F(FieldTest, AChoiceMayBeTyped) {
  EXPECT_EQ(only("/FT /Ch /T (a) /Opt [(one)] /Ff 393216 /V (other)").contents, "other");
}

TEST_F(FieldTest, ButtonsAreOfThreeKinds) {
  const std::string states = "/AP << /N << /Yes {object 0} /Off {object 0} >> >> ";
  test::PdfParts parts;
  parts.objects = {"<< /Length 0 /BBox [0 0 1 1] >>\nstream\n\nendstream"};
  write(
      {pageWith({field(states + "/FT /Btn /T (a) /V /Yes /AS /Yes"), field(states + "/FT /Btn /T (b) /V /Off /AS /Off"),
                 field(states + "/FT /Btn /T (c) /Ff 32768 /V /Yes /AS /Yes"), field("/FT /Btn /T (d) /Ff 65536")})},
      parts);
  const auto fields = page().fields;
  ASSERT_THAT(fields, SizeIs(4));
  const auto is = [&](size_t i, const char *name, Field kind, bool isOn) {
    EXPECT_EQ(fields[i].name, name);
    EXPECT_EQ(fields[i].kind, kind);
    EXPECT_EQ(fields[i].isOn, isOn);
  };
  is(0, "a", Field::checkBox, true);
  is(1, "b", Field::checkBox, false);
  is(2, "c", Field::radioButton, true);
  is(3, "d", Field::button, false);
}

TEST_F(FieldTest, ASignatureIsAField) { EXPECT_EQ(only("/FT /Sig /T (a)").kind, Field::signature); }

// ---- annotations ----

std::string annotation(const std::string &kind, const std::string &entries = {}) {
  return "/Subtype /" + kind + " /Rect [10 20 30 40] " + entries;
}

struct AnnotationKind {
  const char *subtype;
  Note kind;
};

void PrintTo(const AnnotationKind &kind, std::ostream *out) { *out << kind.subtype; }

class Kinds : public StructureTest, public testing::WithParamInterface<AnnotationKind> {};

TEST_P(Kinds, OfAnnotations) {
  const std::string drawn = "/L [10 20 30 40] /Vertices [10 20 30 40 10 40] /InkList [[10 20 30 40]]"
                            " /QuadPoints [10 40 30 40 10 20 30 20] /DA (/F 10 Tf) /FS (a.txt)";
  write({pageWith({annotation(GetParam().subtype, drawn + " /Contents (some\\015text)")})});
  const auto annotations = page().annotations;
  ASSERT_THAT(annotations, SizeIs(1));
  EXPECT_EQ(annotations[0].kind, GetParam().kind);
  EXPECT_EQ(annotations[0].contents, "some\ntext");
}

INSTANTIATE_TEST_SUITE_P(
    All, Kinds,
    testing::Values(AnnotationKind{"Text", Note::note}, AnnotationKind{"FreeText", Note::freeText},
                    AnnotationKind{"Line", Note::line}, AnnotationKind{"Square", Note::square},
                    AnnotationKind{"Circle", Note::circle}, AnnotationKind{"Polygon", Note::polygon},
                    AnnotationKind{"PolyLine", Note::polyLine}, AnnotationKind{"Highlight", Note::highlight},
                    AnnotationKind{"Underline", Note::underline}, AnnotationKind{"Squiggly", Note::squiggly},
                    AnnotationKind{"StrikeOut", Note::strikeOut}, AnnotationKind{"Stamp", Note::stamp},
                    AnnotationKind{"Caret", Note::caret}, AnnotationKind{"Ink", Note::ink},
                    AnnotationKind{"FileAttachment", Note::file}, AnnotationKind{"Watermark", Note::other}),
    [](const auto &kind) { return kind.param.subtype; });

TEST_F(StructureTest, AnnotationsThatAreNotShownAreLeftOut) {
  write({pageWith({annotation("Square", "/F 2"), annotation("Square", "/F 32"), annotation("Popup"),
                   annotation("Link", "/Dest [{page 0} /Fit]"), annotation("Square", "/F 4 /Contents (shown)")})});
  const auto annotations = page().annotations;
  ASSERT_THAT(annotations, SizeIs(1));
  EXPECT_EQ(annotations[0].contents, "shown");
}

TEST_F(StructureTest, ContentsAreValidLinesThatEnd) {
  write({pageWith({annotation("Square", "/Contents " + test::pdfBytes("a\tb\x07\r\nc")),
                   annotation("Square", "/Contents " + test::pdfBytes(std::string(100'000, 'a'))),
                   annotation("Square", "/Contents <FEFFDC00DC00>")})});
  const auto annotations = page().annotations;
  ASSERT_THAT(annotations, SizeIs(3));
  EXPECT_EQ(annotations[0].contents, "a\tb \nc");
  EXPECT_EQ(annotations[1].contents, std::string(host::most::lines, 'a'));
  EXPECT_EQ(annotations[2].contents, "");
}

} // namespace
} // namespace document
