#include "ui/json_text.h"

#include "platform/numbers.h"

#include <cmath>

namespace norva {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void AppendEscape(std::string& out, unsigned char byte) {
    constexpr char kHex[] = "0123456789abcdef";
    switch (byte) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\b':
            out += "\\b";
            return;
        case '\f':
            out += "\\f";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            break;
    }
    out += "\\u00";
    out += kHex[byte >> 4];
    out += kHex[byte & 15];
}

bool NeedsEscape(unsigned char byte) {
    return byte < 0x20 || byte == '"' || byte == '\\';
}

}  // namespace

std::size_t Utf8Length(std::string_view text, std::size_t& bad) {
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char const first = byte(0);
    bad = 1;
    if (first < 0x80) return 1;
    std::size_t length = 0;
    // The second byte's range rules out overlong forms, surrogates and what lies beyond the last code point.
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        if (first == 0xE0) low = 0xA0;
        if (first == 0xED) high = 0x9F;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        if (first == 0xF0) low = 0x90;
        if (first == 0xF4) high = 0x8F;
    } else {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || byte(i) < low || byte(i) > high) return 0;
        low = 0x80;
        high = 0xBF;
        bad = i + 1;
    }
    return length;
}

void AppendJsonText(std::string& out, std::string_view text) {
    out += '"';
    std::size_t plain = 0;  // start of what is copied as it stands
    std::size_t i = 0;
    while (i < text.size()) {
        auto const byte = static_cast<unsigned char>(text[i]);
        std::size_t bad = 1;
        std::size_t const length = Utf8Length(text.substr(i), bad);
        if (length > 0 && !NeedsEscape(byte)) {
            i += length;
            continue;
        }
        out.append(text, plain, i - plain);
        if (length == 0) {
            out += kReplacement;
            i += bad;
        } else {
            AppendEscape(out, byte);
            ++i;
        }
        plain = i;
    }
    out.append(text, plain, i - plain);
    out += '"';
}

void AppendJsonNumber(std::string& out, double value) {
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    std::size_t const start = out.size();
    AppendShortest(out, value);
    // Without a point it would read back as an integer, and minus zero would lose its sign.
    if (out.find_first_of(".e", start) == std::string::npos) out += ".0";
}

}  // namespace norva
