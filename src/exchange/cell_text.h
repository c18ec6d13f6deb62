#pragma once

#include "norva/converters.h"
#include "norva/file_util.h"

#include <cstddef>
#include <string>

namespace norva {

/// One value as CNorvaFileUtil::GetData gives it.
struct StoreValue {
    int dataType = 0;
    float single = 0;
    double number = 0;
    int integer = 0;
    long longInteger = 0;
    std::string text;

    /// False when the store gives no value there.
    bool Read(CNorvaFileUtil& store, int index, int profile, long location) {
        return store.GetData(index, profile, location, single, number, integer, longInteger, text, dataType) != 0;
    }
    bool IsFloating() const { return dataType == DataType::kFloat || dataType == DataType::kDouble; }
    /// The floating value, widened.
    double Floating() const { return dataType == DataType::kFloat ? static_cast<double>(single) : number; }
    bool IsMissing() const;
};

/// What an exporter needs to know of a channel, asked for once.
struct ExportChannel {
    int position = 0;  ///< in the store's channel order
    int index = 0;     ///< as the store's calls take it
    int displayFormat = 0;
    int templateFormat = -1;
    int decimals = 0;

    static ExportChannel Of(CNorvaFileUtil& store, int position);
    /// Values are shown as a date, a time or a coordinate.
    bool HasTextForm() const;
};

/// Makes the text of a cell, the same in every text output.
class CCellText {
public:
    /// Appends the text of a value: "*" for no-data.
    void Append(std::string& out, ExportChannel const& channel, StoreValue const& value);
    /// Appends a date, a time or a coordinate.
    void AppendTextForm(std::string& out, ExportChannel const& channel, double value);

private:
    CNorvaDateTime m_dateTime;
    CNorvaGeographic m_geographic;
    std::string m_text;
};

}  // namespace norva
