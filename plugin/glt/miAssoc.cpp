// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The association table: one list for the process, with one entry per document that shows highlights.
#include "plugin/glt/miAssoc.h"

#include <cstdlib>

#include "plugin/util/miUtils.h"

using tavrel::Bool16;

AssocEntry *s_AssocList;

namespace {

/// The link that points to the matching entry, or to null at the end of the list.
AssocEntry **findLink(const void *object, uint16_t key1, uint16_t key2) {
  AssocEntry **link = &s_AssocList;
  while (*link != nullptr && ((*link)->object != object || (*link)->key1 != key1 || (*link)->key2 != key2))
    link = &(*link)->next;
  return link;
}

Bool16 storeCopy(AssocEntry *entry, const void *data, uint32_t size) {
  entry->data = malloc(size);
  if (entry->data == nullptr && size != 0) return 0;
  miMemcpySAFE(entry->data, data, size);
  entry->size = size;
  return 1;
}

} // namespace

Bool16 AssociateNew(void *object, uint16_t key1, uint16_t key2, const void *data, uint32_t size) {
  AssocEntry *entry = *findLink(object, key1, key2);
  const bool isNew = entry == nullptr;
  if (isNew) {
    entry = static_cast<AssocEntry *>(malloc(sizeof(AssocEntry)));
    if (entry == nullptr) return 0;
    *entry = AssocEntry{object, key1, key2, nullptr, 0, nullptr};
  } else {
    TSIfNotNullFree(entry->data);
  }
  if (!storeCopy(entry, data, size)) {
    free(entry); // still linked after a failed replacement: the table must not be used afterwards
    return 0;
  }
  if (isNew) {
    entry->next = s_AssocList;
    s_AssocList = entry;
  }
  return 1;
}

void *AssociateFind(void *object, uint16_t key1, uint16_t key2) {
  const AssocEntry *entry = *findLink(object, key1, key2);
  return entry != nullptr ? entry->data : nullptr;
}

Bool16 AssociateDelete(void *object, uint16_t key1, uint16_t key2) {
  AssocEntry **link = findLink(object, key1, key2);
  AssocEntry *entry = *link;
  if (entry == nullptr) return 0;
  *link = entry->next;
  TSIfNotNullFree(entry->data);
  free(entry);
  return 1;
}

void AssociateClear() {
  for (AssocEntry *entry = s_AssocList; entry != nullptr;) {
    AssocEntry *next = entry->next;
    TSIfNotNullFree(entry->data);
    free(entry);
    entry = next;
  }
  // The head keeps its value: the table is not used after clearing.
}
