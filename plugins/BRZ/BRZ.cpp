// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// A plug-in that handles the open parameters of a document, as in a link: "page=3" shows that page, "xml=hits.xml"
// attaches the highlight file. The host passes the parameters; the file's bytes are attached as auxiliary data, which
// another plug-in reads. Errors are reported on standard error and on the status line.
//
// Owns the table pointers and the file that was read last (file.h). Host calls may raise through any of these
// functions, so no object here has a destructor.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "content.h"
#include "file.h"
#include "parameters.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

using namespace tavrel;

HFT gKernelHFT, gTavrelViewHFT, gTavrelGLTHFT;

namespace {

constexpr char notYet[] = "it cannot be fetched yet";

ExtensionID s_self;
Doc s_statusDocument; ///< the document that the status text is about, or null

template <typename Function> Callback callbackOf(Function function) {
  return Kernel::CreateCallback(s_self, entryOf(function));
}

/// Prints three parts on standard error, after the program's name. They may come from a link and hold any bytes.
void writeLine(const char *subject, const char *predicate, const char *object) {
  char line[3 * PATH_MAX];
  snprintf(line, sizeof line, "%s: %s%s", subject, predicate, object);
  brz::makePrintable(line);
  fprintf(stderr, "tavrel: %s\n", line);
}

/// The same on the status line, which is short: each part is truncated to the length of a file's name.
void showLine(Doc document, const char *subject, const char *predicate, const char *object) {
  char line[4 * NAME_MAX];
  snprintf(line, sizeof line, "%.*s: %.*s%.*s", NAME_MAX, subject, NAME_MAX, predicate, NAME_MAX, object);
  brz::makePrintable(line);
  TavrelView::SetStatusText(s_self, line);
  s_statusDocument = document;
}

/// Reports something about a file on standard error and on the status line; `other` is another file or empty.
void reportFile(Doc document, const char *file, const char *predicate, const char *other = "") {
  writeLine(file, predicate, other);
  showLine(document, brz::baseName(file), predicate, brz::baseName(other));
}

/// Reports an invalid value of a parameter. A long value is truncated.
void reportInvalidValue(Doc document, const char *name, std::string_view value, const char *kind) {
  char text[2 * NAME_MAX];
  snprintf(text, sizeof text, "%s=%.*s is no ", name, static_cast<int>(std::min<size_t>(value.size(), NAME_MAX)),
           value.data());
  writeLine(TavrelView::DocGetFile(document), text, kind);
}

/// Shows the page of that number, from 1; the last page if there are fewer.
void showPage(Doc document, int32_t number) {
  PageView view = TavrelView::DocGetPageView(document);
  TavrelView::PageViewShowPage(view, std::min(number, TavrelView::PageViewGetPageCount(view)) - 1);
}

/// Reports a page beyond the last one; `value` is its number as it was given.
void reportMissingPage(Doc document, int32_t number, std::string_view value) {
  const int32_t pages = TavrelView::PageViewGetPageCount(TavrelView::DocGetPageView(document));
  if (number <= pages || pages == 0) return; // 0: there is no view of it
  char text[100];
  constexpr size_t digits = 20;
  snprintf(text, sizeof text, "there is no page %.*s, the document has %d",
           static_cast<int>(std::min(value.size(), digits)), value.data(), pages);
  reportFile(document, TavrelView::DocGetFile(document), text);
}

/// Reads a file that a document's parameters name: relative to the document's directory, or, if it is not there, to the
/// current one. Sets `file` to the path that was found.
int readNamedBy(Doc document, char (&file)[PATH_MAX], size_t limit, std::string_view *content) {
  if (file[0] != '/') {
    const char *source = TavrelView::DocGetFile(document);
    const auto folder = static_cast<int>(brz::baseName(source) - source);
    char beside[PATH_MAX];
    const int length = snprintf(beside, sizeof beside, "%.*s%s", folder, source, file);
    if (length >= 0 && static_cast<size_t>(length) < sizeof beside) {
      const int error = brz::readFile(beside, limit, content);
      if (error != ENOENT && error != ENOTDIR) {
        memcpy(file, beside, sizeof beside);
        return error;
      }
    }
  }
  return brz::readFile(file, limit, content);
}

void attach(Doc document, const char *file, std::string_view content) {
  const Atom type = Kernel::AtomFromString(brz::hasXmlDeclaration(content) ? "xml" : "tavrelglt");
  const bool truncated = brz::isTruncated(content);
  const Bool16 taken =
      TavrelView::DocAttachAuxData(document, type, content.data(), static_cast<uint32_t>(content.size()));
  brz::releaseFile();
  if (taken == 0) return reportFile(document, file, "no plug-in takes highlight files");
  if (gTavrelGLTHFT != nullptr && TavrelGLT::GLT_GetHLL(document) == nullptr)
    reportFile(document, file, truncated ? "the file is truncated and marks nothing in " : "it marks nothing in ",
               TavrelView::DocGetFile(document));
}

void reportTooLarge(Doc document, const char *file, uint32_t limit) {
  char reason[100];
  snprintf(reason, sizeof reason, "it is larger than %u MB (--hits-limit raises the limit)", limit);
  reportFile(document, file, reason);
}

void showHits(Doc document, std::string_view value) {
  char file[PATH_MAX];
  if (brz::isRemote(value)) {
    snprintf(file, sizeof file, "%.*s", static_cast<int>(value.size()), value.data());
    writeLine(file, notYet, "");
    return showLine(document, file, notYet, "");
  }
  if (!brz::decodeFile(value, file, sizeof file))
    return reportFile(document, brz::hitsParameter, strerror(ENAMETOOLONG));
  if (file[0] == 0) return reportInvalidValue(document, brz::hitsParameter, value, "file");
  const uint32_t limit = brz::limitOf(getenv(brz::limitVariable));
  std::string_view content;
  const int error = readNamedBy(document, file, limit * brz::bytesPerMegabyte, &content);
  if (error == EFBIG) return reportTooLarge(document, file, limit);
  if (error != 0) return reportFile(document, file, strerror(error));
  if (const char *kind = brz::otherKind(content)) {
    brz::releaseFile();
    return reportFile(document, file, kind);
  }
  attach(document, file, content);
}

void clearStatus() {
  s_statusDocument = nullptr;
  TavrelView::SetStatusText(s_self, nullptr);
}

/// Handlers of auxiliary data are registered before the first document is opened.
void documentOpened(Doc document, void * /*clientData*/) {
  clearStatus();
  const char *parameters = TavrelView::DocGetOpenParameters(document);
  if (parameters == nullptr) return;
  const std::optional<std::string_view> page = brz::valueOf(parameters, brz::pageParameter),
                                        xml = brz::valueOf(parameters, brz::hitsParameter);
  std::optional<int32_t> number;
  if (page) number = brz::pageNumberOf(*page);
  if (page && !number) reportInvalidValue(document, brz::pageParameter, *page, "page");
  if (number) {
    reportMissingPage(document, *number, *page);
    showPage(document, *number);
  }
  if (!xml) return;
  showHits(document, *xml);                // turns to the first hit
  if (number) showPage(document, *number); // a page that the address names is the one that its reader wants
}

void documentClosed(Doc document, void * /*clientData*/) {
  if (document == s_statusDocument) clearStatus();
}

/// The status line is the front document's: a text about another document is removed.
void pageDrawn(PageView view, void * /*clientData*/) {
  if (s_statusDocument != nullptr && TavrelView::PageViewGetDoc(view) != s_statusDocument) clearStatus();
}

uint32_t importTables() {
  gTavrelGLTHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelGLT"), tavrelGLTVersion);
  return 1;
}

uint32_t initialise() {
  TavrelView::RegisterNotification(notifyDocDidOpen, s_self, callbackOf(documentOpened), nullptr);
  TavrelView::RegisterNotification(notifyDocDidClose, s_self, callbackOf(documentClosed), nullptr);
  TavrelView::RegisterPageDrawProc(callbackOf(pageDrawn), nullptr);
  return 1;
}

uint32_t unload() {
  brz::releaseFile();
  return 1;
}

uint32_t shakeHands(uint32_t /*version*/, HandshakeRecord *record) {
  record->name = Kernel::AtomFromString("BRZ");
  record->importTables = callbackOf(importTables);
  record->initialise = callbackOf(initialise);
  record->unload = callbackOf(unload);
  return 1;
}

uint32_t setUp(uint32_t version, SetupRecord *record) {
  if (version != handshakeVersion) return 0;
  s_self = record->extension;
  gKernelHFT = record->kernel;
  gTavrelViewHFT = Kernel::RequestTable(Kernel::AtomFromString("TavrelView"), tavrelViewMarksVersion);
  if (gTavrelViewHFT == nullptr) return 0;
  record->handshake = callbackOf(shakeHands);
  return 1;
}

} // namespace

TAVREL_PLUGIN_VERSION("1.0");

// The exported `main`. It has another name in the source because it has three arguments. Its visibility is protected:
// otherwise the `main` of the program would be used instead.
extern "C" [[gnu::visibility("protected")]] uint32_t brzMain(uint32_t hostVersion, uint32_t *outVersion,
                                                             void **outSetupProc) __asm__("main");

extern "C" uint32_t brzMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  *outVersion = std::min(hostVersion, handshakeVersion);
  *outSetupProc = functionOf<void *>(entryOf(setUp));
  return 1;
}
