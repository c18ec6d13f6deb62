#pragma once

#include <string>
#include <string_view>

/// Tags and character references of GPX text.
namespace norva {

/// The element name, prefix included, of the tag at the start of `text`.
std::string_view TagName(std::string_view text);
std::string_view WithoutPrefix(std::string_view name);
/// Appends a tag without its prefix and, when `loose`, without the blanks around each "=" outside quotes.
void AppendTag(std::string& out, std::string_view tag, bool loose);
/// Puts the characters that are meant in the place of numeric references ("&#233;", "&#xE9;"). What means none that
/// XML allows stays as it is.
void DecodeNumericReferences(std::string& text);
/// The same for the five references by name ("&amp;").
std::string DecodeNamedEntities(std::string_view text);

}  // namespace norva
