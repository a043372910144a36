// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Checks a structure that another program has made from a file.
#include "host/document/structure.h"

#include <algorithm>
#include <cmath>

#include "host/document/utf8.h"

namespace host {
namespace {

bool isShortLine(std::string_view text) { return text.size() <= most::line && isLine(text); }
bool areShortLines(std::string_view text) { return text.size() <= most::lines && isLines(text); }

struct IsTarget {
  int32_t pages;

  bool operator()(std::monostate /*none*/) const { return true; }
  bool operator()(const PageTarget &target) const {
    const auto isPosition = [](const std::optional<double> &points) { return !points || isUsablePosition(*points); };
    return target.page >= 0 && target.page < pages && isPosition(target.left) && isPosition(target.top) &&
           (!target.zoom || isUsableZoom(*target.zoom));
  }
  bool operator()(const UriTarget &target) const { return target.uri.size() <= most::line && isUri(target.uri); }
  bool operator()(const FileTarget &target) const {
    return !target.file.empty() && isShortLine(target.file) && (!target.page || *target.page >= 0) &&
           isShortLine(target.destination);
  }
  bool operator()(const ActionTarget &target) const { return !target.name.empty() && isShortLine(target.name); }
};

bool isTarget(const Target &target, int32_t pages) { return std::visit(IsTarget{pages}, target); }

bool isMetadata(const Metadata &data) {
  return isShortLine(data.title) && isShortLine(data.author) && isShortLine(data.subject) &&
         isShortLine(data.keywords) && isShortLine(data.creator) && isShortLine(data.producer) &&
         isShortLine(data.format);
}

bool isOutline(const std::vector<OutlineEntry> &outline, int32_t pages) {
  int32_t deepest = 0; // that the next entry may be
  return outline.size() <= most::outline && std::all_of(outline.begin(), outline.end(), [&](const OutlineEntry &entry) {
           if (entry.depth < 0 || entry.depth > deepest || entry.depth >= most::depth) return false;
           deepest = entry.depth + 1;
           return isShortLine(entry.title) && isTarget(entry.target, pages);
         });
}

bool isAttachment(const Attachment &file) {
  return isShortLine(file.name) && isShortLine(file.description) && isShortLine(file.type);
}

bool isArea(const Box &area) { return isUsable(area) && area.left < area.right && area.bottom < area.top; }

bool isField(const FormField &field) {
  return field.kind <= FormField::Kind::unknown && isArea(field.area) && isShortLine(field.name) &&
         areShortLines(field.contents);
}

bool isAnnotation(const Annotation &annotation) {
  return annotation.kind <= Annotation::Kind::other && isArea(annotation.area) && areShortLines(annotation.contents);
}

template <typename T, typename Is> bool areAll(const std::vector<T> &list, size_t atMost, const Is &is) {
  return list.size() <= atMost && std::all_of(list.begin(), list.end(), is);
}

} // namespace

bool isValid(const Structure &structure, int32_t pages) {
  const bool areLabels = structure.labels.empty() || structure.labels.size() == static_cast<size_t>(pages);
  return isMetadata(structure.metadata) && areLabels && areAll(structure.labels, SIZE_MAX, isShortLine) &&
         isOutline(structure.outline, pages) && areAll(structure.attachments, most::attachments, isAttachment);
}

bool isValid(const PageStructure &structure, int32_t pages) {
  const auto isLink = [=](const Link &link) { return isArea(link.area) && isTarget(link.target, pages); };
  return areAll(structure.links, most::onPage, isLink) && areAll(structure.fields, most::onPage, isField) &&
         areAll(structure.annotations, most::onPage, isAnnotation);
}

bool isUsablePosition(double points) { return isUsable(Box{points, points, points, points}); }

bool isUsableZoom(double zoom) { return zoom >= 0.01 && zoom <= 100; }

bool isUri(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

} // namespace host
