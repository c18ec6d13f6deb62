#pragma once

#include "platform/tokens.h"

#include <string_view>

/// Lines of column text: what kind each is, and its tokens.
namespace norva {

enum class LineKind {
    Empty,
    Comment,  ///< begins with "/" or "\"
    Marker,   ///< any other line that holds "LINE"
    Data,
};

/// Whether the line begins with "/" or "\".
inline bool IsCommentLine(std::string_view line) {
    return !line.empty() && (line.front() == '/' || line.front() == '\\');
}

/// Whether "LINE" stands anywhere in the text, in any case.
bool HoldsLineWord(std::string_view text);
/// The same, followed by a space, a tab or a line feed.
bool HoldsSpacedLineWord(std::string_view text);

/// Trims the line of white space at both ends and tells its kind.
LineKind ClassifyLine(std::string_view& line);

/// Delimiters of data rows: a CSV file's values may hold spaces.
inline constexpr CDelimiters kRowDelimiters{" ,\t\n"};
inline constexpr CDelimiters kCsvRowDelimiters{",\t\n"};

}  // namespace norva
