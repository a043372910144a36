# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# What tests of text fields share: keys, and another program that has or reads the clipboard.
import os
import subprocess

from harness import HELPERS, TIMEOUT, ViewerTest

CLIPBOARD = os.path.join(HELPERS, "clipboard")


class TextFieldTest(ViewerTest):
    # Has another program put bytes on the clipboard; `how` is "own", "parts" or "endless".
    def putOnClipboard(self, content, target="UTF8_STRING", how="own"):
        program = subprocess.Popen([CLIPBOARD, how, target], env=self.display.environment, stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        self.addCleanup(program.stdout.close)
        program.stdin.write(content)
        program.stdin.close()
        self.assertEqual(program.stdout.readline(), b"owned\n")

    # What another program reads there; None if there is nothing.
    def read(self, selection="CLIPBOARD"):
        done = subprocess.run([CLIPBOARD, "read", selection], env=self.display.environment, capture_output=True,
                              timeout=TIMEOUT, check=False)
        return done.stdout.decode() if done.returncode == 0 else None

    def keys(self, *names):
        self.display.xdotool("key", *names)

    def typed(self, text):
        self.display.xdotool("type", "--delay", "1", text)
        self.shows(text)

    def shows(self, text):
        self.viewer.until(lambda state: self.field(state) == text, f"{text!r} in the field")

    def field(self, state):
        return next((field["text"] for one in state["dialogs"] for field in one["fields"]), None)
