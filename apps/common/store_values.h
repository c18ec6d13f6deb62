#pragma once

#include "norva/value_text.h"

#include <string>
#include <vector>

namespace norva {

/// Values of a store as the programs show them.
class CValuePrinter {
public:
    explicit CValuePrinter(CNorvaFileUtil& store, ValueDigits digits = ValueDigits::AsFormatted);

    /// The title and the values of a column, right-aligned, as the channel's formats say; "*" for no-data.
    void AppendTitle(std::string& out, int channel) const;
    void AppendCell(std::string& out, int channel, int profile, long location);
    /// The text of one value, "" when there is none. Lasts until the next call.
    std::string const& CellText(int channel, int profile, long location);
    /// A JSON value that reads back the same; no-data is null, an array is a list.
    void AppendJson(std::string& out, int channel, int profile, long location);

private:
    struct Channel {
        std::string title;
        int dataType = 0;
        int arraySize = 1;
        ValueFormat format;
        bool isArray = false;
    };

    void AppendElements(std::string& out, int channel, int profile, long location);

    CNorvaFileUtil& m_store;
    CValueText m_texts;
    StoreValue m_value;
    std::vector<Channel> m_channels;
    std::vector<double> m_elements;
    std::string m_cell;
};

}  // namespace norva
