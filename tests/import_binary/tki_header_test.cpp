#include "import_binary/tki_samples.h"
#include "norva/import_export.h"
#include "platform/last_error.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace norva::test {
namespace {

TEST(TkiHeader, GivesTheDescriptorsBetweenItsMarks) {
    struct Case {
        std::string header;
        std::vector<std::string> channels;  ///< name|count|type|scale|offset|units|rest@line
        std::string problem;                ///< end of the last error
    };
    std::string const mag = "mag,1,db,1,0,nT,";
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
         }) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.p01", c.header);
        std::string const what = c.header.substr(0, 60);
        CTkiProbe file(folder / "in.p01", "");
        ClearLastErrorText();
        EXPECT_EQ(file.GetTkiDataChannels(), static_cast<int>(c.channels.size())) << what;
        std::vector<std::string> channels;
        for (TkiChannelDesc const& channel : file.Channels()) {
            char text[200];
            std::snprintf(text, sizeof text, "%s|%d|%s|%g|%g|%s|%s@%d", channel.name.c_str(), channel.count,
                          channel.type.c_str(), static_cast<double>(channel.scale), static_cast<double>(channel.offset),
                          channel.units.c_str(), channel.rest.c_str(), channel.line);
            channels.push_back(text);
        }
        EXPECT_EQ(channels, c.channels) << what;
        EXPECT_EQ(GetLastErrorText(), c.problem.empty() ? "" : folder / "in.p01" + ", " + c.problem) << what;
    }
}

TEST(TkiHeader, FindsTheLocationsOfARecord) {
    struct Case {
        std::vector<std::string> counts;  ///< "count,type"
        int locations;
    };
    for (Case const& c : std::vector<Case>{
             {{"1,db"}, 1},
             {{"2,in", "3,in"}, 6},
             {{"3,in", "2,in"}, 6},
             {{"4,in", "6,fl"}, 24},
             {{"6,in", "4,in"}, 24},
             {{"2,in", "4,in"}, 4},
             {{"4,in", "2,in"}, 4},
             {{"2,in", "3,in", "4,in"}, 24},
             {{"5,in*", "8,as", "7,as*", "3,wd"}, 3},
             {{"1000000,by"}, 1'000'000},
             {{"1000001,by"}, 0},
             {{"999,by", "1000,by", "1001,by"}, 0},
         }) {
        CTemporaryFolder const folder;
        std::string header = "BEGIN\n";
        std::string counts;
        for (std::string const& count : c.counts) {
            header += "a," + count + ",\n";
            counts += " " + count;
        }
        WriteWholeFile(folder / "in.p01", header + "END\x1A");
        CTkiProbe file(folder / "in.p01", "");
        ASSERT_EQ(file.GetTkiDataChannels(), static_cast<int>(c.counts.size())) << counts;
        EXPECT_EQ(file.GetMaxInterpRecords(), c.locations) << counts;
    }
}

TEST(TkiHeader, DecodesEveryType) {
    CTkiProbe const file;
    std::string const record = "x" + CPackedValues().Add(-2).Add(0.25F).Add(-1e300).Text(" ab ", 4).bytes;
    struct Case {
        std::size_t offset;
        std::size_t length;
        char const* type;
        double number;
        char decoder;  ///< the one that gives it too: i, l, f or d
    };
    for (Case const& c : std::vector<Case>{
             {1, 1, "by", 254, 'i'},
             {1, 1, "si", -2, 'i'},
             {1, 2, "in", -2, 'i'},
             {1, 2, "wd", 65534, 'l'},
             {1, 4, "li", -2, 'l'},
             {5, 4, "fl", 0.25, 'f'},
             {9, 8, "db", -1e300, 'd'},
             {1, 1, "by*", 254, 'i'},
             {1, 1, "si*", -2, 'i'},
             {1, 2, "in*", -2, 'i'},
             {1, 2, "wd*", 65534, 'l'},
             {1, 4, "li*", -2, 'l'},
             {5, 4, "fl*", 0.25, 'f'},
             {9, 8, "db*", -1e300, 'd'},
             {1, 4, "as", 0, '-'},
             {1, 4, "LI", 0, '-'},
             {1, 3, "li", 0, '-'},
         }) {
        char const* const bytes = record.data();
        EXPECT_EQ(file.ConvertByte(bytes, c.offset, c.length, c.type), c.number) << c.type;
        auto const expected = [&c](char decoder) { return c.decoder == decoder ? c.number : 0; };
        EXPECT_EQ(file.ConvertByteToInt(bytes, c.offset, c.length, c.type), expected('i')) << c.type;
        EXPECT_EQ(file.ConvertByteToLong(bytes, c.offset, c.length, c.type), expected('l')) << c.type;
        EXPECT_EQ(static_cast<double>(file.ConvertByteToFloat(bytes, c.offset, c.length, c.type)), expected('f'))
            << c.type;
        EXPECT_EQ(file.ConvertByteToDouble(bytes, c.offset, c.length, c.type), expected('d')) << c.type;
        EXPECT_EQ(file.GetCharacter(bytes, 17, 4, c.type), c.type == std::string("as") ? "ab" : "") << c.type;
    }
}

}  // namespace
}  // namespace norva::test
