// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/tables.h"

#include "host/document/document.h"
#include "tavrel/DocModel.h"
#include "tavrel/TavrelView.h"

namespace host {

void addHostTables(Runtime &runtime) {
  // The older versions are the same table: a client of one does not read beyond its end.
  runtime.addTable("DocModel", 0x00050000, docModelTable());
  runtime.addTable("DocModel", tavrel::docModelVersion, docModelTable());
  runtime.addTable("TavrelView", 0x00050001, viewTable());
  runtime.addTable("TavrelView", tavrel::tavrelViewStatusVersion, viewTable());
  runtime.addTable("TavrelView", tavrel::tavrelViewMarksVersion, viewTable());
  runtime.addTable("TavrelView", tavrel::tavrelViewListsVersion, viewTable());
  runtime.addTable("TavrelView", tavrel::tavrelViewVersion, viewTable());
  runtime.addTable("Desktop", 0x00040000, desktopTable());
}

} // namespace host
