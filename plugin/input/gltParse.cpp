// The reader of highlight files: a forgiving scanner over the lexer's words, not an XML parser. It fills one highlight
// list and registers it at "</Body>".
//
// It owns a working copy of the bytes, from the host's allocator, and the list, until it returns. Three early returns
// leave the copy behind on purpose: the host accounts for what its plug-ins do not give back. No frame is opened around
// the registration, so a host call that raises there ends the reader and loses both.
#include <cstring>

#include "plugin/glt/glt.h"
#include "plugin/input/gltAux.h"
#include "plugin/input/gltLex.h"
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

/// The words of the text, one by one.
struct Words {
  HWLEX_STATE lexer;
  char *cursor;
  char *rest;                 ///< what is still to come of the lexer's word, or null
  char word[HWLEX_LIMIT + 1]; ///< the word just taken; the reader may write into it
};

/// The end of the first tag in a word: where a '>' is directly followed by a '<', else the word's end. A quoted word
/// is one piece.
char *tagEnd(char *word) {
  if (*word == '\'' || *word == '(') return word + strlen(word);
  char *joint = strstr(word, "><");
  return joint != nullptr ? joint + 1 : word + strlen(word);
}

/// Takes the next word, skipping everything else. False when the text runs out.
bool nextWord(Words &words) {
  while (words.rest == nullptr) {
    char *text = nullptr;
    if (*words.cursor == 0) return false;
    if (HWLEX_match(&words.lexer, &text, &words.cursor) == HWLEX_WORD) words.rest = text;
  }
  char *end = tagEnd(words.rest);
  const auto length = static_cast<size_t>(end - words.rest);
  memcpy(words.word, words.rest, length);
  words.word[length] = 0;
  words.rest = *end != 0 ? end : nullptr;
  return true;
}

bool endsWithBracket(const char *word) {
  return word[strlen(word) - 1] == '>'; // a word has at least one character
}

/// Everything read so far, in one call of registerGLT.
struct Reading {
  Doc document;
  Words words;
  HLL *list;
  bool inSection; ///< between "<highlights>" and "</highlights>"
  char units[unitsLength + 1];
  char version[versionLength + 1];
  uint16_t red, green, blue;
  bool hasColor; ///< what the last colour came to
  Bool16 active;
  bool headerPending[4];   ///< an attribute's name has come, its value has not; kept from tag to tag on purpose
  bool locationPending[3]; ///< likewise
  int32_t page;            ///< of the location being read
  uint16_t pos, len;
};

/// An attribute: its names, and what its value does.
struct Attribute {
  const char *name;
  const char *shortName; ///< or null
  void (*take)(Reading &reading, char *value);
};

void copyBounded(char *out, const char *value, size_t limit) {
  const size_t length = strnlen(value, limit);
  memcpy(out, value, length);
  out[length] = 0;
}

void takeColor(Reading &reading, char *value) {
  char *digits = *value == '#' ? value + 1 : value;
  reading.hasColor = ParseRGB(digits, &reading.red, &reading.green, &reading.blue) != 0;
}

// In the order in which a word is compared with them: a value that happens to be an earlier name is that name.
constexpr Attribute headerAttributes[] = {
    {"Units", nullptr, [](Reading &reading, char *value) { copyBounded(reading.units, value, unitsLength); }},
    {"color", nullptr, takeColor},
    {"mode", nullptr,
     [](Reading &reading, char *value) {
       if (gltstricmp(value, "active") == 0) reading.active = 1;
     }},
    {"version", nullptr, [](Reading &reading, char *value) { copyBounded(reading.version, value, versionLength); }},
};

constexpr Attribute locationAttributes[] = {
    {"page", "pg", [](Reading &reading, char *value) { reading.page = miAtol(value); }},
    {"position", "pos", [](Reading &reading, char *value) { reading.pos = static_cast<uint16_t>(miAtol(value)); }},
    {"length", "len", [](Reading &reading, char *value) { reading.len = static_cast<uint16_t>(miAtol(value)); }},
};

bool isName(const Attribute &attribute, const char *word) {
  return gltstricmp(word, attribute.name) == 0 ||
         (attribute.shortName != nullptr && gltstricmp(word, attribute.shortName) == 0);
}

/// One word of a tag's attributes: a name, or the value that a name waits for, or nothing that counts.
template <size_t N> void readAttributeWord(Reading &reading, const Attribute (&attributes)[N], bool (&pending)[N]) {
  for (size_t i = 0; i < N; ++i) {
    if (isName(attributes[i], reading.words.word)) {
      pending[i] = true;
      return;
    }
    if (pending[i]) {
      pending[i] = false;
      attributes[i].take(reading, reading.words.word);
      return;
    }
  }
}

/// The rest of a tag, up to a word that ends with '>' or to the end of the text.
template <size_t N> void readAttributes(Reading &reading, const Attribute (&attributes)[N], bool (&pending)[N]) {
  bool last = false;
  while (!last && nextWord(reading.words)) {
    char *word = reading.words.word;
    last = endsWithBracket(word);
    if (last) word[strlen(word) - 1] = 0;
    readAttributeWord(reading, attributes, pending);
  }
}

void readHeader(Reading &reading) {
  // Behind a word that does not end with '>' nothing is left of the lexer's word.
  if (!endsWithBracket(reading.words.word) && *reading.words.cursor != 0)
    readAttributes(reading, headerAttributes, reading.headerPending);
}

void readLocation(Reading &reading) {
  if (endsWithBracket(reading.words.word)) return;
  reading.page = -1;
  reading.pos = 0xFFFF;
  reading.len = 0;
  readAttributes(reading, locationAttributes, reading.locationPending);
  if (reading.page != -1 && reading.pos != 0xFFFF) HLL_AddHL(reading.list, reading.page, reading.pos, reading.len);
}

/// What a word outside of attribute lists means.
enum class Role { other, header, body, openSection, closeSection, location, endBody, endFile };

struct KnownWord {
  const char *word;
  Role role;
};

constexpr KnownWord knownWords[] = {
    {"<location", Role::location},
    {"<loc", Role::location},
    {"<location>", Role::location},
    {"<loc>", Role::location},
    {"<highlights>", Role::openSection},
    {"<highlight>", Role::openSection},
    {"</highlights>", Role::closeSection},
    {"</highlight>", Role::closeSection},
    {"<Body>", Role::body},
    {"<Body", Role::body},
    {"</Body>", Role::endBody},
    {"</XML>", Role::endFile},
    {"<XML>", Role::header},
    {"<?XML", Role::header},
};

Role roleOf(const char *word) {
  for (const KnownWord &known : knownWords)
    if (gltstricmp(word, known.word) == 0) return known.role;
  return Role::other;
}

/// How the reading of the words ended.
enum class Outcome { nothing, complete, abandoned };

Outcome readWords(Reading &reading) {
  bool awaitingHeader = true;
  while (nextWord(reading.words)) {
    const Role role = roleOf(reading.words.word);
    if (awaitingHeader) {
      if (role != Role::header) return Outcome::abandoned;
      awaitingHeader = false;
      continue;
    }
    switch (role) {
    case Role::body:
      readHeader(reading);
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
      if (reading.list != nullptr && reading.inSection) readLocation(reading);
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

/// Asks the user whether to show highlights that may be in the wrong places.
bool askDisplayAnyway() {
  char yes[20], no[20], message[256];
  mdGetString(stringYes, yes, sizeof yes);
  mdGetString(stringNo, no, sizeof no);
  mdGetString(stringWrongVersion, message, sizeof message);
  return TavrelView::Alert(alertQuestion, message, yes, no, nullptr, 0) == 1;
}

Bool16 registerList(Reading &reading) {
  // Whole components, not fractions, on purpose: 255 becomes 255.0, which hosts read on the scale 0 to 255.
  const ColorValue color = {colorSpaceRGB, {reading.red << 16, reading.green << 16, reading.blue << 16, 0}};
  const bool characters = gltstricmp(reading.units, "characters") == 0;
  if (*reading.version == 0) miStrcpySAFE(reading.version, defaultVersion);
  auto version = static_cast<int16_t>(miAtol(reading.version));
  if (!characters && !hasWordFinder(reading.document, version)) {
    if (!askDisplayAnyway()) return 0;
    version = 2;
  }
  auto jumpProc = functionOf<GLTJumpProc>(Kernel::CreateCallback(gExtensionID, entryOf(auxGLTJumpNotification)));
  auto newProc = functionOf<GLTNewProc>(Kernel::CreateCallback(gExtensionID, entryOf(auxGLTNewNotification)));
  const ColorValue *given = reading.hasColor ? &color : nullptr;
  if (characters)
    return GLT_RegisterHLL(reading.document, reading.list, GLT_CHARACTER_OFFSETS, jumpProc, newProc, reading.active,
                           given);
  return GLT_RegisterWordOffsetHLL(reading.document, reading.list, jumpProc, newProc, reading.active, given, version);
}

} // namespace

Bool16 registerGLT(Doc document, const void *data, uint32_t length) {
  if (length == UINT32_MAX) return 0; // the copy would need one byte more than there can be
  auto *copy = static_cast<char *>(TavrelSupport::Malloc(length + 1));
  if (copy == nullptr) return 0;
  if (data != nullptr) memcpy(copy, data, length);
  copy[data != nullptr ? length : 0] = 0;
  if (document == nullptr || data == nullptr || length == 0) return 0; // the copy stays behind, on purpose

  Reading reading;
  memset(&reading, 0, sizeof reading);
  reading.document = document;
  reading.words.cursor = copy;
  reading.red = reading.green = reading.blue = 0xFFFF;
  HWLEX_reset(&reading.words.lexer);

  const Outcome outcome = readWords(reading);
  // Not a highlight file, or no memory for a list: the copy stays behind, on purpose.
  if (outcome == Outcome::abandoned) return 0;
  const Bool16 result = outcome == Outcome::complete ? registerList(reading) : Bool16{0};
  if (result != 0) TavrelView::ToolBarUpdateButtonStates(TavrelView::GetToolBar());
  if (reading.list != nullptr) GLT_DeleteHLL(reading.list);
  TavrelSupport::Free(copy);
  return result;
}
