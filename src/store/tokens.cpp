#include "platform/tokens.h"

#include "norva/converters.h"

namespace norva {

void GetTokens(std::string_view text, std::vector<std::string_view>& tokens, std::string_view delimiters) {
    GetTokens(text, tokens, CDelimiters(delimiters));
}

}  // namespace norva
