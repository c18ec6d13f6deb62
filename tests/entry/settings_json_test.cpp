#include "common/settings_json.h"

#include <gtest/gtest.h>

namespace norva::test {

namespace {

NorvaChannelStruct Channel() {
    return {.name = "Mag \xC3\xA9",
            .units = "\xB5T",  // no UTF-8
            .dataType = DataType::kText,
            .recordType = 1,
            .arraySize = 12,
            .displayFormat = DisplayFormat::kExponent,
            .decimalPlaces = 7,
            .templateFormat = 3};
}

TextReading Reading() {
    TextReading reading;
    reading.encoding = TextReading::Encoding::Utf16Big;
    reading.separator = '\0';
    reading.quote = '\'';
    reading.backslashQuote = reading.quotesEveryRow = reading.trailingSeparator = true;
    reading.decimalMark = ',';
    reading.width = 9;
    reading.commentMarks = {"#", "\xFF"};
    reading.missing = {"", "n/a"};
    reading.firstDataLine = 1ULL << 40;
    reading.firstMarkerLine = 4;
    reading.headerText = "a\tb \"c\"";
    reading.markerWords = {"LINE", "TIE"};
    return reading;
}

}  // namespace

// What a report keeps is what the import ran by, to the last member: no member here has its default.
TEST(SettingsJson, ReadsBackTheSame) {
    ColumnTextSettings const text{
        .skip = 3,
        .columns = {Channel(), {}},
        .labelColumn = 1,
        .reading = Reading(),
        .columnReadings = {{.source = 4,
                            .form = ColumnReading::Form::PackedMinutes,
                            .order = "dmy",
                            .missing = {"-999"},
                            .epochDivisor = 1000}},
        .looks = {{.kind = ColumnLook::Kind::Position,
                   .usualLength = 5,
                   .hasBlanks = true,
                   .hasDigits = true,
                   .isQuoted = true,
                   .suffix = "%"}},
    };
    GbnSettings gbn{.lines = {{2, 0}}, .channels = {{}}, .fiducial = false};
    gbn.changes = {{.number = 1, .name = "East", .units = "", .dataType = 4}, {.number = 2}};
    gbn.lineNames = {{.number = 7, .name = "T7"}};
    RecordSettings const records{
        .channels = {{.name = "a", .units = "b", .format = RecordChannel::Format::Int16, .dataType = 5}},
        .records = 1LL << 40,
        .pointsPerLine = 10,
        .fiducial = false,
        .frequency = 50};
    ImportSettings const all[] = {
        std::monostate{},
        text,
        ColumnTextSettings{},
        SeaSpySettings{.columns = {Channel()}, .interpolated = true},
        Cg3Settings{.columns = {{3, 1}}, .dateFormat = 4, .timeFormat = 2, .sortByTime = false},
        Cg3Settings{},
        records,
        RecordSettings{},
        gbn,
        GbnSettings{},
    };
    for (ImportSettings const& settings : all) {
        std::string const written = SettingsJson(settings).dump();
        EXPECT_EQ(SettingsFromJson(nlohmann::json::parse(written)), settings) << written;
    }
}

TEST(SettingsJson, RefusesWhatItDoesNotKnow) {
    for (char const* const json :
         {R"({"kind": "other"})", R"({"kind": "CG3"})", "3", R"({"kind": "GBN", "lines": 3})"}) {
        EXPECT_ANY_THROW(SettingsFromJson(nlohmann::json::parse(json))) << json;
    }
}

}  // namespace norva::test
