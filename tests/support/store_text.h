#pragma once

#include "norva/file_util.h"

#include <cstdio>
#include <string>

namespace norva::test {

inline std::string ValueText(int dataType, float single, double number, int integer, std::string const& text) {
    char digits[32] = "*";
    switch (dataType) {
        case DataType::kFloat:
            if (single != kNoDataFloat) std::snprintf(digits, sizeof digits, "%.8g", static_cast<double>(single));
            return digits;
        case DataType::kDouble:
            if (number != kNoDataDouble) std::snprintf(digits, sizeof digits, "%.17g", number);
            return digits;
        case DataType::kText:
            return "'" + text + "'";
        case DataType::kShort:
            return integer == kNoDataShort ? digits : std::to_string(integer);
        default:
            return integer == kNoDataLong ? digits : std::to_string(integer);
    }
}

/// A store as text: a line for each channel, "name (units): line[value value] line[value]", "*" for no-data.
inline std::string StoreText(std::string const& path) {
    CNorvaFileUtil store;
    if (store.SetFileName(path, kReopenStore, nullptr) == 0) return "no store";
    std::string all;
    for (int channel = 0; channel < store.ChannelCount; ++channel) {
        all += store.GetChannelFullName(channel) + ":";
        for (int profile = 0; profile < store.ProfileCount; ++profile) {
            std::string name, text;
            long count = 0, longInteger = 0;
            int flag = 0, integer = 0, dataType = 0;
            float single = 0;
            double number = 0;
            store.GetProfileInfo(profile, name, count, flag);
            all += " " + name + "[";
            for (long j = 0; j < count; ++j) {
                store.GetData(channel, profile, j, single, number, integer, longInteger, text, dataType);
                all += (j > 0 ? " " : "") + ValueText(dataType, single, number, integer, text);
            }
            all += "]";
        }
        all += "\n";
    }
    return all;
}

}  // namespace norva::test
