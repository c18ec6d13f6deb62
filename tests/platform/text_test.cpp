#include "platform/text.h"

#include "platform/paths.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace norva {
namespace {

TEST(Text, TrimsWhiteSpaceAtBothEnds) {
    EXPECT_EQ(TrimLeft(" \t\n\v\f\ra b\t"), "a b\t");
    EXPECT_EQ(TrimRight(" a b \t\n\v\f\r"), " a b");
    EXPECT_EQ(Trim(" \t "), "");
    EXPECT_EQ(Trim("\xA0 x\x1F "), "\xA0 x\x1F");
    EXPECT_EQ(TrimOf("\"'a\"b'", "\"'"), "a\"b");
    EXPECT_EQ(TrimOf("''", "'"), "");
}

TEST(Text, ChangesWhatItSays) {
    std::string every;
    std::string expected;
    for (int c = 0; c < 256; ++c) {
        every += static_cast<char>(c);
        expected += static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    }
    EXPECT_EQ(ToUpper(every), expected);
    EXPECT_EQ(ReplaceAll("aaa-a", "aa", "b"), "ba-a");
    EXPECT_EQ(ReplaceAll("aa", "a", "aa"), "aaaa");
    EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
    std::string cells = "|";
    AppendRightAligned(cells, "ab", 4);
    AppendRightAligned(cells, "abcde", 4);
    EXPECT_EQ(cells, "|  ababcde");
}

TEST(Paths, TakesBothSeparators) {
    struct Case {
        std::string_view path, folder, name, base, extension;
    };
    for (auto const& [path, folder, name, base, extension] :
         {Case{"", "", "", "", ""}, Case{"survey.xyz", "", "survey.xyz", "survey", "xyz"},
          Case{"/data/a.b/survey", "/data/a.b/", "survey", "/data/a", ""},
          Case{"C:\\data\\line1.tar.gz", "C:\\data\\", "line1.tar.gz", "C:\\data\\line1.tar", "gz"},
          Case{"/data\\x.", "/data\\", "x.", "/data\\x", ""}, Case{"/data/", "/data/", "", "/data/", ""},
          Case{".xyz", "", ".xyz", ".xyz", "xyz"}}) {
        EXPECT_EQ(FolderOf(path), folder) << path;
        EXPECT_EQ(FileNameOf(path), name) << path;
        EXPECT_EQ(WithoutExtension(path), base) << path;
        EXPECT_EQ(ExtensionOf(path), extension) << path;
    }
    EXPECT_EQ(FullPath("/a/../b"), "/a/../b");
    EXPECT_EQ(FullPath("b.xyz"), std::filesystem::current_path().string() + "/b.xyz");
}

}  // namespace
}  // namespace norva
