#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace norva::fuzz {

/// Does with any bytes what a person could have done with a file that holds them; aborts where a law does not hold.
using Target = void (*)(std::string_view bytes);

struct NamedTarget {
    std::string_view name;  ///< of its seeds in fuzz/corpus, too
    Target run;
};

/// All targets of the program.
inline std::vector<NamedTarget>& Targets() {
    static std::vector<NamedTarget> targets;
    return targets;
}

struct TargetEntry {
    TargetEntry(std::string_view name, Target run) { Targets().push_back({name, run}); }
};

/// The target of that name, or null.
inline Target FindTarget(std::string_view name) {
    for (NamedTarget const& target : Targets()) {
        if (target.name == name) return target.run;
    }
    return nullptr;
}

/// Ends the program, with what does not hold on standard error.
[[noreturn]] void Broken(std::string_view law);

}  // namespace norva::fuzz

#define NORVA_FUZZ_TARGET(NAME)                                     \
    static void NAME(std::string_view bytes);                       \
    static norva::fuzz::TargetEntry const NAME##Entry(#NAME, NAME); \
    static void NAME(std::string_view bytes)
