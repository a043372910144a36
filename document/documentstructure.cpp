// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/documentstructure.h"

#include <utility>

#include "document/attachments.h"
#include "document/targets.h"
#include "document/texts.h"

namespace document {
namespace {

using Outline = std::vector<host::OutlineEntry>;

std::optional<int64_t> secondsOf(GDateTime *given) {
  const Owned<GDateTime, g_date_time_unref> time(given);
  return time ? std::optional(g_date_time_to_unix(time.get())) : std::nullopt;
}

host::Metadata metadataOf(PopplerDocument &pdf, Texts &texts) {
  const auto line = [&](char *(*get)(PopplerDocument *)) { return texts.line(OwnedText(get(&pdf)).get()); };
  host::Metadata data;
  data.title = line(poppler_document_get_title);
  data.author = line(poppler_document_get_author);
  data.subject = line(poppler_document_get_subject);
  data.keywords = line(poppler_document_get_keywords);
  data.creator = line(poppler_document_get_creator);
  data.producer = line(poppler_document_get_producer);
  data.created = secondsOf(poppler_document_get_creation_date_time(&pdf));
  data.modified = secondsOf(poppler_document_get_modification_date_time(&pdf));
  data.format = line(poppler_document_get_pdf_version_string);
  return data;
}

// A page that is damaged has its number.
std::vector<std::string> labelsOf(PopplerDocument &pdf, Texts &texts) {
  std::vector<std::string> labels;
  bool areNumbers = true;
  const int32_t pages = poppler_document_get_n_pages(&pdf);
  for (int32_t index = 0; index < pages; ++index) {
    const std::string number = std::to_string(int64_t{index} + 1);
    const OwnedObject<PopplerPage> page(poppler_document_get_page(&pdf, index));
    labels.push_back(page ? texts.line(OwnedText(poppler_page_get_label(page.get())).get()) : number);
    areNumbers = areNumbers && labels.back() == number;
  }
  if (areNumbers) labels.clear();
  return labels;
}

// Adds an entry, those after it on its level, and those below them. The PDF library reads no entry again below itself;
// what else a file repeats ends with the number of entries.
void addEntries(Outline &outline, PopplerIndexIter &entries, int32_t depth, const Targets &targets, Texts &texts) {
  do {
    if (outline.size() >= host::most::outline) return;
    const OwnedAction action(poppler_index_iter_get_action(&entries));
    host::OutlineEntry entry{depth, texts.line(action ? action->any.title : nullptr)};
    entry.isOpen = poppler_index_iter_is_open(&entries) != 0;
    entry.target = targets.of(action.get());
    outline.push_back(std::move(entry));
    if (depth + 1 < host::most::depth)
      if (const Owned<PopplerIndexIter, poppler_index_iter_free> below(poppler_index_iter_get_child(&entries)); below)
        addEntries(outline, *below, depth + 1, targets, texts);
  } while (poppler_index_iter_next(&entries) != 0);
}

Outline outlineOf(PopplerDocument &pdf, const Targets &targets, Texts &texts) {
  Outline outline;
  if (const Owned<PopplerIndexIter, poppler_index_iter_free> top(poppler_index_iter_new(&pdf)); top)
    addEntries(outline, *top, 0, targets, texts);
  return outline;
}

} // namespace

host::Structure structureOf(PopplerDocument &pdf, PageFrames &frames, Details &details) {
  Texts texts;
  const Targets targets(pdf, frames, texts);
  host::Structure structure;
  structure.metadata = metadataOf(pdf, texts);
  structure.labels = labelsOf(pdf, texts);
  structure.attachments = attachmentsOf(pdf, details, texts);
  structure.outline = outlineOf(pdf, targets, texts);
  return structure;
}

} // namespace document
