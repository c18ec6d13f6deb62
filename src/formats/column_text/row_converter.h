#pragma once

#include "exchange/column_files.h"
#include "exchange/row_report.h"
#include "formats/column_text/plain_decimal.h"
#include "formats/column_text/text_line.h"
#include "norva/converters.h"
#include "norva/values.h"

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Turns the values of data rows into packed store values, one column file a column.
class CRowConverter {
public:
    /// How a source writes what is no number.
    struct Forms {
        // A date as a decimal year and a time in hours; null: by the store's converters and the column's template.
        double (*date)(std::string_view text) = nullptr;
        double (*time)(std::string_view text) = nullptr;
        bool upperCase = true;  ///< texts are stored in upper case
    };

    /// What is referred to has to outlive the converter. `columns` are the settings of all columns, skipped ones too.
    CRowConverter(std::vector<NorvaChannelStruct> const& columns, CDelimiters const& delimiters, Forms const& forms,
                  CNorvaDateTime const& dateTime, CNorvaGeographic const& geographic, CColumnFiles& files,
                  CRowReport& report);

    /// Converts a whole row; values that it lacks are missing, surplus ones are ignored. `beginsEmpty` says that a tab
    /// before the row was taken off. False after a write failure.
    bool Row(std::string_view line, bool beginsEmpty = false);
    /// Whether a line may be a row: it has as many values as there are columns and a number among them, or is made of
    /// numbers for the most part.
    bool ReadsAsRow(std::string_view line) const;
    /// Converts one value of one column (nothing for a skipped one). False after a write failure.
    bool Value(int column, std::string_view token);
    /// The row has no value for the column.
    bool Absent(int column);

    // What was read already; `token` is how the row writes it. False after a write failure.

    /// A number, a date in years, a time in hours, degrees.
    bool Number(int column, double value, std::string_view token);
    bool Text(int column, std::string_view token);
    /// A mark for a missing value.
    bool Missing(int column, std::string_view token);
    /// Stored as missing, and reported.
    bool Unreadable(int column, std::string_view token);

    /// The rows from now on belong to another survey line.
    void StartLine();
    /// Completes the report's channels by their ranges.
    void Finish();

private:
    enum class Kind { Skipped, Float, Double, Long, Short, Text, Date, Time, OwnDate, OwnTime, Geographic };
    struct Plan {
        Kind kind = Kind::Skipped;
        int column = 0;
        int templateFormat = 0;
        std::size_t width = 0;   ///< of a text, in characters
        bool isOrdered = false;  ///< values below the one before are to be noted
        std::uint64_t exactDigits = std::numeric_limits<std::uint64_t>::max();  ///< below, no digit is rounded
        std::uint64_t rounded = 0;  ///< values without a place of their own in the report
        bool keepsPlaces = true;    ///< of rounded values
        double range = 0;           ///< the largest value that is not too large, which stands for no-data
        double previous = -std::numeric_limits<double>::infinity();
        double minimum = std::numeric_limits<double>::infinity();
        double maximum = -std::numeric_limits<double>::infinity();
        // Values from `low` to `high` are known to be in range; an empty range when every value is to be examined.
        double low = std::numeric_limits<double>::infinity();
        double high = -std::numeric_limits<double>::infinity();
    };

    static bool IsNumber(Kind kind) { return kind >= Kind::Float && kind <= Kind::Short; }
    static Plan PlanFor(NorvaChannelStruct const& settings, int column, Forms const& forms);

    static bool IsOrderedChannel(NorvaChannelStruct const& settings, Kind kind);

    bool PutToken(Plan& plan, std::string_view token);
    bool PutScanned(Plan& plan, std::string_view token, std::string_view written);
    void CheckRounding(Plan& plan, PlainDecimal const& number, std::string_view token);
    bool PutConverted(Plan& plan, bool isRead, double value, std::string_view token);
    bool PutNumber(Plan& plan, double value, std::string_view token);
    bool Store(Plan const& plan, double value, std::string_view token);
    bool StoreWhole(Plan const& plan, double value, std::string_view token);
    bool PutDouble(Plan const& plan, double value);
    bool StoreMissing(Plan const& plan);
    bool PutText(Plan const& plan, std::string_view token);
    bool PutMissing(Plan const& plan);
    bool PutAbsent(Plan& plan);
    /// Notes what is to be said of a value outside what was seen so far.
    void Examine(Plan& plan, double value, std::string_view token);
    void CheckRowEnd(char const* next, char const* end);
    void NoteRow(std::string_view line, bool isShifted);

    std::vector<Plan> m_plans;
    std::size_t m_rowPlans = 0;  ///< plans up to the last column that is not skipped
    CDelimiters const& m_delimiters;
    Forms m_forms;
    CNorvaDateTime const& m_dateTime;
    CNorvaGeographic const& m_geographic;
    CColumnFiles& m_files;
    CRowReport& m_report;
    bool m_isSplit = false;  ///< a value of the current row
    std::string m_text;
};

}  // namespace norva
