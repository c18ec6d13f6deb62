#include "inspection/definition_file.h"
#include "support/classic_locale.h"

#include <gtest/gtest.h>

using namespace norva;

TEST(DefinitionFile, GivesTheFieldsOfDataRecords) {
    test::CClassicLocale const classic;
    struct Case {
        char const* line;
        char const* fields;
    };
    Case const cases[] = {
        {"DEFN 1 ST=RECD,RT=;LINE:I10:NULL=-9999999,NAME=Line number", "LINE||-9999999.000000;"},
        {"defn 2 st=recd,rt=; MAG : F10.2 : units=nT , null=-999.25", "MAG|nT|-999.250000;"},
        {"DEFN 3 ST=RECD,RT=;X:F10.2;Y:F11.2:UNIT=m;END DEFN", "X||;Y|m|;"},
        {"DEFN 4 ST=RECD,RT=;EM:3F8.2:UNIT=ppm", "EM_1|ppm|;EM_2|ppm|;EM_3|ppm|;"},
        {"DEFN 5 ST=RECD,RT=;SURVEY NAME:A12", "SURVEY_NAME||text;"},
        {"DEFN   ST=RECD,RT=COMM;RT:A4;COMMENTS:A76", ""},
        {"DEFN 6 ST=RECD,RT=;BAD:Z9;:F8.2;EMPTY:;HUGE:99999999999F8.2;NONE:0F8.2", ""},
        {"1000 545694.06", ""},
        {"", ""},
    };
    for (Case const& c : cases) {
        std::string text;
        for (DefinedField const& field : ReadDefinitionLine(c.line)) {
            text += field.name + "|" + field.unit + "|" + (field.null ? std::to_string(*field.null) : "") +
                    (field.isText ? "text" : "") + ";";
        }
        EXPECT_EQ(text, c.fields) << c.line;
    }
}
