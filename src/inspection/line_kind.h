#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Lines of a text file that are no rows: comments, rules, rows that start a line of the survey.
namespace norva {

/// Whether the line is made of "=", "-", "_", "*", "~", "+" and blanks, with four of them in a row ("==" and "---"
/// alone count as well).
bool IsRule(std::string_view line);
/// Whether the line begins with one of the marks, after blanks.
bool IsComment(std::string_view line, std::span<std::string const> marks);

/// Words that start a line of the survey in most files, upper case.
std::span<std::string_view const> UsualMarkerWords();
/// Whether the line is one of the words and one label, and nothing else, or "> label".
bool IsMarker(std::string_view line, std::span<std::string const> words, std::string_view& label);
/// The same for any word; what comes twice or more may be a marker that nobody told of.
bool LooksLikeMarker(std::string_view line, std::string_view& word, std::string_view& label);

}  // namespace norva
