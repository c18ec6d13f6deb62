#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Lines of text in cells.
namespace norva {

struct SplitRule {
    char separator = ',';  ///< ' ' for runs of blanks and tabs, '\0' for one cell per line
    char quote = '\0';
    bool backslashQuote = false;
    bool doublesQuotes = true;  ///< two quotes inside of quotes stand for one
    int plainQuote = 0;         ///< this opening quote, from 1, is an ordinary character
};

struct CellPart {
    std::string_view text;  ///< without the quotes around it and the blanks outside of them
    bool isQuoted = false;
    bool isEscaped = false;  ///< quotes inside are still doubled or behind a backslash
};

/// Replaces `parts`; the views last as long as `line`. True when a quote opens the last part and none closes it. A
/// quote that no separator and no end of the line follows is an ordinary character.
bool SplitLine(std::string_view line, SplitRule const& rule, std::vector<CellPart>& parts);

/// The text of a part with its quotes as they are meant; `buffer` holds it where it differs.
std::string_view PlainText(CellPart const& part, SplitRule const& rule, std::string& buffer);

}  // namespace norva
