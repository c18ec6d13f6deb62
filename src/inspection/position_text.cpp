#include "inspection/position_text.h"

#include "platform/text.h"

#include <cmath>

namespace norva {

namespace {

char LetterOf(char c) {
    switch (c) {
        case 'N':
        case 'n':
            return 'N';
        case 'S':
        case 's':
            return 'S';
        case 'E':
        case 'e':
            return 'E';
        case 'W':
        case 'w':
            return 'W';
        default:
            return '\0';
    }
}

struct Sign {
    std::string_view text;
    int part;  ///< 1 degrees, 2 minutes, 3 seconds
};

/// Longer ones first; the degree sign and ordinal also as Latin-1 writes them.
constexpr Sign kSigns[] = {{"\xE2\x80\xB3", 3},
                           {"\xE2\x80\x9D", 3},
                           {"\xE2\x80\xB2", 2},
                           {"\xE2\x80\x99", 2},
                           {"\xC2\xB0", 1},
                           {"\xC2\xBA", 1},
                           {"''", 3},
                           {"\xB0", 1},
                           {"\xBA", 1},
                           {"\"", 3},
                           {"'", 2},
                           {"d", 1}};

int TakeSign(std::string_view& text) {
    for (Sign const& sign : kSigns) {
        if (!text.starts_with(sign.text)) continue;
        text.remove_prefix(sign.text.size());
        return sign.part;
    }
    return 0;
}

struct Part {
    double value = 0;
    int digits = 0;
    int decimals = 0;
};

bool TakePart(std::string_view& text, bool readsFraction, Part& part) {
    part = {};
    std::size_t at = 0;
    for (; at < text.size() && IsDigit(text[at]) && at < 9; ++at) part.value = part.value * 10 + (text[at] - '0');
    part.digits = static_cast<int>(at);
    if (at == 0) return false;
    if (readsFraction && at + 1 < text.size() && (text[at] == '.' || text[at] == ',') && IsDigit(text[at + 1])) {
        double unit = 1;
        double fraction = 0;
        for (++at; at < text.size() && IsDigit(text[at]); ++at) {
            if (++part.decimals > 15) return false;
            fraction = fraction * 10 + (text[at] - '0');
            unit *= 10;
        }
        part.value += fraction / unit;
    }
    text.remove_prefix(at);
    return true;
}

bool Sum(Part const (&parts)[3], int count, PositionText& position) {
    for (int i = 1; i < count; ++i) {
        if (parts[i].value >= 60) return false;
        if (parts[i - 1].decimals > 0) return false;
    }
    if (parts[0].value > 360) return false;
    position.degrees = parts[0].value + parts[1].value / 60 + parts[2].value / 3600;
    position.decimals = parts[count - 1].decimals;
    return true;
}

/// "15.27.08.20": degrees, minutes, seconds and the fraction of a second.
bool ReadDotted(std::string_view text, PositionText& position) {
    Part parts[3];
    for (int i = 0; i < 3; ++i) {
        if (!TakePart(text, i == 2, parts[i]) || (i > 0 && parts[i].digits != 2)) return false;
        if (i == 2) break;
        if (!text.starts_with('.')) return false;
        text.remove_prefix(1);
    }
    return text.empty() && parts[2].decimals > 0 && Sum(parts, 3, position);
}

}  // namespace

bool UnpackMinutes(double packed, double& degrees) {
    double const magnitude = std::fabs(packed);
    double const whole = std::floor(magnitude / 100);
    double const minutes = magnitude - whole * 100;
    if (minutes >= 60 || whole > 180) return false;
    degrees = std::copysign(whole + minutes / 60, packed);
    return true;
}

bool ReadPositionText(std::string_view text, bool readsBlanks, PositionText& position) {
    position = {};
    if (text.size() < 3 || text.size() > 40) return false;
    if (char const letter = LetterOf(text.front()); letter != '\0') {
        position.letter = letter;
        text = TrimLeft(text.substr(1));
    } else if (char const last = LetterOf(text.back()); last != '\0') {
        position.letter = last;
        text = TrimRight(text.substr(0, text.size() - 1));
    }
    bool isNegative = false;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        isNegative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty() || !IsDigit(text.front())) return false;
    bool isRead = ReadDotted(text, position);
    if (!isRead) {
        Part parts[3];
        int count = 0;
        int signs = 0;
        bool hasBlank = false;
        while (!text.empty()) {
            if (count == 3 || !TakePart(text, true, parts[count++])) return false;
            std::string_view const rest = TrimLeft(text);
            bool const isSpaced = rest.size() != text.size();
            text = rest;
            if (int const sign = TakeSign(text); sign != 0) {
                if (sign != count) return false;
                ++signs;
                text = TrimLeft(text);
            } else if (text.starts_with(':') && position.letter != '\0') {
                text.remove_prefix(1);
                ++signs;
            } else if (!text.empty()) {
                if (!isSpaced) return false;
                hasBlank = true;
            }
        }
        if (hasBlank && !readsBlanks) return false;
        if (signs == 0 && position.letter == '\0' && (count != 3 || parts[1].digits > 2)) return false;
        if (count == 1 && signs == 0) {
            // A letter and nothing else: names of stations look so, too.
            if (parts[0].decimals < 2) return false;
            if (parts[0].digits >= 4) {
                position.isPacked = true;
                position.decimals = parts[0].decimals;
                isRead = UnpackMinutes(parts[0].value, position.degrees);
            }
        }
        if (!isRead && (position.isPacked || !Sum(parts, count, position))) return false;
    }
    if (position.letter == 'S' || position.letter == 'W') isNegative = !isNegative;
    if (isNegative) position.degrees = -position.degrees;
    bool const isLatitude = position.letter == 'N' || position.letter == 'S';
    return std::fabs(position.degrees) <= (isLatitude ? 90 : 360);
}

}  // namespace norva
