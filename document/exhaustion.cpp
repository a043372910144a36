// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Takes the place of the C library's functions, for the PDF library, too, and calls them.
#include "document/exhaustion.h"

#include <unistd.h>

#include <cstdlib>

#include "host/document/process.h"
#include "host/document/sanitized.h"

namespace document {
namespace {

const std::string *g_message = nullptr;
size_t g_memory = 0;

} // namespace

LastWords::LastWords(const std::string &message, size_t memory) {
  g_message = &message;
  g_memory = memory;
}

LastWords::~LastWords() { g_message = nullptr; }

} // namespace document

#if defined(__GLIBC__) && !defined(TAVREL_IS_SANITIZED)

namespace document {
namespace {

// What has been allocated, or the end.
void *checked(void *made, size_t size) {
  if (made != nullptr || size == 0 || size > g_memory || g_message == nullptr) return made;
  const bool isSent = write(host::documentSocket, g_message->data(), g_message->size()) > 0;
  _exit(isSent ? EXIT_SUCCESS : EXIT_FAILURE);
}

} // namespace
} // namespace document

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the names that the C library gives them
extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *old, size_t size);

__attribute__((visibility("default"))) void *malloc(size_t size) {
  return document::checked(__libc_malloc(size), size);
}

__attribute__((visibility("default"))) void *calloc(size_t count, size_t size) {
  size_t all = 0;
  const bool isTooMuch = __builtin_mul_overflow(count, size, &all);
  void *made = __libc_calloc(count, size);
  return isTooMuch ? made : document::checked(made, all);
}

__attribute__((visibility("default"))) void *realloc(void *old, size_t size) {
  return document::checked(__libc_realloc(old, size), size);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

#endif
