// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/attachments.h"

#include <algorithm>
#include <new>

namespace document {
namespace {

// Of the files in a document.
class Files {
public:
  explicit Files(PopplerDocument &pdf) : list_(poppler_document_get_attachments(&pdf)) {}
  Files(const Files &) = delete;
  Files &operator=(const Files &) = delete;
  ~Files() { g_list_free_full(list_, g_object_unref); }

  size_t count() const { return g_list_length(list_); }
  const GList *first() const { return list_; }
  /// Null if there is none.
  PopplerAttachment *at(uint32_t index) const {
    return static_cast<PopplerAttachment *>(g_list_nth_data(list_, index));
  }

private:
  GList *list_;
};

// The library has it as an `int` that is negative where the file says nothing.
std::optional<uint64_t> sizeOf(PopplerAttachment &file) {
  const gsize size = poppler_attachment_get_size(&file);
  return size <= INT32_MAX ? std::optional<uint64_t>(size) : std::nullopt;
}

// Called by the PDF library with one part after the other; false ends it.
gboolean append(const char *part, gsize size, void *attached, GError ** /*error*/) {
  auto &[state, bytes] = *static_cast<Attached *>(attached);
  try {
    if (size <= host::most::attachedFile - bytes.size())
      bytes.append(part, size);
    else
      state = Attached::tooLarge;
  } catch (const std::bad_alloc &) { // not through the library
    state = Attached::noMemory;
  }
  return state == Attached::complete;
}

} // namespace

std::vector<host::Attachment> attachmentsOf(PopplerDocument &pdf, Details &details, Texts &texts) {
  std::vector<host::Attachment> attachments;
  const Files files(pdf);
  if (files.count() == 0) return attachments;
  // The other list may have files that this one leaves out because they are damaged.
  const std::vector<std::string> types = details.attachmentTypes();
  const bool haveTypes = types.size() == files.count();
  for (const GList *node = files.first(); node != nullptr && attachments.size() < host::most::attachments;
       node = node->next) {
    auto *file = static_cast<PopplerAttachment *>(node->data);
    host::Attachment attachment{texts.line(poppler_attachment_get_name(file)),
                                texts.line(poppler_attachment_get_description(file))};
    if (haveTypes) attachment.type = texts.line(types[attachments.size()].c_str());
    attachment.size = sizeOf(*file);
    attachments.push_back(std::move(attachment));
  }
  return attachments;
}

Attached attachedFile(PopplerDocument &pdf, uint32_t index) {
  Attached attached;
  const Files files(pdf);
  PopplerAttachment *file = index < host::most::attachments ? files.at(index) : nullptr;
  if (file == nullptr) return attached;
  attached.state = Attached::complete;
  const bool isRead = poppler_attachment_save_to_callback(file, append, &attached, nullptr) != 0;
  if (!isRead && attached.state == Attached::complete) attached.state = Attached::damaged;
  return attached;
}

} // namespace document
