#pragma once

#include "norva/file_util.h"

#include <cstdlib>
#include <string>
#include <vector>

namespace norva::fuzz {

/// Aborts unless every value that the store describes can be read.
inline void ReadWholeStore(std::string const& path) {
    CNorvaFileUtil store;
    if (store.SetFileName(path, kReopenStore, nullptr) == 0) std::abort();
    std::vector<char> values;
    for (int channel = 0; channel < store.ChannelCount; ++channel) {
        for (int profile = 0; profile < store.ProfileCount; ++profile) {
            long const count = store.GetProfileLocationNum(profile, 0);
            values.resize(static_cast<std::size_t>(count) * store.GetChannelValueSize(channel));
            if (store.ReadColumn(channel, profile, 0, count, values.data()) == 0) std::abort();
        }
    }
}

}  // namespace norva::fuzz
