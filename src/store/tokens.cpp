#include "norva/converters.h"

#include <array>
#include <cstddef>

namespace norva {

void GetTokens(std::string_view text, std::vector<std::string_view>& tokens, std::string_view delimiters) {
    std::array<bool, 256> isDelimiter{};
    for (char const c : delimiters) {
        isDelimiter[static_cast<unsigned char>(c)] = true;
    }
    tokens.clear();
    char const* at = text.data();
    char const* const end = at + text.size();
    for (;;) {
        while (at != end && isDelimiter[static_cast<unsigned char>(*at)]) {
            ++at;
        }
        if (at == end) {
            return;
        }
        char const* const first = at;
        while (at != end && !isDelimiter[static_cast<unsigned char>(*at)]) {
            ++at;
        }
        tokens.emplace_back(first, static_cast<std::size_t>(at - first));
    }
}

}  // namespace norva
