#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(tki) {
    if (fuzz::Import({.run = RunTkiImport, .fileName = "in.p01"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
