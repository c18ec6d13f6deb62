#include "formats/tki/tki_format.h"
#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(tki) {
    if (fuzz::Import({.format = kTkiFormat, .fileName = "in.p01"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
