#include "formats/column_text/column_guess.h"

#include "norva/converters.h"

#include <gtest/gtest.h>

namespace norva {

TEST(ColumnGuess, ClassifiesTokens) {
    using enum ColumnClass;
    std::pair<char const*, ColumnClass> const cases[] = {{"2007/01/02", Date},
                                                         {"1/2/3", Date},
                                                         {"2007-01-02", Date},
                                                         {"-5-3E", None},
                                                         {"1-2", Short},
                                                         {"12:30:00", Time},
                                                         {"12:30:15.5", Time},
                                                         {"1/2:3", Time},
                                                         {"45.30.12.5", Geographic},
                                                         {"A.B.C", Geographic},
                                                         {"12345", Short},
                                                         {"123456", Long},
                                                         {"-1234", Short},
                                                         {"+12345", Long},
                                                         {"12,5", None},
                                                         {"N/A", None},
                                                         {"*", None},
                                                         {"1E-5", None},
                                                         {"1.5", Float},
                                                         {"1.", Float},
                                                         {"1.12345", Float},
                                                         {"1.234567", Double},
                                                         {"1.5E-5", FloatExponent},
                                                         {"1.50000E5", DoubleExponent},
                                                         {"1.5X", None},
                                                         {"-.5", Float},
                                                         {"1.2-3-4", Date},
                                                         {"1.2-3E", FloatExponent}};
    for (auto const& [token, expected] : cases) EXPECT_EQ(ClassifyToken(token), expected) << token;
}

TEST(ColumnGuess, FirstClassifiedRowDecidesAndTextWidens) {
    // Class of the first column, and its data type and size before the class is applied.
    std::tuple<char const*, TokenRows, ColumnClass, int, int> const cases[] = {
        {"first number decides", {{"12", "1", "1"}, {"12.5", "1", "1"}}, ColumnClass::Short, 0, 1},
        {"text widens",
         {{"N/A", "1", "1"}, {"*", "1", "1"}, {"Basalt", "1", "1"}, {"ok", "1", "1"}},
         ColumnClass::Text,
         4,
         6},
        {"a number after text decides", {{"N/A", "1", "1"}, {"12", "1", "1"}}, ColumnClass::Short, 4, 3},
        {"lower case counts", {{"1.5e3", "1", "1"}}, ColumnClass::FloatExponent, 0, 1},
        {"missing values say nothing", {{"*", "1", "1"}, {"*", "1", "1"}}, ColumnClass::None, 0, 1},
        {"short rows are not looked at", {{"abc", "1"}, {"abc"}, {}}, ColumnClass::None, 0, 1},
        {"exponent without a point", {{"1E-5", "1", "1"}}, ColumnClass::None, 0, 1},
        {"a row that ends early", {{"*", "1", "1"}, {"2:3", "1", "1", "9"}}, ColumnClass::Time, 0, 1}};
    for (auto const& [what, rows, expected, dataType, arraySize] : cases) {
        std::vector<NorvaChannelStruct> columns(7);
        auto const classes = GuessColumns(rows, {"Ch1", "Ch2", "Ch3"}, columns);
        ASSERT_EQ(columns.size(), 3U) << what;
        EXPECT_EQ(columns[0].name, "Ch1") << what;
        EXPECT_EQ(classes[0], expected) << what;
        EXPECT_EQ(columns[0].dataType, dataType) << what;
        EXPECT_EQ(columns[0].arraySize, arraySize) << what;
    }
}

TEST(ColumnGuess, TemplatesFitByLengthAndSeparator) {
    CNorvaDateTime const dateTime;
    std::vector<std::string> dates, times;
    std::vector<int> codes;
    dateTime.GetImportDateTemplate(dates, codes);
    dateTime.GetImportTimeTemplate(times, codes);
    std::tuple<bool, char const*, char const*> const cases[] = {{true, "2007/01/02", "YYYY/MM/DD"},
                                                                {true, "94/08/22", "YY/MM/DD"},
                                                                {true, "22/08/1994", "DD/MM/YYYY"},
                                                                {true, "2007-01-02", "YYYY-MM-DD"},
                                                                {true, "02-01-2007", "YYYY-MM-DD"},
                                                                {true, "2/1/2007", "none"},
                                                                {true, "", "none"},
                                                                {false, "12:30:15", "HH:MM:SS"},
                                                                {false, "12:30:15.25", "HH:MM:SS.S"},
                                                                {false, "12:30", "HH:MM"},
                                                                {false, "9:30:15", "none"},
                                                                {false, "1.5", "HH:MM:SS.S"}};
    for (auto const& [isDate, token, expected] : cases) {
        int const found = isDate ? MatchDateTemplate(dates, token) : MatchTimeTemplate(times, token);
        EXPECT_EQ(found < 0 ? "none" : (isDate ? dates : times)[static_cast<std::size_t>(found)], expected) << token;
    }
}

}  // namespace norva
