// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A library that is no plug-in: nothing in it is called main.
extern "C" __attribute__((visibility("default"))) int somethingElse();
int somethingElse() { return 1; }
