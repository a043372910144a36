// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The utility library's functions that allocate.
#include <cstdlib>

#include "plugin/glt/miAssoc.h"
#include "plugin/util/miText.h"
#include "plugin/util/miUtils.h"
#include "tavrel/TavrelSupport.h"
#include "tests/torture/Torture.h"

using namespace tavrel;

namespace torture {

namespace {

void *s_block;

void release(RecordingHost & /*host*/) {
  if (s_block != nullptr) TavrelSupport::Free(s_block);
}

} // namespace

std::vector<Scenario> utilityScenarios() {
  // A raise loses the host's block that the scenario holds; the library loses none.
  constexpr Loss oneOfTheHost = {0, 1};
  return {
      {"TakeMemory",
       nullptr,
       [](RecordingHost &host) {
         for (void *(*take)(uint32_t) : {TSSureMalloc, +[](uint32_t size) { return TSSureCalloc(2, size); },
                                         +[](uint32_t size) { return TScalloc(2, size); }}) {
           s_block = take(20);
           release(host);
         }
       },
       {},
       oneOfTheHost},
      {"ResizeMemory",
       nullptr,
       [](RecordingHost &host) {
         s_block = TSSureRealloc(nullptr, 20);
         s_block = TSSureRealloc(s_block, 4000);
         release(host);
       },
       {},
       oneOfTheHost},
      {"CopyMemory", nullptr,
       [](RecordingHost &) {
         free(miCopyMem("highlight", 10));
         free(miCopyStrImpl("highlight"));
       }},
      // The last reallocation may raise: the field is not returned yet and is lost.
      {"TakeAField",
       nullptr,
       [](RecordingHost &host) {
         uint32_t position = 0;
         s_block = miSnarfEntry(" \"a, b\" ,c", &position, 0);
         release(host);
       },
       {},
       oneOfTheHost},
      {"Associate", nullptr,
       [](RecordingHost &) {
         static int object;
         AssociateNew(&object, 1, 2, "bytes", 5);
         AssociateNew(&object, 1, 3, "bytes", 5);
         AssociateDelete(&object, 1, 2);
         AssociateDelete(&object, 1, 3);
       }},
  };
}

} // namespace torture
