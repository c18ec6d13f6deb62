#include "formats/seaspy/sea_spy_format.h"
#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(seaspy) {
    if (fuzz::Import({.format = kSeaSpyFormat, .fileName = "in.mag"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
