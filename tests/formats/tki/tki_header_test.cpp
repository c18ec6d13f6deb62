#include "formats/tki/tki_probe.h"
#include "norva/import_export.h"
#include "platform/last_error.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <locale>
#include <sstream>
#include <tuple>

namespace norva::test {
namespace {

TEST(TkiHeader, GivesTheDescriptorsBetweenItsMarks) {
    struct Case {
        std::string header;
        std::vector<std::string> channels;  ///< name|count|type|scale|offset|units|rest@line
        std::string problem;                ///< end of the last error
    };
    std::string const mag = "mag,1,db,1,0,nT,";
    std::string many;
    for (int channel = 0; channel <= 100'000; ++channel) many += "a,1,by\n";
    for (Case const& c : std::vector<Case>{
             {"about\nBEGIN\n" + mag + "\nEND\nx,1,db,\n\x1A", {"mag|1|db|1|0|nT|@3"}, ""},
             {"xBEGINx\r\nvlf,2,in,0.5,10,pct,a,b\r\nx END\r\n\x1A", {"vlf|2|in|0.5|10|pct|a,b@2"}, ""},
             {"BEGIN\nline,8,as,,,\nas*,3,as*,,-2.5,\nEND\n\x1A", {"line|8|as|0|0||@2", "as*|3|as*|0|-2.5||@3"}, ""},
             {"BEGIN\n a b , 7x,wd,+1e1, 2 ,u\nEND\x1A", {" a b |7|wd|10|2|u|@2"}, ""},
             {"BEGIN\na,1,li\nb,1,li,3\nc,1,li,3,4\nd,1,li,3,4,\nEND\x1A",
              {"a|1|li|0|0||@2", "b|1|li|0|0||@3", "c|1|li|3|0||@4", "d|1|li|3|4||@5"},
              ""},
             {"BEGIN\nbig,1,db,1e99,-1e99,\nEND\x1A", {"big|1|db|inf|-inf||@2"}, ""},
             {"BEGIN\n\n  \t\na,1,by,\n\r\nEND\x1A", {"a|1|by|0|0||@4"}, ""},
             {std::string("B\0EGIN\nm\0ag,1,d\0b,\nE\0ND\n\x1A", 25), {"mag|1|db|0|0||@2"}, ""},
             {"BEGIN\n" + mag + "\nLEGEND,1,db,\nb,1,db,\nEND\x1A", {"mag|1|db|1|0|nT|@2"}, ""},
             {"the END of\nBEGIN\n" + mag + "\nEND\x1A", {}, ""},
             {"BEGIN END\n" + mag + "\nEND\x1A", {}, ""},
             {"begin\n" + mag + "\nend\x1A", {}, ""},
             {"BEGIN\n" + mag + "\n\x1A" + "b,1,db,\nEND\n", {"mag|1|db|1|0|nT|@2"}, ""},
             {"BEGIN\n" + mag, {"mag|1|db|1|0|nT|@2"}, ""},
             {std::string(2'000'000, 'x') + "\nBEGIN\n" + mag + "\nEND\x1A", {}, ""},
             {"", {}, ""},
             {"BEGIN\n" + mag + "\nx,1,DB,\nEND\x1A", {}, "line 3: \"x,1,DB,\"\nunknown type code \"DB\""},
             {"BEGIN\nx\nEND\x1A", {}, "line 2: \"x\"\nunknown type code \"\""},
             {"BEGIN\nx,0,db,\nEND\x1A", {}, "line 2: \"x,0,db,\"\nthe count is 0, not 1 to 16000000"},
             {"BEGIN\nx,16000001,by,\nEND\x1A",
              {},
              "line 2: \"x,16000001,by,\"\nthe count is 16000001, not 1 to 16000000"},
             {"BEGIN\nx,16000000,as,\nEND\x1A", {"x|16000000|as|0|0||@2"}, ""},
             {"BEGIN\n" + std::string(90, 'x') + ",1,\nEND\x1A",
              {},
              "line 2: \"" + std::string(80, 'x') + "...\"\nunknown type code \"\""},
             {"BEGIN\n" + std::string(2'000'000, 'x'), {}, "line 2: \"\"\nthe line is too long"},
             {"BEGIN\n" + many, {}, "line 100002: \"a,1,by\"\nmore than 100000 channels"},
         }) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.p01", c.header);
        std::string const what = c.header.substr(0, 60);
        CTkiProbe file(folder / "in.p01", "");
        ClearLastErrorText();
        EXPECT_EQ(file.GetTkiDataChannels(), static_cast<int>(c.channels.size())) << what;
        std::vector<std::string> channels;
        for (TkiChannelDesc const& channel : file.Channels()) {
            std::ostringstream text;
            text.imbue(std::locale::classic());
            text << channel.name << '|' << channel.count << '|' << channel.type << '|' << channel.scale << '|'
                 << channel.offset << '|' << channel.units << '|' << channel.rest << '@' << channel.line;
            channels.push_back(text.str());
        }
        EXPECT_EQ(channels, c.channels) << what;
        EXPECT_EQ(GetLastErrorText(), c.problem.empty() ? "" : folder / "in.p01" + ", " + c.problem) << what;
    }
}

TEST(TkiHeader, FindsTheLocationsOfARecord) {
    using std::pair;
    for (auto const& [channels, locations] : std::vector<pair<std::string, int>>{
             pair("a,1,db", 1), pair("a,2,in\nb,3,in", 6), pair("a,3,in\nb,2,in", 6), pair("a,4,in\nb,6,fl", 24),
             pair("a,6,in\nb,4,in", 24), pair("a,2,in\nb,4,in", 4), pair("a,4,in\nb,2,in", 4),
             pair("a,2,in\nb,3,in\nc,4,in", 24), pair("a,5,in*\nb,8,as\nc,7,as*\nd,3,wd", 3),
             pair("a,1000000,by", 1'000'000), pair("a,1000001,by", 0), pair("a,999,by\nb,1000,by\nc,1001,by", 0)}) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.p01", "BEGIN\n" + channels + "\nEND\x1A");
        CTkiProbe file(folder / "in.p01", "");
        ASSERT_GT(file.GetTkiDataChannels(), 0) << channels;
        EXPECT_EQ(file.GetMaxInterpRecords(), locations) << channels;
    }
}

TEST(TkiHeader, DecodesEveryType) {
    CTkiProbe const file;
    std::string const record = "x" + CPackedValues().Add(-2).Add(0.25F).Add(-1e300).Text(" ab ", 4).bytes;
    // Type, offset, length, number, and the decoder that gives it too: int, long, float or double.
    for (auto [type, offset, length, number, decoder] : std::vector<std::tuple<std::string, int, int, double, char>>{
             std::tuple("by", 1, 1, 254, 'i'), std::tuple("si", 1, 1, -2, 'i'), std::tuple("in", 1, 2, -2, 'i'),
             std::tuple("wd", 1, 2, 65534, 'l'), std::tuple("li", 1, 4, -2, 'l'), std::tuple("fl", 5, 4, 0.25, 'f'),
             std::tuple("db", 9, 8, -1e300, 'd'), std::tuple("as", 1, 4, 0, '-'), std::tuple("LI", 1, 4, 0, '-'),
             std::tuple("li", 1, 3, 0, '-')}) {
        auto const at = static_cast<std::size_t>(offset);
        auto const size = static_cast<std::size_t>(length);
        char const* const bytes = record.data();
        for (int array = 0; array < 2; ++array, type += "*") {
            EXPECT_EQ(file.ConvertByte(bytes, at, size, type), number) << type;
            EXPECT_EQ(file.ConvertByteToInt(bytes, at, size, type), decoder == 'i' ? number : 0) << type;
            EXPECT_EQ(file.ConvertByteToLong(bytes, at, size, type), decoder == 'l' ? number : 0) << type;
            EXPECT_EQ(file.ConvertByteToFloat(bytes, at, size, type), decoder == 'f' ? number : 0) << type;
            EXPECT_EQ(file.ConvertByteToDouble(bytes, at, size, type), decoder == 'd' ? number : 0) << type;
            EXPECT_EQ(file.GetCharacter(bytes, 17, 4, type), type.starts_with("as") ? "ab" : "") << type;
        }
    }
}

}  // namespace
}  // namespace norva::test
