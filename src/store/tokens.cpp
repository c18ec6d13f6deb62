#include "norva/converters.h"

namespace norva {

namespace {

/// One bit a byte value.
class CByteSet {
public:
    explicit CByteSet(std::string_view bytes) {
        for (char const c : bytes) m_bits[Word(c)] |= Bit(c);
    }
    bool Has(char c) const { return (m_bits[Word(c)] & Bit(c)) != 0; }

private:
    static std::size_t Word(char c) { return static_cast<unsigned char>(c) / 64; }
    static std::uint64_t Bit(char c) { return 1ULL << (static_cast<unsigned char>(c) % 64); }

    std::uint64_t m_bits[4] = {};
};

}  // namespace

void GetTokens(std::string_view text, std::vector<std::string_view>& tokens, std::string_view delimiters) {
    tokens.clear();
    CByteSet const set(delimiters);
    std::size_t i = 0;
    while (true) {
        while (i < text.size() && set.Has(text[i])) ++i;
        if (i == text.size()) return;
        std::size_t const begin = i;
        while (i < text.size() && !set.Has(text[i])) ++i;
        tokens.push_back(text.substr(begin, i - begin));
    }
}

}  // namespace norva
