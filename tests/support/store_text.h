#pragma once

#include "norva/file_util.h"

#include <charconv>
#include <string>

namespace norva::test {

/// The shortest text that reads back as the same.
template <typename Float>
std::string NumberText(Float value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

/// "*" for no-data, texts in quotes.
inline std::string ValueText(int dataType, float single, double number, int integer, std::string const& text) {
    switch (dataType) {
        case DataType::kFloat:
            return single == kNoDataFloat ? "*" : NumberText(single);
        case DataType::kDouble:
            return number == kNoDataDouble ? "*" : NumberText(number);
        case DataType::kText:
            return "'" + text + "'";
        case DataType::kShort:
            return integer == kNoDataShort ? "*" : std::to_string(integer);
        default:
            return integer == kNoDataLong ? "*" : std::to_string(integer);
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
