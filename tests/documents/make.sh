#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Makes the documents that the end-to-end tests read, into the folder given. Each has one
# property of real documents; the texts are original.
set -euo pipefail
export LC_ALL=C.UTF-8 # the texts below are UTF-8, whatever the caller speaks
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$1"
cd "$1"

# Two columns, several pages, ligatures (efficient, office, waffle) and hyphenated words at line ends.
{
  printf '.nr HY 1\n.TL\nA Paper in Two Columns\n.2C\n'
  printf '.PP\nThe efficient office staff offered a difficult waffle.\n'
  for i in $(seq 1 60); do
    printf '.PP\nParagraph %d speaks of searching, of hits and of highlights in long documents, ' "$i"
    printf 'where readers look for words; the search engine found the words, and the viewer shows them. '
    printf 'Efficient offices shuffle their files in difficult affairs of considerable characterisation.\n'
  done
} | groff -ms -Tps | ps2pdf - two-columns.pdf

for angle in 90 180 270; do qpdf --rotate=+$angle two-columns.pdf rotated-$angle.pdf; done
gs -q -sDEVICE=pdfwrite -o cropped.pdf -c '[/CropBox [60 100 400 700] /PAGES pdfmark' -f two-columns.pdf
qpdf --rotate=+90 cropped.pdf cropped-rotated.pdf
qpdf --encrypt secret owner 256 -- two-columns.pdf encrypted.pdf

{
  for i in $(seq 1 300); do
    ((i > 1)) && printf '.bp\n'
    printf 'This is page %d of three hundred.\n.sp\n' "$i"
    printf 'A needle lies here among the straw, and the straw is long and dull.\n'
  done
} | groff -Tps | ps2pdf - three-hundred.pdf

# Many hits on each page, in one column: "thread" occurs twice in each line.
{
  printf '.TL\nA Cloth\n.LP\n'
  for i in $(seq 1 320); do printf 'Row %d: a thread runs along the cloth, and another thread crosses it.\n.br\n' "$i"; done
} | groff -ms -Tps | ps2pdf - cloth.pdf

pango-view -q --font='Droid Sans Fallback 14' -o cjk.pdf --text='検索 結果 を 表示 する
東京 大阪 検索'
pango-view -q --font='DejaVu Sans 16' -o astral.pdf --text='plain 𝔸𝔹ℂ𝔻 words 𝔼𝔽 behind 𝔸𝔹ℂ𝔻 again'
"$here/vertical.py" "$(fc-match -f '%{file}' 'Droid Sans Fallback')" vertical.pdf
for angle in 90 180 270; do qpdf --rotate=+$angle vertical.pdf vertical-$angle.pdf; done
