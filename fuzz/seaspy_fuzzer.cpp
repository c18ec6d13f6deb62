#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(seaspy) {
    if (fuzz::Import({.run = RunSeaSpyImport, .fileName = "in.mag"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
