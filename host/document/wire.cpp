// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The layout: a structure is its members, one after the other; a text or list its length and its elements; one of
// several types its index and its value; what may be missing, whether it is there and its value. Numbers are as in
// memory, truth is a byte 0 or 1.
#include "host/document/wire.h"

#include <concepts>
#include <cstring>
#include <stdexcept>
#include <tuple>
#include <type_traits>

namespace host {

static_assert(most::attachedFile < mostContent && most::text < mostContent);

namespace {

// The members of each structure.
template <typename T> constexpr std::tuple<> membersOf{};
template <> constexpr std::tuple membersOf<Box>{&Box::left, &Box::top, &Box::right, &Box::bottom};
template <> constexpr std::tuple membersOf<PageSize>{&PageSize::width, &PageSize::height};
template <> constexpr std::tuple membersOf<WordText>{&WordText::text, &WordText::offset, &WordText::bounds,
                                                     &WordText::characters, &WordText::quarterTurns};
template <> constexpr std::tuple membersOf<PageText>{&PageText::words};
template <> constexpr std::tuple membersOf<Found>{&Found::boxes};
template <> constexpr std::tuple membersOf<FindOptions>{&FindOptions::matchCase, &FindOptions::wholeWords};

template <>
constexpr std::tuple membersOf<PageTarget>{&PageTarget::page, &PageTarget::left, &PageTarget::top, &PageTarget::zoom};
template <> constexpr std::tuple membersOf<UriTarget>{&UriTarget::uri};
template <> constexpr std::tuple membersOf<FileTarget>{&FileTarget::file, &FileTarget::page, &FileTarget::destination};
template <> constexpr std::tuple membersOf<ActionTarget>{&ActionTarget::name};
template <> constexpr std::tuple membersOf<Metadata>{&Metadata::title,    &Metadata::author,   &Metadata::subject,
                                                     &Metadata::keywords, &Metadata::creator,  &Metadata::producer,
                                                     &Metadata::created,  &Metadata::modified, &Metadata::format};
template <> constexpr std::tuple membersOf<OutlineEntry>{&OutlineEntry::depth, &OutlineEntry::title,
                                                         &OutlineEntry::isOpen, &OutlineEntry::target};
template <> constexpr std::tuple membersOf<Attachment>{&Attachment::name, &Attachment::description, &Attachment::type,
                                                       &Attachment::size};
template <> constexpr std::tuple membersOf<Link>{&Link::area, &Link::target};
template <> constexpr std::tuple membersOf<FormField>{&FormField::kind,     &FormField::area, &FormField::name,
                                                      &FormField::contents, &FormField::isOn, &FormField::isReadOnly};
template <> constexpr std::tuple membersOf<Annotation>{&Annotation::kind, &Annotation::area, &Annotation::contents};

template <> constexpr std::tuple membersOf<OpenRequest>{&OpenRequest::file, &OpenRequest::password};
template <> constexpr std::tuple membersOf<SizesRequest>{&SizesRequest::first, &SizesRequest::count};
template <> constexpr std::tuple membersOf<WordsRequest>{&WordsRequest::page, &WordsRequest::order};
template <> constexpr std::tuple membersOf<PixelSize>{&PixelSize::width, &PixelSize::height};
template <>
constexpr std::tuple membersOf<PixelBox>{&PixelBox::left, &PixelBox::top, &PixelBox::right, &PixelBox::bottom};
template <> constexpr std::tuple membersOf<ImageRequest>{&ImageRequest::page, &ImageRequest::dpi, &ImageRequest::size,
                                                         &ImageRequest::part};
template <>
constexpr std::tuple membersOf<MatchesRequest>{&MatchesRequest::page, &MatchesRequest::text, &MatchesRequest::options};
template <> constexpr std::tuple membersOf<StructureRequest>{&StructureRequest::pages};
template <>
constexpr std::tuple membersOf<PageStructureRequest>{&PageStructureRequest::page, &PageStructureRequest::pages};
template <> constexpr std::tuple membersOf<AttachmentRequest>{&AttachmentRequest::index};
template <> constexpr std::tuple membersOf<PlainWordsRequest>{&PlainWordsRequest::page};

template <> constexpr std::tuple membersOf<Failure>{&Failure::code, &Failure::reason, &Failure::line};
template <> constexpr std::tuple membersOf<Opened>{&Opened::pageCount, &Opened::sizes, &Opened::isConfined};
template <> constexpr std::tuple membersOf<Sizes>{&Sizes::first, &Sizes::sizes};
template <> constexpr std::tuple membersOf<PageWords>{&PageWords::page, &PageWords::text, &PageWords::order};
template <> constexpr std::tuple membersOf<PageImage>{&PageImage::page, &PageImage::dpi};
template <> constexpr std::tuple membersOf<PageMatches>{&PageMatches::page, &PageMatches::found};
template <> constexpr std::tuple membersOf<Structure>{&Structure::metadata, &Structure::labels, &Structure::outline,
                                                      &Structure::attachments};
template <> constexpr std::tuple membersOf<PageStructure>{&PageStructure::page, &PageStructure::links,
                                                          &PageStructure::fields, &PageStructure::annotations};
template <> constexpr std::tuple membersOf<AttachedFile>{&AttachedFile::index, &AttachedFile::bytes};
template <> constexpr std::tuple membersOf<PagePlainWords>{&PagePlainWords::page, &PagePlainWords::words};

template <typename T> constexpr bool isStructure =
    !std::same_as<std::remove_const_t<decltype(membersOf<T>)>, std::tuple<>>;
template <typename T> constexpr bool isNumber = std::is_arithmetic_v<T> || std::is_enum_v<T>;

template <typename T>
concept Number = isNumber<T> && !std::same_as<T, bool>;
template <typename T>
concept Structure = isStructure<T>;
template <typename T>
concept List = requires(T list) {
  typename T::value_type;
  list.resize(1);
};

using Length = uint32_t;

class Writer {
public:
  void put(bool value) { put(static_cast<uint8_t>(value)); }
  template <Number T> void put(T value) { bytes_.append(reinterpret_cast<const char *>(&value), sizeof value); }
  void put(const std::filesystem::path &path) { put(path.native()); }
  template <List T> void put(const T &list) {
    if (list.size() > mostContent) throw std::length_error("a message is too long");
    put(static_cast<Length>(list.size()));
    for (const auto &element : list)
      put(element);
  }
  template <typename T> void put(const std::optional<T> &value) {
    put(value.has_value());
    if (value) put(*value);
  }
  void put(std::monostate /*none*/) {}
  template <typename... T> void put(const std::variant<T...> &one) {
    put(static_cast<uint8_t>(one.index()));
    std::visit([this](const auto &value) { this->put(value); }, one);
  }
  template <Structure T> void put(const T &structure) {
    std::apply([&](auto... member) { (put(structure.*member), ...); }, membersOf<T>);
  }

  std::string message() && {
    const size_t size = bytes_.size() - sizeof(WireHeader);
    if (size > mostContent) throw std::length_error("a message is too long");
    const WireHeader header{wireVersion, static_cast<uint32_t>(size)};
    std::memcpy(bytes_.data(), &header, sizeof header);
    return std::move(bytes_);
  }

private:
  std::string bytes_ = std::string(sizeof(WireHeader), 0);
};

// Each get() returns false if the bytes are not such a value.
class Reader {
public:
  explicit Reader(std::string_view bytes) : left_(bytes) {}

  template <Number T> bool get(T &value) {
    if (left_.size() < sizeof value) return false;
    std::memcpy(&value, left_.data(), sizeof value);
    left_.remove_prefix(sizeof value);
    return true;
  }
  bool get(bool &value) {
    uint8_t byte = 0;
    if (!get(byte) || byte > 1) return false;
    value = byte == 1;
    return true;
  }
  bool get(std::filesystem::path &path) {
    std::string text;
    if (!get(text)) return false;
    path = std::move(text);
    return true;
  }
  template <List T> bool get(T &list) {
    Length length = 0;
    using Element = typename T::value_type;
    if (!get(length) || length > left_.size() / fewest<Element>() || length > memory_ / sizeof(Element)) return false;
    memory_ -= length * sizeof(Element);
    list.resize(length);
    for (auto &element : list)
      if (!get(element)) return false;
    return true;
  }
  template <typename T> bool get(std::optional<T> &value) {
    bool isThere = false;
    return get(isThere) && (!isThere || get(value.emplace()));
  }
  bool get(std::monostate & /*none*/) { return true; }
  template <typename... T> bool get(std::variant<T...> &one) {
    uint8_t index = 0;
    if (!get(index)) return false;
    uint8_t i = 0;
    return ((i++ == index && get(one.template emplace<T>())) || ...);
  }
  template <Structure T> bool get(T &structure) {
    return std::apply([&](auto... member) { return (get(structure.*member) && ...); }, membersOf<T>);
  }

  bool atEnd() const { return left_.empty(); }

private:
  // The fewest bytes that a value takes, so that a short message cannot claim a long list.
  template <typename T> static constexpr size_t fewest() {
    if constexpr (Structure<T>)
      return std::apply([](auto... member) { return (fewestOf(member) + ...); }, membersOf<T>);
    else if constexpr (List<T>)
      return sizeof(Length);
    else if constexpr (isNumber<T>)
      return sizeof(T);
    else
      return 1; // which of several types, or whether a value is there
  }
  template <typename T, typename Member> static constexpr size_t fewestOf(Member T::* /*member*/) {
    return fewest<Member>();
  }

  std::string_view left_;
  size_t memory_ = mostMemory; ///< that may still be taken
};

template <typename T> std::optional<T> valueIn(std::string_view content) {
  std::optional<T> value(std::in_place);
  Reader reader(content);
  if (content.size() > mostContent || !reader.get(*value) || !reader.atEnd()) value.reset();
  return value;
}

} // namespace

std::string messageOf(const Request &request) {
  Writer writer;
  writer.put(request);
  return std::move(writer).message();
}

std::string messageOf(const Answer &answer) {
  Writer writer;
  writer.put(answer.value);
  return std::move(writer).message();
}

std::optional<Request> requestIn(std::string_view content) { return valueIn<Request>(content); }

std::optional<Answer> answerIn(std::string_view content) {
  std::optional<Answer> answer;
  if (auto value = valueIn<decltype(Answer::value)>(content)) answer.emplace(Answer{std::move(*value)});
  return answer;
}

} // namespace host
