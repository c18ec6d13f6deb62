#pragma once

#include <locale>

namespace norva::test {

/// For tests that write and read numbers by the C library as a reference: it follows the locale, which the library
/// under test never does.
class CClassicLocale {
public:
    CClassicLocale() : m_before(std::locale::global(std::locale::classic())) {}
    CClassicLocale(CClassicLocale const&) = delete;
    CClassicLocale& operator=(CClassicLocale const&) = delete;
    ~CClassicLocale() { std::locale::global(m_before); }

private:
    std::locale m_before;
};

}  // namespace norva::test
