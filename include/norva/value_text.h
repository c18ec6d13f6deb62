#pragma once

#include "norva/api.h"
#include "norva/converters.h"
#include "norva/file_util.h"

#include <limits>
#include <string>
#include <string_view>

/// How the values of a store become text, the same for every writer and for what programs show.
namespace norva {

/// One value as CNorvaFileUtil::GetData gives it.
struct NORVA_API StoreValue {
    static constexpr long kNotGiven = std::numeric_limits<long>::min();

    int dataType = DataType::kSkipped;
    float single = 0;
    double number = 0;
    int integer = 0;
    long longInteger = kNotGiven;
    std::string text;

    /// False when the store gives no value there; its LastStatus() says whether that is a failure.
    bool Read(CNorvaFileUtil& store, int index, int profile, long location) {
        longInteger = kNotGiven;
        return store.GetData(index, profile, location, single, number, integer, longInteger, text, dataType) != 0;
    }
    bool IsFloating() const { return dataType == DataType::kFloat || dataType == DataType::kDouble; }
    /// The floating value, widened.
    double Floating() const { return dataType == DataType::kFloat ? static_cast<double>(single) : number; }
    /// The integer value: of kLong the long output, unless the store filled the other one alone.
    long Whole() const {
        return dataType == DataType::kLong && longInteger != kNotGiven ? longInteger : static_cast<long>(integer);
    }
    /// No-data. A text is never that.
    bool IsMissing() const;
};

/// A packed number of a column (CNorvaFileUtil::ReadColumn), widened; NaN for no-data, and for a text.
NORVA_API double PackedNumber(int dataType, char const* bytes);

/// How a channel's values are written.
struct NORVA_API ValueFormat {
    int displayFormat = DisplayFormat::kFixed;
    int templateFormat = -1;
    int decimals = 0;

    static ValueFormat Of(CNorvaFileUtil& store, int index);
    /// Values are written as a date, a time or a coordinate.
    bool HasTextForm() const {
        return displayFormat == DisplayFormat::kTime || displayFormat == DisplayFormat::kDate ||
               displayFormat == DisplayFormat::kGeographic;
    }
};

/// Appends a cell of comma-separated values (RFC 4180): in quotes where a comma, a quote, a line break or an outer
/// blank asks for them.
NORVA_API void AppendCsvCell(std::string& out, std::string_view text);

/// How many digits of a number are written.
enum class ValueDigits {
    AsFormatted,  ///< as the channel's format says
    Full,         ///< more where the value would not read back the same
};

/// Makes the texts. Costs no allocation once its memory has grown.
class NORVA_API CValueText {
public:
    explicit CValueText(ValueDigits digits = ValueDigits::AsFormatted) : m_digits(digits) {}

    /// Appends the text of a value: "*" for no-data, a text as it stands.
    void Append(std::string& out, ValueFormat const& format, StoreValue const& value) {
        Write(out, format, value, false);
    }
    /// The same; false when the text reads back as another value.
    bool AppendAndCheck(std::string& out, ValueFormat const& format, StoreValue const& value) {
        return Write(out, format, value, true);
    }

private:
    bool Write(std::string& out, ValueFormat const& format, StoreValue const& value, bool isChecked);
    void AppendTextForm(std::string& out, ValueFormat const& format, double value);
    /// Whether what stands in `out` from `begin` on reads back as the value.
    bool ReadsBack(std::string const& out, std::size_t begin, ValueFormat const& format, StoreValue const& value);
    bool AppendFullDigits(std::string& out, std::size_t begin, ValueFormat const& format, StoreValue const& value);

    ValueDigits m_digits;
    CNorvaDateTime m_dateTime;
    CNorvaGeographic m_geographic;
    std::string m_text;
};

}  // namespace norva
