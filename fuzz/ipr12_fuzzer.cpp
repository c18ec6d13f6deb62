#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(ipr12) {
    if (fuzz::Import({.run = RunIpr12Import, .fileName = "in.dmp"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
