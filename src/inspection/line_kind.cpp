#include "inspection/line_kind.h"

#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::size_t kLongestMarker = 80;

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Up to four letters, then digits with ".", ":" and "-" between them, and perhaps where it lies: "100N".
bool IsLabel(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && at < 4 && IsLetter(text[at])) ++at;
    bool hasDigit = false;
    if (text.size() > at + 1 && IsDigit(text[text.size() - 2]) &&
        std::string_view("NSEWnsew").find(text.back()) != std::string_view::npos) {
        text.remove_suffix(1);
    }
    for (; at < text.size(); ++at) {
        if (IsDigit(text[at])) {
            hasDigit = true;
        } else if (text[at] != '.' && text[at] != ':' && text[at] != '-') {
            return false;
        }
    }
    return hasDigit;
}

/// The label behind the word, with what may stand between and around them taken off.
std::string_view LabelBehind(std::string_view rest) {
    std::size_t const first = rest.find_first_not_of(" \t:=#,;|\"'");
    if (first == std::string_view::npos) return {};
    rest.remove_prefix(first);
    return rest.substr(0, rest.find_last_not_of(" \t,;|\"'") + 1);
}

bool StartsWithWord(std::string_view line, std::string_view upper) {
    if (line.size() <= upper.size()) return false;
    for (std::size_t i = 0; i < upper.size(); ++i) {
        if ((IsLetter(line[i]) ? static_cast<char>(line[i] & ~0x20) : line[i]) != upper[i]) return false;
    }
    return true;
}

}  // namespace

bool IsRule(std::string_view line) {
    line = Trim(line);
    if (line == "==" || line == "---") return true;
    std::size_t run = 0;
    std::size_t longest = 0;
    char previous = '\0';
    for (char const c : line) {
        switch (c) {
            case '=':
            case '-':
            case '_':
            case '*':
            case '~':
            case '+':
                run = c == previous ? run + 1 : 1;
                longest = std::max(longest, run);
                break;
            case ' ':
            case '\t':
                break;
            default:
                return false;
        }
        previous = c;
    }
    return longest >= 4;
}

bool IsComment(std::string_view line, std::span<std::string const> marks) {
    std::size_t const first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos) return false;
    line.remove_prefix(first);
    return std::any_of(marks.begin(), marks.end(), [&](std::string const& mark) { return line.starts_with(mark); });
}

std::span<std::string_view const> UsualMarkerWords() {
    // What begins another word stands behind it.
    static constexpr std::string_view kWords[] = {"LINE",     "LINEA", "LINHA",   "TIE",     "FLIGHT", "LI",
                                                  "LN",       "L",     "PROFILE", "PROFIL",  "PERFIL", "T",
                                                  "TRAVERSE", "LIGNE", "SECTION", "SEGMENT", "TRACE"};
    return kWords;
}

bool IsMarker(std::string_view line, std::span<std::string const> words, std::string_view& label) {
    line = Trim(line);
    if (line.size() < 2 || line.size() > kLongestMarker) return false;
    if (line.front() == '"' && line.back() == '"') line = Trim(line.substr(1, line.size() - 2));
    if (line.starts_with('>')) {
        label = LabelBehind(line.substr(1));
        return IsLabel(label);
    }
    if (line.empty() || words.empty()) return false;
    for (std::string const& word : words) {
        if (!StartsWithWord(line, word)) continue;
        label = LabelBehind(line.substr(word.size()));
        if (IsLabel(label) && (label.data() != line.data() + word.size() || !IsLetter(label.front()))) return true;
    }
    return false;
}

bool LooksLikeMarker(std::string_view line, std::string_view& word, std::string_view& label) {
    line = Trim(line);
    if (line.size() > kLongestMarker) return false;
    std::size_t letters = 0;
    while (letters < line.size() && IsLetter(line[letters])) ++letters;
    if (letters < 2 || letters > 16 || letters == line.size() || IsDigit(line[letters])) return false;
    word = line.substr(0, letters);
    label = LabelBehind(line.substr(letters));
    return IsLabel(label);
}

}  // namespace norva
