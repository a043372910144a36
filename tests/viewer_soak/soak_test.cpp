// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Soak: 500 documents are opened and closed and 10,000 pages turned, in a real window with all plug-ins. File
// descriptors, processes of documents, X server resources and blocks of the host must be as many at the end as early in
// the run, and the allocated memory may have grown by less than 4 KB.
#include <iostream>

#include "viewer_soak/Soak.h"

namespace {

using test::documentProcesses;
using test::Soak;
using test::Usage;

TEST_F(Soak, DocumentsAndPagesLeaveNothingBehind) {
  Usage early;
  for (int i = 1; i <= 500; ++i) {
    session.opener.open({file, "xml=hits.xml"});
    until([&] { return session.documents.front() != nullptr && drawn(); });
    ASSERT_EQ(session.documents.page(), 3);
    rest();
    session.documents.closeFront();
    until([&] { return !session.screen.shown().document; });
    ASSERT_EQ(documentProcesses().size(), 1U) << "in advance";
    if (i == 50) early = usage();
  }
  expectSame(early, usage());

  session.opener.open({file, "xml=hits.xml"});
  until([&] { return session.documents.front() != nullptr && drawn(); });
  for (int i = 1; i <= 10'000; ++i) {
    if (session.documents.page() + 1 < session.documents.pageCount())
      session.moving.turn(1);
    else
      session.moving.goToPage(0);
    until([&] { return drawn(); });
    if (i != 1'400) continue; // every page twice
    rest();
    early = usage();
  }
  rest();
  expectSame(early, usage());
}

} // namespace
