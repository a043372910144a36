// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Draws, positions, and every jump in every view mode, from the list's start, from its middle and from its end.
#include "plugin/pi/miPI.h"
#include "tests/torture/Torture.h"

using namespace tavrel;

namespace torture {

namespace {

struct Named {
  const char *name;
  uint32_t value;
};

constexpr Named modes[] = {{"All", GLT_VIEW_ALL}, {"One", GLT_VIEW_ONE}, {"None", GLT_VIEW_NONE}};

constexpr Named codes[] = {{"Next", GLT_JUMP_NEXT},
                           {"NextBeyond", GLT_JUMP_NEXT_BEYOND},
                           {"Prev", GLT_JUMP_PREV},
                           {"PrevBeyond", GLT_JUMP_PREV_BEYOND},
                           {"First", GLT_JUMP_FIRST},
                           {"Last", GLT_JUMP_LAST},
                           {"Nowhere", 99}};

constexpr Named positions[] = {{"Start", 0}, {"Middle", 1}, {"End", 2}};

std::function<void(RecordingHost &)> registeredIn(uint32_t mode, uint32_t page) {
  return [mode, page](RecordingHost &host) {
    registerSix(host);
    GLT_SetViewMode(host.doc, static_cast<int32_t>(mode));
    GLT_SetPos(host.doc, page, page == 1 ? 1 : 0, 1);
    host.shownPage = 1;
  };
}

void draw(RecordingHost &host) { miPIPageViewDraw(host.view, nullptr); }

} // namespace

std::vector<Scenario> walkingScenarios() {
  std::vector<Scenario> all;
  for (const Named &mode : modes) {
    for (const Named &code : codes)
      for (const Named &position : positions)
        all.push_back({std::string("Jump") + code.name + "InMode" + mode.name + "FromThe" + position.name,
                       registeredIn(mode.value, position.value),
                       [jump = code.value](RecordingHost &host) { GLT_Jump(host.doc, jump); }});
    all.push_back({std::string("DrawInMode") + mode.name,
                   [prepare = registeredIn(mode.value, 0)](RecordingHost &host) {
                     prepare(host);
                     host.shownPage = 2;
                   },
                   draw});
    all.push_back({std::string("SetPositionInMode") + mode.name, registeredIn(mode.value, 0),
                   [](RecordingHost &host) { GLT_SetPos(host.doc, 1, 2, 1); }});
  }
  all.push_back({"DrawAPageWithoutHits", registeredIn(GLT_VIEW_ALL, 0), draw});
  all.push_back({"DrawWithoutAList", nullptr, draw});
  all.push_back({"JumpWithoutAList", nullptr, [](RecordingHost &host) { GLT_Jump(host.doc, GLT_JUMP_NEXT); }});
  all.push_back({"RefreshWithoutAList", nullptr, [](RecordingHost &host) { GLTShowHighlights(host.doc, nullptr, 1); }});
  return all;
}

} // namespace torture
