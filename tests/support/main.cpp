#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>

/// With NORVA_TEST_LOCALE set, all tests of the program run under that locale (a decimal comma, say).
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (char const* name = std::getenv("NORVA_TEST_LOCALE")) {
        if (std::setlocale(LC_ALL, name) == nullptr) {
            std::cerr << "no locale " << name << "\n";
            return 2;
        }
        std::locale::global(std::locale(name));
    }
    return RUN_ALL_TESTS();
}
