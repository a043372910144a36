// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/targets.h"

#include <utility>

namespace document {
namespace {

// What the kind of a destination says about the position.
Position positionOf(const PopplerDest &destination) {
  const auto given = [](bool isGiven, double points) { return isGiven ? std::optional(points) : std::nullopt; };
  const auto left = given(destination.change_left != 0, destination.left);
  const auto top = given(destination.change_top != 0, destination.top);
  switch (destination.type) {
  case POPPLER_DEST_XYZ:
    return {left, top};
  case POPPLER_DEST_FITH:
  case POPPLER_DEST_FITBH:
    return {std::nullopt, top};
  case POPPLER_DEST_FITV:
  case POPPLER_DEST_FITBV:
    return {left, std::nullopt};
  case POPPLER_DEST_FITR:
    return {destination.left, destination.top};
  default:
    return {};
  }
}

std::optional<double> usable(const std::optional<double> &points) {
  return points && host::isUsablePosition(*points) ? points : std::nullopt;
}

} // namespace

// Pages of destinations count from 1; 0 is one that is not there.
host::Target Targets::onPage(const PopplerDest *destination) const {
  if (destination == nullptr || destination->page_num < 1 ||
      destination->page_num > poppler_document_get_n_pages(&pdf_))
    return {};
  host::PageTarget target{destination->page_num - 1};
  if (const Position position = positionOf(*destination); position.x || position.y)
    if (const PageFrame *frame = frames_.of(target.page)) {
      const Position shown = frame->shown(position);
      target.left = usable(shown.x);
      target.top = usable(shown.y);
    }
  if (destination->type == POPPLER_DEST_XYZ && destination->change_zoom != 0 && host::isUsableZoom(destination->zoom))
    target.zoom = destination->zoom;
  return target;
}

host::Target Targets::inDocument(const PopplerDest *destination) const {
  if (destination == nullptr || destination->type != POPPLER_DEST_NAMED) return onPage(destination);
  if (destination->named_dest == nullptr) return {};
  const Owned<PopplerDest, poppler_dest_free> found(poppler_document_find_dest(&pdf_, destination->named_dest));
  return onPage(found.get());
}

host::Target Targets::inFile(const char *name, const PopplerDest *destination) const {
  host::FileTarget target{texts_.line(name)};
  if (target.file.empty()) return {};
  if (destination != nullptr && destination->type == POPPLER_DEST_NAMED)
    target.destination = texts_.line(destination->named_dest);
  else if (destination != nullptr && destination->page_num >= 1)
    target.page = destination->page_num - 1;
  return target;
}

host::Target Targets::of(const PopplerAction *action) const {
  if (action == nullptr) return {};
  switch (action->type) {
  case POPPLER_ACTION_GOTO_DEST:
    return inDocument(action->goto_dest.dest);
  case POPPLER_ACTION_GOTO_REMOTE:
    return inFile(action->goto_remote.file_name, action->goto_remote.dest);
  case POPPLER_ACTION_LAUNCH:
    return inFile(action->launch.file_name, nullptr);
  case POPPLER_ACTION_URI:
    if (auto uri = texts_.uri(action->uri.uri)) return host::UriTarget{std::move(*uri)};
    return {};
  case POPPLER_ACTION_NAMED:
    if (std::string name = texts_.line(action->named.named_dest); !name.empty())
      return host::ActionTarget{std::move(name)};
    return {};
  default:
    return {};
  }
}

} // namespace document
