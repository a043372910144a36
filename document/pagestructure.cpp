// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/pagestructure.h"

#include <utility>

#include "document/targets.h"
#include "document/texts.h"

namespace document {
namespace {

// Lists of the library. Those of links and fields begin with the last one.
template <auto release> using OwnedMappings = Owned<GList, release>;

host::PageSize sizeOf(PopplerPage &page) {
  host::PageSize size;
  poppler_page_get_size(&page, &size.width, &size.height);
  return size;
}

// ---- links ----

std::vector<host::Link> linksOf(PopplerPage &page, const Targets &targets) {
  std::vector<host::Link> links;
  const OwnedMappings<poppler_page_free_link_mapping> list(g_list_reverse(poppler_page_get_link_mapping(&page)));
  for (const GList *node = list.get(); node != nullptr && links.size() < host::most::onPage; node = node->next) {
    const auto &mapping = *static_cast<const PopplerLinkMapping *>(node->data);
    const auto area = areaOnPage(mapping.area, sizeOf(page));
    if (!area) continue;
    host::Target target = targets.of(mapping.action);
    if (!std::holds_alternative<std::monostate>(target)) links.push_back({*area, std::move(target)});
  }
  return links;
}

// ---- forms ----

host::FormField::Kind kindOf(PopplerFormField &field) {
  using Kind = host::FormField::Kind;
  switch (poppler_form_field_get_field_type(&field)) {
  case POPPLER_FORM_FIELD_BUTTON:
    switch (poppler_form_field_button_get_button_type(&field)) {
    case POPPLER_FORM_BUTTON_CHECK:
      return Kind::checkBox;
    case POPPLER_FORM_BUTTON_RADIO:
      return Kind::radioButton;
    default:
      return Kind::button;
    }
  case POPPLER_FORM_FIELD_TEXT:
    return Kind::text;
  case POPPLER_FORM_FIELD_CHOICE:
    return Kind::choice;
  case POPPLER_FORM_FIELD_SIGNATURE:
    return Kind::signature;
  default:
    return Kind::unknown;
  }
}

// What is chosen, or was typed instead.
std::string choiceOf(PopplerFormField &field) {
  std::string chosen;
  const int items = poppler_form_field_choice_get_n_items(&field);
  for (int item = 0; item < items && chosen.size() < host::most::lines; ++item) {
    if (poppler_form_field_choice_is_item_selected(&field, item) == 0) continue;
    const OwnedText text(poppler_form_field_choice_get_item(&field, item));
    if (text) (chosen += chosen.empty() ? "" : "\n") += text.get();
  }
  if (chosen.empty() && poppler_form_field_choice_is_editable(&field) != 0)
    if (const OwnedText text(poppler_form_field_choice_get_text(&field)); text) chosen = text.get();
  return chosen;
}

void addContents(host::FormField &result, PopplerFormField &field, Texts &texts) {
  using Kind = host::FormField::Kind;
  if (result.kind == Kind::text && poppler_form_field_text_is_password(&field) == 0)
    result.contents = texts.lines(OwnedText(poppler_form_field_text_get_text(&field)).get());
  else if (result.kind == Kind::choice)
    result.contents = texts.lines(choiceOf(field).c_str());
  else if (result.kind == Kind::checkBox || result.kind == Kind::radioButton)
    result.isOn = poppler_form_field_button_get_state(&field) != 0;
}

// The library gives areas of the page as it is before its rotation.
std::vector<host::FormField> fieldsOf(PopplerPage &page, PageFrames &frames, Texts &texts) {
  std::vector<host::FormField> fields;
  const OwnedMappings<poppler_page_free_form_field_mapping> list(
      g_list_reverse(poppler_page_get_form_field_mapping(&page)));
  const PageFrame *frame = list ? frames.of(poppler_page_get_index(&page)) : nullptr;
  if (frame == nullptr) return fields;
  for (const GList *node = list.get(); node != nullptr && fields.size() < host::most::onPage; node = node->next) {
    const auto &mapping = *static_cast<const PopplerFormFieldMapping *>(node->data);
    const auto area = areaOnPage(frame->shown(mapping.area), sizeOf(page));
    if (!area) continue;
    host::FormField field{kindOf(*mapping.field), *area};
    field.name = texts.line(OwnedText(poppler_form_field_get_name(mapping.field)).get());
    addContents(field, *mapping.field, texts);
    field.isReadOnly = poppler_form_field_is_read_only(mapping.field) != 0;
    fields.push_back(std::move(field));
  }
  return fields;
}

// ---- annotations ----

constexpr struct {
  PopplerAnnotType type;
  host::Annotation::Kind kind;
} kinds[] = {
    {POPPLER_ANNOT_TEXT, host::Annotation::Kind::note},
    {POPPLER_ANNOT_FREE_TEXT, host::Annotation::Kind::freeText},
    {POPPLER_ANNOT_LINE, host::Annotation::Kind::line},
    {POPPLER_ANNOT_SQUARE, host::Annotation::Kind::square},
    {POPPLER_ANNOT_CIRCLE, host::Annotation::Kind::circle},
    {POPPLER_ANNOT_POLYGON, host::Annotation::Kind::polygon},
    {POPPLER_ANNOT_POLY_LINE, host::Annotation::Kind::polyLine},
    {POPPLER_ANNOT_HIGHLIGHT, host::Annotation::Kind::highlight},
    {POPPLER_ANNOT_UNDERLINE, host::Annotation::Kind::underline},
    {POPPLER_ANNOT_SQUIGGLY, host::Annotation::Kind::squiggly},
    {POPPLER_ANNOT_STRIKE_OUT, host::Annotation::Kind::strikeOut},
    {POPPLER_ANNOT_STAMP, host::Annotation::Kind::stamp},
    {POPPLER_ANNOT_CARET, host::Annotation::Kind::caret},
    {POPPLER_ANNOT_INK, host::Annotation::Kind::ink},
    {POPPLER_ANNOT_FILE_ATTACHMENT, host::Annotation::Kind::file},
};

host::Annotation::Kind kindOf(PopplerAnnotType type) {
  for (const auto &[other, kind] : kinds)
    if (other == type) return kind;
  return host::Annotation::Kind::other;
}

bool isListed(PopplerAnnot &annotation) {
  const PopplerAnnotType type = poppler_annot_get_annot_type(&annotation);
  const int flags = poppler_annot_get_flags(&annotation);
  return type != POPPLER_ANNOT_LINK && type != POPPLER_ANNOT_WIDGET && type != POPPLER_ANNOT_POPUP &&
         (flags & (POPPLER_ANNOT_FLAG_HIDDEN | POPPLER_ANNOT_FLAG_NO_VIEW)) == 0;
}

std::vector<host::Annotation> annotationsOf(PopplerPage &page, Texts &texts) {
  std::vector<host::Annotation> annotations;
  const OwnedMappings<poppler_page_free_annot_mapping> list(poppler_page_get_annot_mapping(&page));
  for (const GList *node = list.get(); node != nullptr && annotations.size() < host::most::onPage; node = node->next) {
    const auto &mapping = *static_cast<const PopplerAnnotMapping *>(node->data);
    const auto area = areaOnPage(mapping.area, sizeOf(page));
    if (!area || !isListed(*mapping.annot)) continue;
    host::Annotation annotation{kindOf(poppler_annot_get_annot_type(mapping.annot)), *area};
    annotation.contents = texts.lines(OwnedText(poppler_annot_get_contents(mapping.annot)).get());
    annotations.push_back(std::move(annotation));
  }
  return annotations;
}

} // namespace

host::PageStructure pageStructureOf(PopplerDocument &pdf, PopplerPage &page, PageFrames &frames) {
  Texts texts;
  host::PageStructure structure;
  structure.links = linksOf(page, Targets(pdf, frames, texts));
  structure.fields = fieldsOf(page, frames, texts);
  structure.annotations = annotationsOf(page, texts);
  return structure;
}

} // namespace document
