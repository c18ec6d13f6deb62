#include "formats/gbn/gbn_contents.h"

#include "formats/gbn/gbn_bytes.h"

#include <gtest/gtest.h>

namespace norva {
namespace {

using test::CGbnBytes;

GbnContents Read(std::string const& bytes) {
    GbnMemorySource source(bytes);
    GbnFile file(source);
    file.ReadSignature();
    GbnContents contents;
    ReadGbnContents(file, contents, GbnValues::Keep,
                    [](int percent) { ASSERT_TRUE(percent >= 0 && percent <= 100) << percent; });
    return contents;
}

/// "name=locations ..." of the lines, then "number:name/type [first+count ...]" of the channels.
std::string Outline(GbnContents const& contents) {
    std::string text;
    for (GbnLineEntry const& line : contents.lines) {
        text += line.name + "=" + std::to_string(line.locationCount) + " ";
    }
    for (std::size_t i = 0; i < contents.channels.size(); ++i) {
        GbnChannelEntry const& entry = contents.channels[i];
        text += std::to_string(entry.channelNumber) + ":" + entry.description.name + "/" +
                std::to_string(entry.sourceType) + "[";
        for (GbnRun const& run : contents.values[i].runs) {
            text += " " + std::to_string(run.first) + "+" + std::to_string(run.count);
        }
        text += " ] ";
    }
    return text;
}

constexpr float kOne = 1.0F;

TEST(GbnContents, SortsBlocksIntoLinesAndChannels) {
    struct Case {
        char const* what;
        std::string bytes;
        char const* outline;
        std::string problem;
    };
    std::vector<Case> const cases{
        {"two lines, the shorter channel ends early",
         CGbnBytes()
             .Channel("X", 4)
             .Channel("Y", 2)
             .Line(10)
             .Values(0, 4, kOne, 2, 3)
             .Values(1, 2, short{1})
             .Line(11)
             .Values(0, 4, kOne)
             .Values(1, 2, short{1}, 2)
             .End()
             .bytes,
         "10=3 11=2 0:X/0[ 0+3 3+1 ] 1:Y/5[ 0+1 3+2 ] ", ""},
        {"a second kind of channel record takes a number; its block and that of no channel are dropped",
         CGbnBytes()
             .SecondChannel("S")
             .Channel("X", 4)
             .Line(1)
             .Values(0, 4, kOne, 2, 3)
             .Values(9, 5, 1.0)
             .Values(-1, 0, char{1})
             .Values(1, 4, kOne)
             .End()
             .bytes,
         "1=1 1:X/0[ 0+1 ] ", ""},
        {"two blocks of a channel in one line follow each other",
         CGbnBytes().Channel("X", 3).Line(12, 2, 7).Values(0, 3, 1, 2).Values(0, 3, 3).End().bytes,
         "12.2:7=3 0:X/3[ 0+2 2+1 ] ", ""},
        {"a line without blocks is none; an empty block opens one",
         CGbnBytes().Channel("X", 3).Line(1).Line(2, 0, -5).Values(0, 3, 1).Line(3, 4).Block(0, 3, 0).End().bytes,
         "2:-5=1 3.4=0 0:X/3[ 0+1 ] ", ""},
        {"blocks before the first line are left out; a late channel has no values before",
         CGbnBytes()
             .Channel("X", 1)
             .Values(0, 1, short{1})
             .Line(1)
             .Values(0, 1, short{1}, 2)
             .Channel("Z", 5)
             .Line(2)
             .Values(1, 5, 1.0)
             .End()
             .bytes,
         "1=2 2=1 0:X/3[ 0+2 ] 1:Z/1[ 2+1 ] ", ""},
        {"bytes that are no code stand alone; the end may be missing",
         CGbnBytes().Add('\x77').Channel("X", -4).Add('\xFF').Line(1).Block(0, -4, 1).Text("ab", 4).bytes,
         "1=1 0:X/4[ 0+1 ] ", ""},
        {"the values of a cut block count",
         CGbnBytes().Channel("X", 4).Line(1).Block(0, 4, 2147483647).Add(kOne).Add(kOne).Add('\0').bytes,
         "1=2 0:X/0[ 0+2 ] ",
         "File ends inside the data block at byte 0x82; 2 of 2147483647 values of channel X were read"},
        {"a text wider than the rest", CGbnBytes().Channel("X", 4).Channel("T", -300).Line(1).End().bytes, "0:X/0[ ] ",
         "The 300 bytes of a text of channel T at byte 0x65 are more than the file has left; reading stopped there"},
        {"a channel of an unknown type", CGbnBytes().Channel("X", 6).Line(1).End().bytes, "",
         "Value type 6 of channel X at byte 0x14 is unknown; reading stopped there"},
        {"a block of an unknown type", CGbnBytes().Channel("X", 4).Line(1).Block(0, 7, 1).Add(1.0).End().bytes,
         "0:X/0[ ] ", "Value type 7 of a data block at byte 0x82 is unknown; reading stopped there"},
        {"a negative count", CGbnBytes().Channel("X", 4).Line(1).Block(0, 4, -1).End().bytes, "0:X/0[ ] ",
         "A data block at byte 0x82 has -1 values; reading stopped there"},
        {"a header without end", "OASIS BINARY DATA\r\n", "",
         "File ends inside its header at byte 0x13; no record was read"},
        {"nothing", "", "", "File ends inside its header at byte 0x0; no record was read"},
    };
    for (Case const& c : cases) {
        GbnContents const contents = Read(c.bytes);
        EXPECT_EQ(Outline(contents), c.outline) << c.what;
        EXPECT_EQ(contents.problem, c.problem) << c.what;
    }
    EXPECT_EQ(Read(cases[4].bytes).blocksBeforeLines, 1);
}

TEST(GbnContents, DescribesChannelsFromTheirRecords) {
    struct Case {
        std::int32_t valueType, displayFormat, dataType, recordType, arraySize, shownFormat, templateFormat;
    };
    for (Case const& c : std::vector<Case>{{0, 0, 5, 0, 1, 0, -1},
                                           {1, 1, 3, 0, 1, 1, -1},
                                           {2, 2, 5, 0, 1, 2, 2},
                                           {3, 3, 3, 0, 1, 3, 0},
                                           {4, 4, 0, 0, 1, 4, -1},
                                           {5, 5, 1, 0, 1, 0, -1},
                                           {-9, -2, 4, 1, 8, 0, -1}}) {
        GbnContents const contents = Read(CGbnBytes().Channel("C", c.valueType, c.displayFormat, 7).Line(1).bytes);
        ASSERT_EQ(contents.channels.size(), 1U) << c.valueType;
        EXPECT_EQ(contents.channels[0].description,
                  (NorvaChannelStruct{"C", "", c.dataType, c.recordType, 0, c.arraySize, c.shownFormat, 7,
                                      c.templateFormat, 0}))
            << c.valueType;
    }
}

TEST(GbnContents, KeepsTheBytesOfManyBlocksApart) {
    CGbnBytes file;
    file.Channel("X", 3).Line(1);
    std::int32_t next = 0;
    for (std::int32_t block = 0; block < 3000; ++block) {
        file.Block(0, 3, block % 100);
        for (std::int32_t i = 0; i < block % 100; ++i) file.Add(next++);
    }
    GbnContents const contents = Read(file.bytes);
    std::string values;
    for (GbnRun const& run : contents.values[0].runs) {
        EXPECT_EQ(run.first * 4, static_cast<std::int64_t>(values.size()));
        values.append(run.bytes, static_cast<std::size_t>(run.count) * 4);
    }
    ASSERT_EQ(values.size(), static_cast<std::size_t>(next) * 4);
    for (std::int32_t i = 0; i < next; ++i)
        ASSERT_EQ(LoadLittle32(&values[static_cast<std::size_t>(i) * 4]), static_cast<std::uint32_t>(i));
}

/// A small file with every kind of record.
CGbnBytes SmallFile() {
    return CGbnBytes()
        .Channel("X", 4)
        .SecondChannel("S")
        .Channel("T", -4)
        .Channel("N", 0)
        .Line(1)
        .Values(0, 4, kOne, 2, 3)
        .Block(2, -4, 2)
        .Text("abc", 4)
        .Text("", 4)
        .Values(1, 5, 1.0)
        .Line(2, 1, 2)
        .Values(3, 0, char{1}, 2)
        .Values(0, 4, kOne)
        .Opaque()
        .End();
}

/// Checks that runs ascend inside the lines and lie in memory that can be read; gives the number of their values.
std::int64_t CountSoundValues(GbnContents const& contents, std::size_t fileSize) {
    std::int64_t total = 0;
    for (GbnLineEntry const& line : contents.lines) total += line.locationCount;
    EXPECT_EQ(contents.locationCount, total);
    std::int64_t count = 0;
    std::size_t size = 0;
    for (GbnChannelValues const& values : contents.values) {
        std::int64_t next = 0;
        for (GbnRun const& run : values.runs) {
            EXPECT_GE(run.first, next);
            next = run.first + run.count;
            count += run.count;
            std::size_t const runSize = static_cast<std::size_t>(run.count) * GbnValueWidth(run.valueType);
            size += std::string(run.bytes, runSize).size();
        }
        EXPECT_LE(next, total);
    }
    EXPECT_LE(size, fileSize);
    std::uint64_t accounted = 0;
    for (ReportPart const& part : contents.parts) accounted += part.bytes;
    EXPECT_EQ(accounted, fileSize);
    return count;
}

TEST(GbnContents, SurvivesAFileCutAnywhereOrWithAnyByteChanged) {
    CGbnBytes const small = SmallFile();
    std::string const& whole = small.bytes;
    std::int64_t before = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        GbnContents const contents = Read(whole.substr(0, length));
        // The rest of the file being too short for one text of a channel is a problem of its own.
        bool const isWhole = length == whole.size() || (small.records.contains(length) &&
                                                        contents.problem.find("of channel T") == std::string::npos);
        EXPECT_EQ(contents.problem.empty(), isWhole) << length << ": " << contents.problem;
        std::int64_t const count = CountSoundValues(contents, length);
        EXPECT_TRUE(count == before || count == before + 1) << length;
        before = count;
    }
    EXPECT_EQ(before, 8);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int const mask : {0x01, 0x80, 0xFF}) {
            std::string changed = whole;
            changed[at] = static_cast<char>(changed[at] ^ mask);
            CountSoundValues(Read(changed), changed.size());
        }
    }
}

}  // namespace
}  // namespace norva
