// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Tables of the host's own operations: only the check that none is missing.
#include "host/kernel/table.h"

namespace host {

tavrel::HFT Table::entries() {
  for (const tavrel::ListedOperation &operation : operations_)
    if (entries_.at(operation.index) == nullptr)
      throw HostError(tavrel::errGeneric, "table " + name_ + " lacks " + operation.name);
  return entries_.data();
}

} // namespace host
