#include <cstdlib>

namespace {

/// Set before main, which makes the application: these tests have windows always, and need no display for them.
[[maybe_unused]] bool const isSet = [] {
    setenv("NORVA_TEST_WINDOWS", "1", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    return true;
}();

}  // namespace
