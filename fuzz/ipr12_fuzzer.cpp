#include "formats/ipr12/ipr12_format.h"
#include "harness.h"

using namespace norva;

NORVA_FUZZ_TARGET(ipr12) {
    if (fuzz::Import({.format = kIpr12Format, .fileName = "in.dmp"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}
