#include "formats/column_text/header_labels.h"

#include "norva/converters.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

std::string HeaderDelimiters::Text() const {
    std::string text = "\n";
    if (comma) text += ',';
    if (tab) text += '\t';
    if (semicolon) text += ';';
    if (space) text += ' ';
    if (other) text += otherText;
    return text;
}

namespace {

/// The line without what only marks it as a comment, and with blanks for hyphens when these separate.
std::string HeaderText(std::string_view line, bool readsHyphens) {
    std::string text(line);
    if (readsHyphens) std::replace(text.begin(), text.end(), '-', ' ');
    text.erase(0, std::min(text.find_first_not_of(" \\/"), text.size()));
    text.erase(TrimRight(text).size());
    return text;
}

}  // namespace

std::vector<std::string> SplitHeaderLine(std::string_view line, std::size_t count, HeaderDelimiters const& delimiters,
                                         bool readsHyphens) {
    std::string const text = HeaderText(line, readsHyphens);
    std::vector<std::string_view> parts;
    GetTokens(text, parts, delimiters.Text());
    std::size_t const colon = text.find(':');
    if (parts.size() != count && colon != std::string::npos) {
        GetTokens(std::string_view(text).substr(colon + 1), parts, delimiters.Text());
    }
    std::vector<std::string> labels;
    if (parts.size() == count) {
        for (std::string_view const part : parts) labels.emplace_back(TrimOf(part, "\""));
    }
    return labels;
}

std::size_t CountHeaderLabels(std::string_view line, HeaderDelimiters const& delimiters, bool readsHyphens) {
    std::string const text = HeaderText(line, readsHyphens);
    std::vector<std::string_view> parts;
    GetTokens(text, parts, delimiters.Text());
    return parts.size();
}

void SplitNameAndUnits(std::string_view label, NorvaChannelStruct& column) {
    std::vector<std::string_view> parts;
    GetTokens(label, parts, ":");
    if (parts.size() >= 2) {
        column.name = Trim(parts[0]);
        column.units = Trim(parts[1]);
        return;
    }
    GetTokens(label, parts, "(");
    column.name = parts.empty() ? std::string_view() : Trim(parts[0]);
    if (parts.size() < 2) return;
    std::size_t const closing = parts[1].find(')');
    if (closing != std::string_view::npos) column.units = Trim(parts[1].substr(0, closing));
}

}  // namespace norva
