#pragma once

#include "import_text/text_line.h"
#include "norva/converters.h"
#include "norva/values.h"
#include "store/column_files.h"

#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Turns the values of data rows into packed store values, one column file a column.
class CRowConverter {
public:
    enum class Source {
        Text,    ///< dates and times by the store's converters; texts are upper-cased
        SeaSpy,  ///< dates and times in the log's own form; texts keep their case
    };

    /// What is referred to has to outlive the converter. `columns` are the settings of all columns, skipped ones too.
    CRowConverter(std::vector<NorvaChannelStruct> const& columns, CDelimiters const& delimiters, Source source,
                  CNorvaDateTime const& dateTime, CNorvaGeographic const& geographic, CColumnFiles& files);

    /// Converts a whole row; values that it lacks are missing, surplus ones are ignored. False after a write failure.
    bool Row(std::string_view line);
    /// Converts one value of one column (nothing for a skipped one). False after a write failure.
    bool Value(int column, std::string_view token);

private:
    enum class Kind { Skipped, Float, Double, Long, Short, Text, Date, Time, SeaSpyDate, SeaSpyTime, Geographic };
    struct Plan {
        Kind kind = Kind::Skipped;
        int column = 0;
        int templateFormat = 0;
        std::size_t width = 0;  ///< of a text, in characters
    };

    static bool IsNumber(Kind kind) { return kind >= Kind::Float && kind <= Kind::Short; }
    static Plan PlanFor(NorvaChannelStruct const& settings, int column, Source source);

    bool PutToken(Plan const& plan, std::string_view token);
    bool PutNumber(Plan const& plan, double value);
    bool PutDouble(Plan const& plan, double value);
    bool PutMissing(Plan const& plan);
    bool PutText(Plan const& plan, std::string_view token);

    std::vector<Plan> m_plans;
    std::size_t m_rowPlans = 0;  ///< plans up to the last column that is not skipped
    CDelimiters const& m_delimiters;
    bool m_upperCase;
    CNorvaDateTime const& m_dateTime;
    CNorvaGeographic const& m_geographic;
    CColumnFiles& m_files;
    std::string m_text;
};

}  // namespace norva
