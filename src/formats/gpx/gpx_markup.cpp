#include "formats/gpx/gpx_markup.h"

#include "formats/column_text/text_line.h"
#include "formats/gpx/gpx_source.h"
#include "platform/text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

namespace norva {

namespace {

bool IsXmlCharacter(std::uint32_t code) {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code < 0xD800) ||
           (code >= 0xE000 && code < 0xFFFE) || (code >= 0x10000 && code < 0x110000);
}

/// The character that a numeric reference at the start of `text` ("&#233;", "&#xE9;") means, and the reference's
/// length in `length`; 0 when there is none.
std::uint32_t NumericReference(std::string_view text, std::size_t& length) {
    std::size_t at = 2;
    std::uint32_t base = 10;
    if (at < text.size() && text[at] == 'x') {
        base = 16;
        ++at;
    }
    std::size_t const firstDigit = at;
    std::uint32_t code = 0;
    for (; at < text.size(); ++at) {
        char const c = text[at];
        std::uint32_t digit = 0;
        if (c >= '0' && c <= '9') {
            digit = static_cast<std::uint32_t>(c - '0');
        } else if (base == 16 && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))) {
            digit = static_cast<std::uint32_t>((c | 0x20) - 'a') + 10;
        } else {
            break;
        }
        code = code * base + digit;
        if (code >= 0x110000) return 0;
    }
    if (at == firstDigit || at == text.size() || text[at] != ';' || !IsXmlCharacter(code)) return 0;
    length = at + 1;
    return code;
}

}  // namespace

std::string_view TagName(std::string_view text) {
    static constexpr CDelimiters nameEnds{" \t\n\v\f\r></"};
    std::size_t const start = text.size() > 1 && text[1] == '/' ? 2 : 1;
    std::size_t end = start;
    while (end < text.size() && !nameEnds.Has(text[end])) ++end;
    return text.substr(start, end - start);
}

std::string_view WithoutPrefix(std::string_view name) {
    return name.substr(name.rfind(':') + 1);
}

void AppendTag(std::string& out, std::string_view tag, bool loose) {
    if (tag.empty()) return;
    std::string_view const name = TagName(tag);
    auto const nameStart = static_cast<std::size_t>(name.data() - tag.data());
    out.append(tag.substr(0, nameStart)).append(WithoutPrefix(name));
    std::string_view const rest = tag.substr(nameStart + name.size());
    if (!loose) {
        out.append(rest);
        return;
    }
    char quote = 0;
    bool afterEquals = false;
    for (char const c : rest) {
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (IsBlank(c)) {
            if (afterEquals) continue;
        } else {
            if (c == '"' || c == '\'') quote = c;
            if (c == '=') {
                while (IsBlank(out.back())) out.pop_back();
            }
            afterEquals = c == '=';
        }
        out.push_back(c);
    }
}

void DecodeNumericReferences(std::string& text) {
    std::size_t from = text.find("&#");
    if (from == std::string::npos) return;
    std::string const original = text.substr(from);
    text.resize(from);
    std::string_view rest = original;
    while (!rest.empty()) {
        std::size_t length = 0;
        std::uint32_t const code = rest.starts_with("&#") ? NumericReference(rest, length) : 0;
        if (code != 0) {
            AppendUtf8(text, code);
        } else {
            length = std::min(rest.find("&#", 1), rest.size());
            text.append(rest.substr(0, length));
        }
        rest.remove_prefix(length);
    }
}

std::string DecodeNamedEntities(std::string_view text) {
    static constexpr std::pair<std::string_view, char> entities[] = {
        {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
    std::string decoded;
    while (!text.empty()) {
        auto const entity = std::find_if(std::begin(entities), std::end(entities),
                                         [text](auto const& candidate) { return text.starts_with(candidate.first); });
        bool const found = entity != std::end(entities);
        decoded.push_back(found ? entity->second : text.front());
        text.remove_prefix(found ? entity->first.size() : 1);
    }
    return decoded;
}

}  // namespace norva
