#include "norva/converters.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>

namespace norva {
namespace {

struct Read {
    char const* text;
    int code;
    double value;
};

struct Written {
    double value;
    int code, decimals;
    std::string text;
};

/// Texts that read as nothing; `read` is (text, value) and gives the result.
template <typename Call>
void ExpectNone(std::initializer_list<char const*> texts, Call read) {
    for (char const* const text : texts) {
        double value = 5;
        EXPECT_EQ(read(text, value), 0) << text;
        EXPECT_EQ(value, kNoDataDouble) << text;
    }
}

/// Values, and those that no template has a text for; `write` is (case, text) and gives the result.
template <typename Call>
void ExpectTexts(std::vector<Written> const& cases, Call write) {
    std::string text = "older text";
    for (Written const& c : cases) {
        EXPECT_EQ(write(c, text), 1) << c.value;
        EXPECT_EQ(text, c.text) << c.value << " as " << c.code;
    }
    for (double const value : {1.0e30, -1.0e30, 1e15, -1e15, static_cast<double>(INFINITY), static_cast<double>(NAN)}) {
        EXPECT_EQ(write({value, 0, 3, "*"}, text), 0) << value;
        EXPECT_EQ(text, "*") << value;
    }
}

TEST(Dates, AreDecimalYears) {
    CNorvaDateTime const converter;
    for (auto const& [text, code, expected] :
         {Read{"2023/12/31", 0, 2024}, Read{"2023/01/01", 0, 2023 + 1 / 365.0},
          Read{"2024/02/29", -1, 2024 + 60 / 366.0}, Read{"2024/3/1", 0, 2024 + 61 / 366.0},
          Read{"2100/03/01", 0, 2100 + 60 / 365.0}, Read{"2000-2.29", 6, 2000 + 60 / 366.0},
          Read{" 31.12.81 ", 3, 1982}, Read{"31-12-80", 7, 2081}, Read{"12/31/00", 5, 2001}, Read{"12/31/0100", 4, 101},
          Read{"31/12/999999999", 2, 1e9}}) {
        double value = 5;
        EXPECT_EQ(converter.GetDoubleDate(text, code, value), 1) << text;
        EXPECT_EQ(value, expected) << text << " as " << code;
    }
    ExpectNone(
        {"2023/02/29", "2023/13/01", "2023/04/31", "2023/00/10", "2023/10/00", "2023/001/10", "2023/10", "2023",
         "2023/10/10/1", "2023//10", "2023:10:10", "2023/Oct/10", "-2023/10/10", "31/12/2023", "", "1999999999/12/31"},
        [&](char const* text, double& value) { return converter.GetDoubleDate(text, 0, value); });
    ExpectTexts({{2024, 0, 0, "2023/12/31"},
                 {2024.0001, 7, 0, "31-12-2023"},
                 {std::nextafter(2024.0, 0), 6, 0, "2023-12-31"},
                 {static_cast<double>(static_cast<float>(2024 + 60 / 366.0)), 4, 0, "02/29/2024"},
                 {1982, 1, 0, "81/12/31"},
                 {2081, 3, 0, "31/12/80"},
                 {1981, 3, 0, "31/12/1980"},
                 {101, 5, 0, "12/31/0100"},
                 {1e9, 99, 0, "999999999/12/31"}},
                [&](Written const& c, std::string& text) { return converter.GetStringDate(c.value, c.code, text); });
    std::string text;
    EXPECT_EQ(converter.GetStringDate(0, 0, text), 0) << "the last day of the year before 0";
}

TEST(Times, AreHours) {
    CNorvaDateTime const converter;
    for (auto const& [text, code, expected] :
         {Read{"12:30:45", 0, 12.5125}, Read{"12:30", 0, 12.5}, Read{" 1:2:3 ", 3, 1 + 123 / 3600.0},
          Read{"00:00:00.0036", 2, 0.000001}, Read{"-01:30:36.", 1, -1.51}, Read{"+100", 0, 100},
          Read{"12:59:59.99999999999999999999", 2, 13}}) {
        double value = 5;
        EXPECT_EQ(converter.GetDoubleTime(text, code, 0, value), 1) << text;
        EXPECT_EQ(value, expected) << text;
    }
    ExpectNone({"12:60:00", "12:00:60", "12:30:", ":30:00", "12.5", "12:30.5", "12:030:00", "12:30:45Z", "--1:00",
                "1:-5:00", "1234567890123456", "noon", ""},
               [&](char const* text, double& value) { return converter.GetDoubleTime(text, 0, 0, value); });
    ExpectTexts({{12.5125, 0, 0, "12:30:45"},
                 {12.5125, 3, 4, "12:31"},
                 {59.9996 / 3600, 2, 3, "00:01:00.000"},
                 {23 + 3599.9996 / 3600, 2, 3, "24:00:00.000"},
                 {1.25, 2, 99, "01:15:00.000000000000000"},
                 {-0.25, 0, -3, "-00:15:00"},
                 {-0.00001, 0, 0, "00:00:00"},
                 {-123.5, 3, 0, "-123:30"}},
                [&](Written const& c, std::string& text) {
                    return converter.GetStringTime(c.value, c.code, c.decimals, text);
                });
}

TEST(Coordinates, AreDecimalDegrees) {
    CNorvaGeographic const converter;
    int found = -1;
    for (auto const& [text, decimals, expected] :
         {Read{"5.03.07.250", 3, 5 + 187.25 / 3600}, Read{"-0.30.00", 0, -0.5},
          Read{"+179.59.59.", 0, 180 - 1 / 3600.0}, Read{" 0.0.36.0 ", 1, 0.01}}) {
        double value = 5;
        EXPECT_EQ(converter.GetDoubleData(text, 0, value, found), 1) << text;
        EXPECT_EQ(value, expected) << text;
        EXPECT_EQ(found, decimals) << text;
    }
    ExpectNone({"45.5", "45", "45.60.00", "45.00.60.0", "45.00.10.5.1", "45.00.10N", "45:00:10", "*"},
               [&](char const* text, double& value) { return converter.GetDoubleData(text, 0, value, found); });
    ExpectTexts(
        {{5 + 187.25 / 3600, 0, 3, "5.03.07.250"},
         {-59.9996 / 3600, 0, 3, "-0.01.00.000"},
         {359 + 3599.96 / 3600, 0, 1, "360.00.00.0"},
         {-1e-9, 0, 2, "0.00.00.00"},
         {0.5, 7, -1, "0.30.00"}},
        [&](Written const& c, std::string& text) { return converter.GetString(c.value, c.code, c.decimals, text); });
}

TEST(Converters, WhatIsWrittenReadsBackToThePrintedPrecision) {
    CNorvaDateTime const converter;
    std::vector<std::string> names;
    std::vector<int> dateCodes;
    std::vector<int> timeCodes;
    converter.GetImportDateTemplate(names, dateCodes);
    EXPECT_EQ(names, (std::vector<std::string>{"YYYY/MM/DD", "YY/MM/DD", "DD/MM/YYYY", "DD/MM/YY", "MM/DD/YYYY",
                                               "MM/DD/YY", "YYYY-MM-DD", "DD-MM-YYYY"}));
    converter.GetImportTimeTemplate(names, timeCodes);
    EXPECT_EQ(names, (std::vector<std::string>{"HH:MM:SS", "HH:MM:SS.S", "HH:MM:SS.SSS", "HH:MM"}));

    auto const expect = [](double value, double unit, auto write, auto read) {
        std::string text;
        std::string again;
        double back = 0;
        RC_ASSERT(write(value, text) == 1);
        RC_ASSERT(read(text, back) == 1);
        RC_ASSERT(std::fabs(back - value) <= unit * 0.5 + std::fabs(value) * 1e-15);
        RC_ASSERT(write(back, again) == 1);
        RC_ASSERT(text == again);
    };
    auto const among = [](double limit) { return limit * (*rc::gen::inRange(-1'000'000'000, 1'000'000'000)) * 1e-9; };
    EXPECT_TRUE(rc::check("dates", [&] {
        double const value =
            0.01 + std::fabs(among(*rc::gen::elementOf(std::vector<double>{2100, 12000, 999'999'000})));
        for (int const code : dateCodes) {
            expect(
                value, 1.0001 / 365, [&](double v, std::string& t) { return converter.GetStringDate(v, code, t); },
                [&](std::string const& t, double& v) { return converter.GetDoubleDate(t, code, v); });
        }
        int year = 0;
        int month = 0;
        int day = 0;
        double back = 0;
        RC_ASSERT(converter.GetDateParts(value, year, month, day) == 1);
        RC_ASSERT(converter.GetDoubleDate(year, month, day, back) == 1);
        RC_ASSERT(std::fabs(back - value) <= 0.5001 / 365);
        RC_ASSERT(converter.GetDoubleDate(year, month, 32, back) == 0 && back == kNoDataDouble);
    }));
    EXPECT_TRUE(rc::check("times and coordinates", [&] {
        CNorvaGeographic const geographic;
        double const value = among(*rc::gen::elementOf(std::vector<double>{1, 24, 400}));
        int const decimals = *rc::gen::inRange(0, 10);
        int found = 0;
        double const unit = std::pow(10.0, -decimals) / 3600;
        for (int const code : timeCodes) {
            expect(
                value, code == 3 ? 1 / 60.0 : unit,
                [&](double v, std::string& t) { return converter.GetStringTime(v, code, decimals, t); },
                [&](std::string const& t, double& v) { return converter.GetDoubleTime(t, code, decimals, v); });
        }
        expect(
            value, unit, [&](double v, std::string& t) { return geographic.GetString(v, 0, decimals, t); },
            [&](std::string const& t, double& v) { return geographic.GetDoubleData(t, 0, v, found); });
        RC_ASSERT(found == decimals);
    }));
    EXPECT_TRUE(rc::check("any bytes", [&](std::string const& text) {
        double value = 0;
        int found = 0;
        converter.GetDoubleDate(text, 0, value);
        converter.GetDoubleTime(text, 0, 0, value);
        CNorvaGeographic().GetDoubleData(text, 0, value, found);
        RC_ASSERT(std::isfinite(value));
    }));
}

}  // namespace
}  // namespace norva
