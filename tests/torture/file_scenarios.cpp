// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files of many shapes.
//
// A raise during a file's registration loses the reader's working copy and its list, as the reader opens no frame
// around it. The host accounts for the copy; the list's size depends on the file. Without memory for a list the reader
// returns early and does not free the copy, as it does for a file that is no highlight file.
#include "plugin/input/gltAux.h"
#include "tests/torture/Torture.h"

using namespace tavrel;

namespace torture {

namespace {

std::string fileOf(const std::string &attributes, const std::string &locations) {
  return "<XML>\n<Body " + attributes + ">\n<highlights>\n" + locations + "</highlights>\n</Body>\n</XML>\n";
}

std::string location(int page, int position) {
  return "<loc pg=" + std::to_string(page) + " pos=" + std::to_string(position) + " len=3>\n";
}

const std::string twoPages = location(0, 1) + location(0, 5) + location(4, 2);

std::string pagesOf(int pages, int hits) {
  std::string locations;
  for (int page = 0; page < pages; ++page)
    for (int hit = 0; hit < hits; ++hit)
      locations += location(page, 4 * hit);
  return locations;
}

/// The blocks that are lost when a raise ends a registration, by the pages of its list; 0 where none is registered. A
/// list has its header, the array of pages, and an array per page.
size_t blocksOfAList(size_t pages) { return 2 + pages; }

std::function<void(RecordingHost &)> reads(const std::string &file) {
  return [file](RecordingHost &host) { registerGLT(host.doc, file.data(), static_cast<uint32_t>(file.size())); };
}

Scenario file(const char *name, const std::string &text, size_t pages,
              std::function<void(RecordingHost &)> prepare = nullptr) {
  return {name, std::move(prepare), reads(text), {}, {pages != 0 ? blocksOfAList(pages) : 0, 1}, {0, 1}};
}

/// Not a highlight file: the copy is not freed.
Scenario abandoned(const char *name, const std::string &text) { return {name, nullptr, reads(text), {0, 1}, {}}; }

std::function<void(RecordingHost &)> delivers(const char *type) {
  return [type](RecordingHost &host) {
    static const std::string text = fileOf("mode=active", twoPages);
    gltAuxdataPerformProc(host.atom(type), text.data(), static_cast<uint32_t>(text.size()), host.doc);
  };
}

} // namespace

std::vector<Scenario> fileScenarios() {
  return {
      file("FileInCharacters", fileOf("Units=characters", twoPages), 2),
      file("FileInCharactersThatScrolls", fileOf("Units=characters mode=active", twoPages), 2),
      file("FileInWords", fileOf("Units=words version=1", twoPages), 2),
      file("FileInWordsThatScrolls", fileOf("mode=active", twoPages), 2),
      file("FileWithAColor", fileOf("color=00FF00", twoPages), 2),
      file("FileWithABadColor", fileOf("color=green", twoPages), 2),
      file("FileOfAnotherVersionShownAnyway", fileOf("version=7", twoPages), 2),
      file("FileOfAnotherVersionRefused", fileOf("version=7", twoPages), 2,
           [](RecordingHost &host) { host.alertAnswer = 2; }),
      file("FileOfManyPages", fileOf("Units=characters", pagesOf(20, 1)), 20),
      file("FileOfManyHits", fileOf("Units=characters", pagesOf(2, 40)), 2),
      file("FileWithoutHits", fileOf("Units=characters", ""), 0),
      file("FileThatEndsEarly", "<XML> <Body> <highlights> <loc pg=1 pos=2", 0),
      file("FileOnALine", "<XML><Body Units=characters><highlights><loc pg=1 pos=2 len=3></highlights></Body></XML>",
           1),
      file("FileOverAFile", fileOf("Units=characters mode=active", twoPages), 2, registerSix),
      file("FileWithoutView", fileOf("Units=characters mode=active", twoPages), 2,
           [](RecordingHost &host) { host.view = nullptr; }),
      abandoned("FileThatIsNone", "<html> <loc pg=1 pos=2>"),
      abandoned("FileWithoutLength", ""),
      {"FileWithoutDocument", nullptr, [](RecordingHost &) { registerGLT(nullptr, "<XML>", 5); }, {0, 1}, {}},
      {"AuxiliaryData", nullptr, delivers("tavrelglt"), {}, {blocksOfAList(2), 1}, {0, 1}},
      {"AuxiliaryDataAsXml", nullptr, delivers("xml"), {}, {blocksOfAList(2), 1}, {0, 1}},
      {"AuxiliaryDataOfAnotherType", nullptr, delivers("fdf")},
  };
}

} // namespace torture
