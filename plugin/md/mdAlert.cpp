// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Modal alerts: a text, an icon by kind, one of four sets of buttons, shown and answered through the host.
#include <cstdio>

#include "plugin/md/mdUtils.h"
#include "plugin/util/miUtils.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

constexpr uint16_t textSize = 2050;

/// The host's icon by kind. Kinds 1 and 3 share one.
constexpr int32_t icons[] = {alertError, alertNote, alertQuestion, alertNote};

constexpr int16_t none = -1;

/// A set of buttons: their labels, and the result of each answer of the host. The last result is also that of any
/// other answer.
struct ButtonSet {
  int16_t label[3];
  int32_t result[3];
};

constexpr ButtonSet buttonSets[] = {
    {{0, none, none}, {mdResultOK, mdResultOK, mdResultOK}},
    {{0, 1, none}, {mdResultOK, mdResultCancel, mdResultCancel}},
    {{2, 3, none}, {mdResultYes, mdResultNo, mdResultNo}},
    {{2, 3, 1}, {mdResultYes, mdResultNo, mdResultCancel}},
};
constexpr ButtonSet unknownSet = {{none, none, none}, {mdResultUnknown, mdResultUnknown, mdResultUnknown}};

template <typename T, size_t N> const T *entryAt(const T (&table)[N], int32_t index) {
  return index >= 0 && index < static_cast<int32_t>(N) ? &table[index] : nullptr;
}

const char *labelOf(int16_t id) { return id != none ? GetButtonString(static_cast<uint16_t>(id)) : nullptr; }

} // namespace

int32_t mdAlert(int32_t kind, int32_t buttons, uint32_t stringId, ...) {
  char format[textSize];
  va_list arguments;
  va_start(arguments, stringId);
  const int32_t result =
      mdAlertDoIt(nullptr, kind, buttons, mdGetString(static_cast<uint16_t>(stringId), format, textSize), arguments);
  va_end(arguments);
  return result;
}

int32_t mdAlertEx(void *owner, int32_t kind, int32_t buttons, uint32_t stringId, ...) {
  char format[textSize];
  va_list arguments;
  va_start(arguments, stringId);
  const int32_t result =
      mdAlertDoIt(owner, kind, buttons, mdGetString(static_cast<uint16_t>(stringId), format, textSize), arguments);
  va_end(arguments);
  return result;
}

int32_t mdAlertStr(void *owner, int32_t kind, int32_t buttons, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int32_t result = mdAlertDoIt(owner, kind, buttons, format, arguments);
  va_end(arguments);
  return result;
}

int32_t mdAlertDoIt(void *owner, int32_t kind, int32_t buttons, const char *format, va_list arguments) {
  char text[textSize];
  miVsnprintfSAFE(text, sizeof text, format, arguments); // truncates a longer text
  return mdAlertText(owner, kind, buttons, text);
}

int32_t mdAlertText(void * /*owner*/, int32_t kind, int32_t buttons, const char *text) {
  const int32_t *icon = entryAt(icons, kind);
  const ButtonSet *known = entryAt(buttonSets, buttons);
  const ButtonSet &set = known != nullptr ? *known : unknownSet;
  const char *first = labelOf(set.label[0]);
  const char *second = labelOf(set.label[1]);
  const char *third = labelOf(set.label[2]);
  const int32_t answer = TavrelView::Alert(icon != nullptr ? *icon : int32_t{alertNone}, text, first, second, third, 1);
  return set.result[answer == 1 ? 0 : answer == 2 ? 1 : 2];
}
