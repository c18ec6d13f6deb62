#include <cstdlib>
#include <fstream>

/// A help viewer that notes what it is asked to show.
extern "C" __attribute__((visibility("default"))) int HtmlHelp14(char const* topic, unsigned command) {
    std::ofstream(std::getenv("NORVA_TEST_VIEWER_LOG"), std::ios::app) << command << ' ' << topic << '\n';
    return 1;
}
