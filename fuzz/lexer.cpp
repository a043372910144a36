// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The lexer over any text: it terminates, no token is empty or longer than the limit, every kind is one of the six,
// line breaks hold as many line feeds as their kind says, and all tokens together are the text. The reader finds the
// lexer's words, and finds all tags when it skips the text between them.
//
// Input: the text, which ends at its first zero byte.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/require.h"
#include "plugin/input/gltLex.h"
#include "tests/plugin/input/words.h"

namespace {

void requireLineFeeds(int32_t kind, const std::string &token) {
  const auto lineFeeds = std::count(token.begin(), token.end(), '\n');
  if (kind == HWLEX_NEWLINE) require(lineFeeds == 1, "a line break has one line feed");
  if (kind == HWLEX_PARA) require(lineFeeds >= 2, "a paragraph has two line feeds or more");
  // A word may hold one: a quoted word holds anything.
  if (kind != HWLEX_NEWLINE && kind != HWLEX_PARA && kind != HWLEX_WORD)
    require(lineFeeds == 0, "spaces, sentence ends and others have no line feed");
}

void requireReaderFindsThem(const std::string &text) {
  const Words words = lexerWords(text);
  Words found, tags;
  LexWord word;
  for (ReaderText rest(text); rest.next(word);)
    found.emplace_back(word.begin, word.length);
  require(found == words, "the reader's words are the lexer's");
  ReaderText rest(text);
  for (rest.skip(); rest.next(word); rest.skip())
    tags.emplace_back(word.begin, word.length);
  require(onlyTags(tags) == onlyTags(words), "no tag is skipped");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::vector<char> bytes(data, data + size); // a separate block, so that a read beyond its end is detected
  bytes.push_back('\0');
  bytes.shrink_to_fit();
  const std::string text = bytes.data();

  HWLEX_STATE state = {};
  char *cursor = bytes.data();
  HWLEX_reset(&state);
  std::string joined;
  while (*cursor != '\0' || state.pending1 != 0) {
    char *token = nullptr;
    const int32_t kind = HWLEX_match(&state, &token, &cursor);
    const std::string part = token;
    require(kind >= HWLEX_PARA && kind <= HWLEX_SPACE, "the kind is one of the six");
    require(!part.empty(), "a token has at least one byte");
    require(part.size() <= HWLEX_LIMIT, "a token is no longer than the limit");
    requireLineFeeds(kind, part);
    joined += part;
    require(joined.size() <= text.size(), "the text ends");
  }
  require(joined == text, "the tokens together are the text");
  requireReaderFindsThem(text);
  return 0;
}
