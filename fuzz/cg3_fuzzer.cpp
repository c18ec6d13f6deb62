#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(cg3) {
    if (fuzz::Import({.run = RunCG3Import, .fileName = "in.dmp"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
