#include "target.h"

#include <cstdint>
#include <iostream>

namespace {

norva::fuzz::Target target = nullptr;

}  // namespace

/// The program's own name says which target it is: "fuzz_text".
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** argv) {
    std::string_view name = (*argv)[0];
    name.remove_prefix(name.rfind('/') + 1);
    name.remove_prefix(name.starts_with("fuzz_") ? 5 : 0);
    target = norva::fuzz::FindTarget(name);
    if (target == nullptr) {
        std::cerr << "no target " << name << "\n";
        return 1;
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (target == nullptr) norva::fuzz::Broken("no target");
    target({reinterpret_cast<char const*>(data), size});
    return 0;
}
