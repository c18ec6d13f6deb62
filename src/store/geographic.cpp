#include "norva/converters.h"
#include "store/sexagesimal.h"

#include <algorithm>
#include <array>

namespace norva {

// There is one template, so that its code makes no difference.

int CNorvaGeographic::GetDoubleData(std::string_view text, int /*templateFormat*/, double& value, int& decimals) const {
    if (ReadSexagesimal(text, '.', 3, value, decimals)) {
        return 1;
    }
    value = kNoDataDouble;
    return 0;
}

int CNorvaGeographic::GetString(double value, int /*templateFormat*/, int decimals, std::string& text) const {
    decimals = std::clamp(decimals, 0, kMaxSecondDecimals);
    SexagesimalParts parts;
    if (!SplitSexagesimal(value, 3600 * PowerOfTen(decimals), parts)) {
        text = "*";
        return 0;
    }
    std::array<char, 64> buffer;
    text.assign(buffer.data(), WriteSexagesimal(buffer.data(), parts, 1, '.', decimals));
    return 1;
}

}  // namespace norva
