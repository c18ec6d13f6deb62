#pragma once

#include <string>
#include <string_view>

/// JSON values as text.
namespace norva {

/// Appends `text` as a JSON string. Bytes that are no UTF-8 become U+FFFD.
void AppendJsonText(std::string& out, std::string_view text);
/// Appends a number with every digit it needs to read back the same; null for what JSON has no number for.
void AppendJsonNumber(std::string& out, double value);
/// Length of the well-formed UTF-8 sequence at the start of `text`; 0 when there is none, and then `bad` is the
/// number of bytes that one replacement character stands for.
std::size_t Utf8Length(std::string_view text, std::size_t& bad);

}  // namespace norva
