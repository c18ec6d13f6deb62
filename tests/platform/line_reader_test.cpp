#include "platform/line_reader.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cerrno>
#include <vector>

namespace norva {
namespace {

using test::CTemporaryFolder;
using test::WriteWholeFile;

struct Line {
    std::string text;
    std::uint64_t end = 0;

    bool operator==(Line const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Line const& line) {
    return out << testing::PrintToString(line.text) << " to " << line.end;
}

/// The lines of `text`, byte by byte.
std::vector<Line> LinesOf(std::string const& text) {
    std::vector<Line> lines;
    std::size_t begin = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    for (std::size_t at = begin; at < text.size(); ++at) {
        if (text[at] != '\n' && text[at] != '\r') continue;
        bool const pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
        lines.push_back({text.substr(begin, at - begin), at + (pair ? 2 : 1)});
        at += pair ? 1 : 0;
        begin = at + 1;
    }
    if (begin < text.size()) lines.push_back({text.substr(begin), text.size()});
    return lines;
}

std::vector<Line> Rest(CLineReader& reader) {
    std::vector<Line> lines;
    std::string_view line;
    while (reader.Next(line)) lines.push_back({std::string(line), reader.Offset()});
    EXPECT_EQ(reader.Error(), 0);
    EXPECT_FALSE(reader.Next(line)) << "the end stays the end";
    return lines;
}

TEST(LineReader, GivesLinesAndOffsetsFromAnywhere) {
    CTemporaryFolder const folder;
    std::string const path = folder / "text";
    EXPECT_TRUE(rc::check([&] {
        auto text = *rc::gen::container<std::string>(rc::gen::elementOf(std::string("aaaaa\n\r\r\xEF\xBB\xBF\0", 12)));
        text.insert(0, *rc::gen::element("", "\xEF\xBB\xBF", "aaaaaaaaaaaaaaa", "aaaaaaaaaaaaaaa\r\n"));
        WriteWholeFile(path, text);
        std::vector<Line> lines = LinesOf(text);
        CLineReader reader(*rc::gen::inRange<std::size_t>(1, 40));
        RC_ASSERT(reader.Open(path) && reader.Length() == text.size() && reader.Offset() == 0U);
        RC_ASSERT(Rest(reader) == lines);
        for (std::uint64_t start = 0; !lines.empty(); lines.erase(lines.begin())) {
            RC_ASSERT(reader.Seek(start) && Rest(reader) == lines);
            start = lines.front().end;
        }
        RC_ASSERT(reader.Seek(text.size() + 10) && Rest(reader).empty());
    }));
}

TEST(LineReader, TakesLinesOfAnyLength) {
    CTemporaryFolder const folder;
    std::string const path = folder / "long";
    std::string text(100'000'000, 'x');
    text += "\r\nshort\r";
    WriteWholeFile(path, text);
    CLineReader reader;
    ASSERT_TRUE(reader.Open(path));
    std::string_view line;
    ASSERT_TRUE(reader.Next(line));
    EXPECT_TRUE(line == std::string_view(text).substr(0, 100'000'000));
    EXPECT_EQ(reader.Offset(), 100'000'002U);
    EXPECT_EQ(Rest(reader), (std::vector<Line>{{"short", text.size()}}));
}

TEST(LineReader, KnowsUtf16ByItsMark) {
    CTemporaryFolder const folder;
    for (std::string const text : {"", "\xFF", "a\xFF\xFE", "\xFF\xFE", "\xFE\xFF"}) {
        WriteWholeFile(folder / "text", text);
        CLineReader reader;
        ASSERT_TRUE(reader.Open(folder / "text"));
        EXPECT_EQ(reader.StartsWithUtf16Mark(), text.size() == 2) << testing::PrintToString(text);
        EXPECT_EQ(Rest(reader), LinesOf(text));
    }
}

TEST(LineReader, TellsWhyItCannotRead) {
    CTemporaryFolder const folder;
    CLineReader reader;
    EXPECT_FALSE(reader.Open(folder.Path()) || reader.IsOpen());
    EXPECT_EQ(reader.Error(), EISDIR);
    WriteWholeFile(folder / "text", "one\ntwo\nthree\nfour and more");
    int reads = 0;
    SetFaultHook(
        [&](FaultPoint point, std::string const&) { return point == FaultPoint::Read && ++reads > 1 ? EIO : 0; });
    CLineReader small(16);
    ASSERT_TRUE(small.Open(folder / "text"));
    std::string_view line;
    int lines = 0;
    while (small.Next(line)) ++lines;
    SetFaultHook({});
    EXPECT_EQ(lines, 3) << "no part of a line is given for a line";
    EXPECT_EQ(small.Error(), EIO);
    ASSERT_TRUE(small.Rewind());
    EXPECT_EQ(Rest(small).size(), 4U);
}

}  // namespace
}  // namespace norva
