#include "formats/cg3/cg3_format.h"
#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(cg3) {
    if (fuzz::Import({.format = kCG3Format, .fileName = "in.dmp"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
