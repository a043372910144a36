// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The other libraries: expat and libxml2 report elements as they come, pugixml builds a tree.
#include "bench/parsers.h"

#include <expat.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <cstdlib>
#include <cstring>
#include <pugixml.hpp>

namespace bench {
namespace {

bool isLocation(const char *name) { return std::strcmp(name, "loc") == 0 || std::strcmp(name, "location") == 0; }

void take(Hit &hit, const char *name, const char *value) {
  if (std::strcmp(name, "pg") == 0 || std::strcmp(name, "page") == 0)
    hit.page = std::atoi(value);
  else if (std::strcmp(name, "pos") == 0 || std::strcmp(name, "position") == 0)
    hit.pos = static_cast<uint16_t>(std::atoi(value));
  else if (std::strcmp(name, "len") == 0 || std::strcmp(name, "length") == 0)
    hit.len = static_cast<uint16_t>(std::atoi(value));
}

void expatElement(void *sink, const char *name, const char **attributes) {
  if (!isLocation(name)) return;
  Hit hit = {-1, 0xFFFF, 0};
  for (; *attributes != nullptr; attributes += 2)
    take(hit, attributes[0], attributes[1]);
  const auto *to = static_cast<const Sink *>(sink);
  to->add(to->where, hit);
}

// An attribute has five entries: name, prefix, URI, begin and end of the value. The value has no terminator, but a
// quotation mark follows it, which ends a number, too.
void libxml2Element(void *sink, const xmlChar *name, const xmlChar * /*prefix*/, const xmlChar * /*uri*/,
                    int /*namespaces*/, const xmlChar ** /*declared*/, int count, int /*defaulted*/,
                    const xmlChar **attributes) {
  if (!isLocation(reinterpret_cast<const char *>(name))) return;
  Hit hit = {-1, 0xFFFF, 0};
  for (int i = 0; i < count; ++i, attributes += 5)
    take(hit, reinterpret_cast<const char *>(attributes[0]), reinterpret_cast<const char *>(attributes[3]));
  const auto *to = static_cast<const Sink *>(sink);
  to->add(to->where, hit);
}

void walk(const pugi::xml_node &node, const Sink &sink) {
  for (const pugi::xml_node child : node.children()) {
    if (!isLocation(child.name())) continue;
    Hit hit = {-1, 0xFFFF, 0};
    for (const pugi::xml_attribute attribute : child.attributes())
      take(hit, attribute.name(), attribute.value());
    sink.add(sink.where, hit);
  }
}

} // namespace

bool readWithExpat(const std::string &file, const Sink &sink) {
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetUserData(parser, const_cast<Sink *>(&sink));
  XML_SetStartElementHandler(parser, expatElement);
  const XML_Status status = XML_Parse(parser, file.data(), static_cast<int>(file.size()), 1);
  XML_ParserFree(parser);
  return status == XML_STATUS_OK;
}

bool readWithLibxml2(const std::string &file, const Sink &sink) {
  xmlSAXHandler handler;
  std::memset(&handler, 0, sizeof handler);
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = libxml2Element;
  xmlParserCtxtPtr context = xmlCreateMemoryParserCtxt(file.data(), static_cast<int>(file.size()));
  if (context == nullptr) return false;
  std::swap(*context->sax, handler);
  context->userData = const_cast<Sink *>(&sink);
  context->options |= XML_PARSE_HUGE;
  xmlParseDocument(context);
  const bool wellFormed = context->wellFormed != 0;
  xmlFreeParserCtxt(context);
  return wellFormed;
}

// Without conversions, which numbers do not need: the fastest mode of the library that does not change the text.
bool readWithPugixml(const std::string &file, const Sink &sink) {
  pugi::xml_document document;
  if (!document.load_buffer(file.data(), file.size(), pugi::parse_minimal)) return false;
  walk(document.child("XML").child("Body").child("highlights"), sink);
  return true;
}

} // namespace bench
