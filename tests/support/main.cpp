#include <gtest/gtest.h>

#ifdef NORVA_TEST_WITH_WINDOWS
#include "scripted_windows.h"
#include "support/play.h"

#include <QApplication>

#include <memory>
#endif

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>

/// With NORVA_TEST_WINDOWS set, scripts are played on real windows. With NORVA_TEST_LOCALE set, all tests of the
/// program run under that locale (a decimal comma, say).
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (char const* name = std::getenv("NORVA_TEST_LOCALE")) {
        if (std::setlocale(LC_ALL, name) == nullptr) {
            std::cerr << "no locale " << name << "\n";
            return 2;
        }
        std::locale::global(std::locale(name));
    }
#ifdef NORVA_TEST_WITH_WINDOWS
    std::unique_ptr<QApplication> application;
    if (std::getenv("NORVA_TEST_WINDOWS") != nullptr) {
        application = std::make_unique<QApplication>(argc, argv);
        norva::SetPlayToolkit([](std::vector<norva::ScriptAnswer> answers, bool defaults, norva::CTrace* trace) {
            return std::make_unique<norva::CScriptedWindows>(std::move(answers), defaults, trace);
        });
    }
#endif
    return RUN_ALL_TESTS();
}
