// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of highlight files: registerGLT reads a file's bytes into one highlight list and registers it at
// "</Body>". It is a tolerant scanner over words, not an XML parser. It has three parts:
//
//   gltWords.h   finds the next word. For quoted words, sentence ends and the end of the text it calls the lexer
//                (gltLex.h).
//   this source  looks the word up (gltKnownWords.h) and acts on its meaning.
//   gltShape.h   reads a location tag that is spelled as the one before, without finding its words.
//
// The reader owns a working copy of the bytes, from the host's allocator, until it returns, and the list until then or
// until the registry takes it. Three early returns do not free the copy: the host's allocator accounts
// for it. No frame is opened around the registration, so a host call that raises there ends the reader and loses the
// copy, and the list unless the registry has taken it.
#include <bit>
#include <cstring>

#include "plugin/glt/glt.h"
#include "plugin/glt/gltPageFinder.h"
#include "plugin/input/gltAux.h"
#include "plugin/input/gltKnownWords.h"
#include "plugin/input/gltShape.h"
#include "plugin/input/gltWords.h"
#include "plugin/md/mdUtils.h"
#include "plugin/pi/PIFrame.h"
#include "plugin/pi/mdPI.h"
#include "plugin/util/miUtils.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"

using namespace tavrel;

namespace {

constexpr size_t unitsLength = 14;
constexpr size_t versionLength = 9;
constexpr char defaultVersion[] = "2";

/// The attributes of a tag, in the order in which a word is compared with them: a value that equals an earlier name is
/// taken for that name.
enum HeaderAttribute : uint8_t { attributeUnits, attributeColor, attributeMode, attributeVersion, headerAttributes };
enum LocationAttribute : uint8_t { attributePage, attributePosition, attributeLength, locationAttributes };

/// The meaning of a word outside of attribute lists.
enum class Role : uint8_t { other, header, body, openSection, closeSection, location, endBody, endFile };

constexpr LexKnownWords<HeaderAttribute> headerNames(
    {{"units", attributeUnits}, {"color", attributeColor}, {"mode", attributeMode}, {"version", attributeVersion}});

constexpr LexKnownWords<LocationAttribute> locationNames({{"page", attributePage},
                                                          {"pg", attributePage},
                                                          {"position", attributePosition},
                                                          {"pos", attributePosition},
                                                          {"length", attributeLength},
                                                          {"len", attributeLength}});

constexpr LexKnownWords<Role> roles({{"<location", Role::location},
                                     {"<loc", Role::location},
                                     {"<location>", Role::location},
                                     {"<loc>", Role::location},
                                     {"<highlights>", Role::openSection},
                                     {"<highlight>", Role::openSection},
                                     {"</highlights>", Role::closeSection},
                                     {"</highlight>", Role::closeSection},
                                     {"<body>", Role::body},
                                     {"<body", Role::body},
                                     {"</body>", Role::endBody},
                                     {"</xml>", Role::endFile},
                                     {"<xml>", Role::header},
                                     {"<?xml", Role::header}});

static_assert(headerNames.sound() && locationNames.sound() && roles.sound());

/// Everything read so far, in one call of registerGLT.
struct Reading {
  Doc document;
  LexText text;
  HLL *list;
  PageFinder finder; ///< of the list
  bool inSection;    ///< between "<highlights>" and "</highlights>"; then there is a list
  char units[unitsLength + 1];
  char version[versionLength + 1];
  uint16_t red, green, blue;
  bool hasColor; ///< whether the last colour was valid
  Bool16 active;
  uint8_t headerPending;   ///< a bit for each attribute whose name was read and whose value was not; kept between tags
  uint8_t locationPending; ///< likewise
  TagShape shape;          ///< of locations
};

bool endsWithBracket(const LexWord &word) { return word.begin[word.length - 1] == '>'; }

/// The word as a string, truncated after `limit` bytes.
void copyWord(char *out, const LexWord &word, size_t limit) {
  const size_t length = word.length < limit ? word.length : limit;
  memcpy(out, word.begin, length);
  out[length] = 0;
}

/// The number that a value begins with; 0 for none.
int32_t numberOf(const LexWord &word) {
  char text[HWLEX_LIMIT + 1];
  copyWord(text, word, HWLEX_LIMIT);
  return miAtol(text);
}

/// The attribute that a word is the value of, or `count` for none. `name` is the attribute that the word names, or
/// `count`. A word is the value of the first pending attribute, in their order. But a word that names that attribute or
/// an earlier one is a name, and that attribute becomes pending.
uint8_t valueOf(uint8_t name, uint8_t count, uint8_t &pending) {
  const auto waiting = static_cast<uint8_t>(std::countr_zero(pending | 1U << count));
  if (name > waiting) {
    pending &= static_cast<uint8_t>(pending - 1);
    return waiting;
  }
  if (name < count) pending |= static_cast<uint8_t>(1U << name);
  return count;
}

/// Removes the '>' that ends a tag. False when there is none.
bool dropBracket(LexWord &word) {
  const bool last = endsWithBracket(word);
  word.length -= last ? 1 : 0;
  return last;
}

void takeColor(Reading &reading, const LexWord &value) {
  char text[HWLEX_LIMIT + 1];
  copyWord(text, value, HWLEX_LIMIT);
  reading.hasColor = ParseRGB(*text == '#' ? text + 1 : text, &reading.red, &reading.green, &reading.blue) != 0;
}

void takeMode(Reading &reading, const LexWord &value) {
  char text[HWLEX_LIMIT + 1];
  copyWord(text, value, HWLEX_LIMIT);
  if (gltstricmp(text, "active") == 0) reading.active = 1;
}

void takeHeaderAttribute(Reading &reading, uint8_t attribute, const LexWord &value) {
  switch (attribute) {
  case attributeUnits:
    copyWord(reading.units, value, unitsLength);
    break;
  case attributeColor:
    takeColor(reading, value);
    break;
  case attributeMode:
    takeMode(reading, value);
    break;
  case attributeVersion:
    copyWord(reading.version, value, versionLength);
    break;
  default:
    break;
  }
}

/// Reads the attributes of the body tag, up to a word that ends with '>'. Returns where that word ends; null when the
/// text ends before.
const char *readHeader(Reading &reading, const char *at) {
  for (bool last = false; !last;) {
    LexWord word;
    at = lexNextWord(reading.text, at, word);
    if (at == nullptr) return nullptr;
    last = dropBracket(word);
    const HeaderAttribute name = headerNames.find(word, reading.text.end, headerAttributes);
    takeHeaderAttribute(reading, valueOf(name, headerAttributes, reading.headerPending), word);
  }
  return at;
}

/// A location's values, by attribute; the last element takes words that are no value.
using LocationValues = int32_t[locationAttributes + 1];
constexpr LocationValues noValues = {-1, 0xFFFF, 0, 0};
static_assert(attributePage == 0 && attributePosition == 1 && attributeLength == 2);

void addLocation(Reading &reading, const LocationValues &values) {
  const auto pos = static_cast<uint16_t>(values[attributePosition]);
  if (values[attributePage] != -1 && pos != 0xFFFF)
    finderAdd(reading.finder, reading.list, values[attributePage], pos, static_cast<uint16_t>(values[attributeLength]));
}

/// Reads locations as long as each has the known shape. Returns where the last of them ends.
const char *readExpectedLocations(Reading &reading, const char *at) {
  // Only in a section, and only where the first word is not the value of an earlier location's attribute.
  while (reading.inSection && reading.locationPending == 0) {
    LocationValues values;
    memcpy(values, noValues, sizeof values);
    const char *end = shapeFollow(reading.shape, reading.text, at, values);
    if (end == nullptr) break;
    addLocation(reading, values);
    at = end;
  }
  return at;
}

/// Reads a location word by word, from the end of its name up to a word that ends with '>'. Returns where that word
/// ends; null when the text ends before. `notes` is empty; what the location's shape is learned from is stored there.
const char *readLocation(Reading &reading, const char *at, TagNotes &notes) {
  LocationValues values;
  memcpy(values, noValues, sizeof values);
  uint8_t pending = reading.locationPending;
  bool plain = pending == 0;
  for (bool last = false; !last;) {
    const char *begin = lexStepOver(at);
    int32_t number;
    const char *end = lexDigits(begin, number);
    if (end != nullptr && lexStep(*end) == 0) { // a complete word, and no name
      const uint8_t attribute = valueOf(locationAttributes, locationAttributes, pending);
      values[attribute] = number;
      shapeNoteNumber(notes, begin, end, attribute);
      at = end;
      continue;
    }
    LexWord word;
    at = lexNextWord(reading.text, begin, word);
    if (at == nullptr) break;
    notes.lastWord = word.length;
    last = dropBracket(word);
    const LocationAttribute name = locationNames.find(word, reading.text.end, locationAttributes);
    const uint8_t attribute = valueOf(name, locationAttributes, pending);
    if (attribute < locationAttributes) values[attribute] = numberOf(word);
    plain = plain && attribute == locationAttributes;
  }
  notes.plain = plain && pending == 0;
  reading.locationPending = pending;
  addLocation(reading, values);
  return at;
}

/// How the reading of the words ended.
enum class Outcome { nothing, complete, abandoned };

Outcome readWords(Reading &reading) {
  LexText &text = reading.text;
  LexWord word;
  const char *at = lexNextWord(text, text.begin, word);
  if (at == nullptr) return Outcome::nothing;
  if (roles.find(word, text.end, Role::other) != Role::header) return Outcome::abandoned;
  while (at != nullptr) {
    const char *const before = readExpectedLocations(reading, at);
    const bool unsplit = shapeIsUnsplit(text, before);
    at = lexStepOver(before);
    if (*at != '<') at = lexSkipText(text, at);
    at = lexNextWord(text, at, word);
    if (at == nullptr) break;
    switch (roles.find(word, text.end, Role::other)) {
    case Role::body:
      if (!endsWithBracket(word)) at = readHeader(reading, at);
      break;
    case Role::openSection:
      if (reading.list == nullptr) reading.list = GLT_NewHLL(reading.document);
      if (reading.list == nullptr) return Outcome::abandoned;
      reading.inSection = true;
      break;
    case Role::closeSection:
      reading.inSection = false;
      break;
    case Role::location:
      if (reading.inSection && !endsWithBracket(word)) {
        TagNotes notes = {};
        at = readLocation(reading, at, notes);
        if (at != nullptr && unsplit && shapeMiss(reading.shape)) shapeLearn(reading.shape, before, at, notes);
      }
      break;
    case Role::endBody:
      if (HLL_GetWordCount(reading.list) != 0) return Outcome::complete;
      break;
    case Role::endFile:
      return Outcome::nothing;
    default:
      break;
    }
  }
  return Outcome::nothing;
}

/// Whether the host has that version of word extraction.
bool hasWordFinder(Doc document, int16_t version) {
  WordFinder finder = nullptr;
  PIProtect([&] {
    finder = DocModel::WordFinderCreate(TavrelView::DocGetModelDoc(document), nullptr, nullptr, nullptr, version, 8,
                                        nullptr);
  });
  if (finder == nullptr) return false;
  PIProtect([&] { DocModel::WordFinderDestroy(finder); });
  return true;
}

/// Asks the user whether to show highlights that may be at wrong positions.
bool askDisplayAnyway() {
  char yes[20], no[20], message[256];
  mdGetString(stringYes, yes, sizeof yes);
  mdGetString(stringNo, no, sizeof no);
  mdGetString(stringWrongVersion, message, sizeof message);
  return TavrelView::Alert(alertQuestion, message, yes, no, nullptr, 0) == 1;
}

Bool16 registerList(Reading &reading) {
  // The components are integers, not fractions: 255 becomes 255.0.
  const ColorValue color = {colorSpaceRGB, {reading.red << 16, reading.green << 16, reading.blue << 16, 0}};
  const bool characters = gltstricmp(reading.units, "characters") == 0;
  if (*reading.version == 0) miStrcpySAFE(reading.version, defaultVersion);
  auto version = static_cast<int16_t>(miAtol(reading.version));
  if (!characters && !hasWordFinder(reading.document, version)) {
    if (!askDisplayAnyway()) return 0;
    version = gltDefaultWordFinderVersion;
  }
  auto jumpProc = functionOf<GLTJumpProc>(Kernel::CreateCallback(gExtensionID, entryOf(auxGLTJumpNotification)));
  auto newProc = functionOf<GLTNewProc>(Kernel::CreateCallback(gExtensionID, entryOf(auxGLTNewNotification)));
  const GLTTerms terms = {characters ? GLT_CHARACTER_OFFSETS : 0,
                          jumpProc,
                          newProc,
                          reading.active,
                          reading.hasColor ? &color : nullptr,
                          characters ? gltDefaultWordFinderVersion : version};
  return GLTRegisterGivenHLL(reading.document, reading.list, terms);
}

} // namespace

Bool16 registerGLT(Doc document, const void *data, uint32_t length) {
  if (length == UINT32_MAX) return 0; // the copy's length would overflow
  auto *copy = static_cast<char *>(TavrelSupport::Malloc(length + 1));
  if (copy == nullptr) return 0;
  if (data != nullptr) memcpy(copy, data, length);
  copy[data != nullptr ? length : 0] = 0;
  if (document == nullptr || data == nullptr || length == 0) return 0; // the copy is not freed

  Reading reading;
  memset(&reading, 0, sizeof reading);
  reading.document = document;
  reading.text = {copy, copy + length, nullptr};
  reading.red = reading.green = reading.blue = 0xFFFF;

  const Outcome outcome = readWords(reading);
  finderRelease(reading.finder);
  // Not a highlight file, or no memory for a list: the copy is not freed.
  if (outcome == Outcome::abandoned) return 0;
  const Bool16 result = outcome == Outcome::complete ? registerList(reading) : Bool16{0};
  if (result != 0) TavrelView::ToolBarUpdateButtonStates(TavrelView::GetToolBar());
  if (reading.list != nullptr) GLT_DeleteHLL(reading.list);
  TavrelSupport::Free(copy);
  return result;
}
