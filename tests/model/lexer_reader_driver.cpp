// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The C++ side of the comparison with model.py: reads files from standard input, each after its length in four bytes,
// least significant first, of which the top bit says that the user answers the version question with no. Runs the lexer
// and the reader over each and prints a line as model.py's `line` makes it.
//
// The two registering operations replace the registry's, so that their arguments are printed as the reader passes them.
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "plugin/glt/glt.h"
#include "plugin/input/gltAux.h"
#include "plugin/input/gltLex.h"
#include "tests/host/RecordingHost.h"

using namespace tavrel;

namespace {

constexpr uint32_t answerNo = 0x80000000U;
constexpr int stayedOpen = 3; // the program's exit status when the reader left something open at the host

std::string registered; // what the reader registered, as the end of a line; empty for nothing
std::string checked;    // the version that the host was asked for
bool asked;             // the version question
int finders;            // word finders made and not destroyed

/// The registry's arguments, in the format of `result_line`.
Bool16 note(const HLL *list, const char *units, const std::string &version, Bool16 scroll, const ColorValue *color) {
  std::string colour = "-";
  if (color != nullptr) {
    colour.clear();
    for (int i = 0; i < 3; ++i) {
      if (i > 0) colour += ',';
      colour += std::to_string(color->component[i] >> 16);
      if ((color->component[i] & 0xFFFF) != 0) colour += " and a fraction";
    }
    if (color->space != colorSpaceRGB || color->component[3] != 0) colour += " in another space";
  }
  std::string entries;
  int32_t page = 0;
  uint16_t pos = 0, len = 0;
  for (uint32_t p = 0; p < HLL_GetPageCount(list); ++p)
    for (uint16_t w = 0; HLL_GetHL(list, p, w, &page, &pos, &len) != 0; ++w) {
      if (!entries.empty()) entries += ',';
      entries += std::to_string(page) + ':' + std::to_string(pos) + '+' + std::to_string(len);
    }
  registered += std::string(" units=") + units + " version=" + version + " colour=" + colour +
                " scroll=" + std::to_string(scroll) + " words=" + std::to_string(HLL_GetWordCount(list)) +
                " list=" + entries;
  return 1;
}

void appendHex(std::string &line, const char *text) {
  static constexpr char digits[] = "0123456789abcdef";
  for (; *text != '\0'; ++text) {
    const auto byte = static_cast<unsigned char>(*text);
    line += digits[byte >> 4];
    line += digits[byte & 15];
  }
}

/// Every token, also those that are still pending when the cursor has reached the end.
void appendTokens(std::string &line, std::vector<char> file) {
  file.push_back('\0');
  static HWLEX_STATE state; // static, so that the buffers hold data of the last file
  HWLEX_reset(&state);
  bool first = true;
  for (char *cursor = file.data(); *cursor != '\0' || state.pending1 != 0; first = false) {
    char *text = nullptr;
    const int32_t kind = HWLEX_match(&state, &text, &cursor);
    if (!first) line += ',';
    line += std::to_string(kind) + ':';
    appendHex(line, text);
  }
}

/// False when the reader raised.
bool appendResult(std::string &line, RecordingHost &host, const std::vector<char> &file) {
  registered.clear();
  checked = "-";
  asked = false;
  Bool16 result = 0;
  const auto length = static_cast<uint32_t>(file.size());
  if (!host.run([&] { result = registerGLT(host.doc, file.data(), length); })) return false;
  line += result != 0 ? "registered" : "unregistered";
  line += " checked=" + checked + " asked=" + (asked ? '1' : '0') + registered;
  return true;
}

bool readFile(std::vector<char> &file, bool &yes) {
  unsigned char head[4];
  if (fread(head, 1, sizeof head, stdin) != sizeof head) return false;
  const uint32_t word = head[0] | head[1] << 8 | head[2] << 16 | static_cast<uint32_t>(head[3]) << 24;
  yes = (word & answerNo) == 0;
  file.resize(word & ~answerNo);
  return fread(file.data(), 1, file.size(), stdin) == file.size();
}

} // namespace

Bool16 GLTRegisterGivenHLL(Doc /*document*/, HLL *&list, const GLTTerms &terms) {
  const bool characters = terms.offsetUnits == GLT_CHARACTER_OFFSETS;
  return note(list, characters ? "characters" : "words", characters ? "-" : std::to_string(terms.wordFinderVersion),
              terms.scroll, terms.color);
}

int main() {
  RecordingHost host;
  bool yes = false;
  host.answer(DocModel::WordFinderCreate,
              std::function([&](ModelDoc, void *, void *, void *, int16_t version, uint32_t, void *) -> WordFinder {
                checked = std::to_string(version);
                if (host.wordFinderVersions.count(version) == 0) return nullptr;
                ++finders;
                return reinterpret_cast<WordFinder>(&host);
              }));
  host.answer(DocModel::WordFinderDestroy, std::function([](WordFinder) { --finders; }));
  host.answer(TavrelView::Alert,
              std::function([&](int32_t, const char *, const char *, const char *, const char *, int32_t) -> int32_t {
                asked = true;
                return yes ? 1 : 2;
              }));
  std::vector<char> file;
  std::string line;
  while (readFile(file, yes)) {
    host.clear();
    line.clear();
    appendTokens(line, file);
    line += ' ';
    if (!appendResult(line, host, file) || host.frames() != 0 || finders != 0) return stayedOpen;
    line += '\n';
    fwrite(line.data(), 1, line.size(), stdout);
    fflush(stdout); // so that after a crash the comparison knows which file it was
  }
  return 0;
}
