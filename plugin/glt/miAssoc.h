// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The association table: private bytes attached to a host object under two 16-bit keys.
#pragma once

#include "tavrel/types.h"

/// An entry of the table; it and its bytes belong to the table.
struct AssocEntry {
  void *object;
  uint16_t key1;
  uint16_t key2;
  void *data;
  uint32_t size;
  AssocEntry *next;
};

/// The entry added last is the first; null for an empty table.
extern AssocEntry *s_AssocList;

/// Stores a copy of the bytes, in place of any already there under the same object and keys. 0 when memory is
/// exhausted; after a 0 from a replacement the table must not be used again.
tavrel::Bool16 AssociateNew(void *object, uint16_t key1, uint16_t key2, const void *data, uint32_t size);

/// The table's copy of the bytes, which may be read and written until it is replaced or deleted; null when there is
/// none.
void *AssociateFind(void *object, uint16_t key1, uint16_t key2);

/// 1 when there was an entry to remove.
tavrel::Bool16 AssociateDelete(void *object, uint16_t key1, uint16_t key2);

/// Frees every entry. The table must not be used afterwards.
void AssociateClear();
