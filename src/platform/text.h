#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// Byte-string helpers. Only ASCII letters change case; bytes above 127 pass through.
namespace norva {

/// White space: space, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
std::string_view TrimLeft(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string_view Trim(std::string_view text);
/// Removes any of `characters` at both ends.
std::string_view TrimOf(std::string_view text, std::string_view characters);
std::string ToUpper(std::string_view text);
/// Upper-cases `text` into `out`, reusing its memory.
void ToUpper(std::string_view text, std::string& out);
inline bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}
/// Every occurrence of `from` replaced by `to`.
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);
/// `text` right-aligned in `width` characters; longer texts whole.
void AppendRightAligned(std::string& out, std::string_view text, std::size_t width);

struct TextField {
    std::string_view text;
    std::size_t width = 0;
};
/// Every text right-aligned in its width, one after the other. Faster than one call a field.
void AppendRightAligned(std::string& out, std::span<TextField const> fields);

}  // namespace norva
