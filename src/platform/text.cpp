#include "platform/text.h"

namespace norva {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

}  // namespace

std::string_view TrimLeft(std::string_view text) {
    std::size_t const first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

std::string_view TrimRight(std::string_view text) {
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::string_view Trim(std::string_view text) {
    return TrimRight(TrimLeft(text));
}

std::string_view TrimOf(std::string_view text, std::string_view characters) {
    std::size_t const first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(characters) + 1 - first);
}

void ToUpper(std::string_view text, std::string& out) {
    out.resize(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        out[i] = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
}

std::string ToUpper(std::string_view text) {
    std::string out;
    ToUpper(text, out);
    return out;
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    std::size_t begin = 0;
    for (std::size_t at = text.find(from); at != std::string_view::npos; at = text.find(from, begin)) {
        out.append(text.substr(begin, at - begin)).append(to);
        begin = at + from.size();
    }
    return out.append(text.substr(begin));
}

void AppendRightAligned(std::string& out, std::string_view text, std::size_t width) {
    if (text.size() < width) out.append(width - text.size(), ' ');
    out.append(text);
}

}  // namespace norva
