// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/fontsahead.h"

#include <fontconfig/fontconfig.h>

namespace viewer {

FontsAhead::FontsAhead()
    : thread_([] {
        FcPattern *pattern = FcNameParse(reinterpret_cast<const FcChar8 *>("DejaVu Sans-10"));
        FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
        FcDefaultSubstitute(pattern);
        FcResult result = FcResultNoMatch;
        if (FcPattern *match = FcFontMatch(nullptr, pattern, &result)) FcPatternDestroy(match);
        FcPatternDestroy(pattern);
      }) {}

void FontsAhead::await() {
  if (thread_.joinable()) thread_.join();
}

} // namespace viewer
