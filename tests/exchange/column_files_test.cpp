#include "exchange/column_files.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <sys/resource.h>

namespace norva {
namespace {

using test::CTemporaryFolder;

/// Keeps the last run that it was handed.
class CCatchingStore : public CNorvaFileUtil {
public:
    int WriteHuge(void const* buffer, std::size_t byteCount) override {
        caught.assign(static_cast<char const*>(buffer), byteCount);
        return isWilling ? 1 : 0;
    }
    std::string caught;
    bool isWilling = true;
};

/// Lets the process have few open files for a while.
class CFewDescriptors {
public:
    CFewDescriptors() {
        getrlimit(RLIMIT_NOFILE, &m_before);
        rlimit few = m_before;
        few.rlim_cur = 64;
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~CFewDescriptors() { setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    rlimit m_before{};
};

TEST(ColumnFiles, ManyColumnsOfAnyWidthComeBackWithFewDescriptors) {
    constexpr int kColumns = 300;
    CTemporaryFolder folder;
    CFewDescriptors few;
    CColumnFiles files;
    ASSERT_TRUE(files.Create(folder / "c", kColumns, folder / "input.xyz"));
    EXPECT_EQ(folder.Count(), std::size_t{kColumns - 16}) << "those that stay open need no name";
    std::vector<std::string> expected(kColumns);
    // From one byte to more than a column's buffer holds, wide and narrow values by turns in one column.
    std::size_t const widths[] = {1, 8, 700, 0, CColumnFiles::kBufferSize, 2, 30'000};
    for (std::size_t turn = 0; turn < 40; ++turn) {
        for (int column = 0; column < kColumns; ++column) {
            if (column > 20 && turn > 8) continue;
            auto const at = static_cast<std::size_t>(column);
            std::string const value(widths[(at + turn) % std::size(widths)], static_cast<char>('a' + turn % 26));
            if (turn % 5 == 4) {
                ASSERT_TRUE(files.AppendBytes(column, (value + value).data(), 2 * value.size()));
                expected[at] += value;
            } else if (char* const room = files.Append(column, value.size())) {
                std::memcpy(room, value.data(), value.size());
            }
            expected[at] += value;
            ASSERT_EQ(files.Size(column), expected[at].size()) << column;
        }
    }
    CCatchingStore store;
    for (int column = 0; column < kColumns; ++column) {
        auto const& bytes = expected[static_cast<std::size_t>(column)];
        char part[3] = "";
        ASSERT_TRUE(files.Read(column, bytes.size() - 2, part, 2));
        EXPECT_EQ(std::string(part), bytes.substr(bytes.size() - 2));
        EXPECT_FALSE(files.Read(column, bytes.size() - 2, part, 3)) << "past the end";
        ASSERT_TRUE(files.HandOver(column, store));
        EXPECT_TRUE(store.caught == bytes) << column;
    }
    EXPECT_EQ(folder.Count(), 0U);
    EXPECT_FALSE(files.Failed());
}

TEST(ColumnFiles, WhatCannotBeCreatedLeavesNothingBehind) {
    struct Case {
        char const* base;
        char const* input;
        char const* reason;
    };
    for (auto const& [base, input, reason] :
         {Case{"survey", "survey.2", "the input file itself"}, Case{"survey", "./survey.2", "the input file itself"},
          Case{"folder", "survey.2", "Is a directory"}, Case{"none/survey", "survey.2", "No such file"}}) {
        CTemporaryFolder folder;
        test::WriteWholeFile(folder / "survey.2", "line 1\n1 2 3\n");
        std::filesystem::create_directory(folder / "folder.3");
        CColumnFiles files;
        Status const status = files.Create(folder / base, 4, folder / input);
        EXPECT_NE(status.Text().find(reason), std::string::npos) << base << " " << input << ": " << status.Text();
        EXPECT_EQ(folder.Count(), 2U);
        EXPECT_EQ(test::ReadWholeFile(folder / "survey.2"), "line 1\n1 2 3\n");
    }
}

TEST(ColumnFiles, AFullDiskFailsEverythingThatFollows) {
    CTemporaryFolder folder;
    {
        CColumnFiles files;
        ASSERT_TRUE(files.Create(folder / "c", 2, ""));
        SetFaultHook([](FaultPoint point, std::string const&) { return point == FaultPoint::Write ? ENOSPC : 0; });
        std::string const value(50'000, 'v');
        EXPECT_NE(files.Append(0, value.size()), nullptr) << "there is room in the buffer";
        EXPECT_NE(files.Append(1, 8), nullptr);
        EXPECT_EQ(files.Append(0, value.size()), nullptr);
        SetFaultHook({});
        EXPECT_TRUE(files.Failed());
        std::string const reason = "Couldn't write the file : " + (folder / "c.0") + "\nNo space left on device";
        EXPECT_EQ(files.Error().Text(), reason);
        CCatchingStore store;
        EXPECT_EQ(files.Append(1, 8), nullptr);
        EXPECT_FALSE(files.AppendBytes(1, value.data(), value.size()));
        EXPECT_EQ(files.HandOver(1, store).Text(), reason);
        EXPECT_EQ(store.caught, "");
    }
    EXPECT_EQ(folder.Count(), 0U);

    CColumnFiles files;
    ASSERT_TRUE(files.Create(folder / "c", 2, ""));
    files.AppendBytes(0, "ab", 2);
    CCatchingStore store;
    ASSERT_TRUE(files.HandOver(1, store)) << "an empty column is a run of no bytes";
    store.isWilling = false;
    EXPECT_EQ(files.HandOver(0, store).Text(), "Couldn't write the file");
    EXPECT_EQ(store.caught, "ab");
}

TEST(ColumnFiles, ReadingInPiecesOpensAFileOnce) {
    CTemporaryFolder folder;
    CFewDescriptors few;
    CColumnFiles files;
    ASSERT_TRUE(files.Create(folder / "c", 20, ""));
    for (int const column : {18, 19}) ASSERT_TRUE(files.AppendBytes(column, "abcdef", 6));
    int opened = 0;
    SetFaultHook([&](FaultPoint point, std::string const&) {
        opened += point == FaultPoint::Open ? 1 : 0;
        return 0;
    });
    std::string read;
    for (int const column : {18, 18, 19, 19}) {
        char part[3];
        for (std::uint64_t at = 0; at < 6; at += 3) {
            EXPECT_TRUE(files.Read(column, at, part, 0));
            EXPECT_TRUE(files.Read(column, at, part, 3));
            read.append(part, 3);
        }
        if (column == 18) {
            EXPECT_TRUE(files.AppendBytes(column, "xyz", 3)) << "writing goes on";
        }
    }
    SetFaultHook({});
    EXPECT_EQ(read, "abcdefabcdefabcdefabcdef");
    CCatchingStore store;
    EXPECT_TRUE(files.HandOver(18, store));
    EXPECT_EQ(store.caught, "abcdefxyzxyz");
    EXPECT_LE(opened, 8);
}

TEST(ColumnFiles, ImportsOfTheSameNameKeepTheirColumnsApart) {
    CTemporaryFolder folder;
    CFewDescriptors few;
    test::WriteWholeFile(folder / "c.0", "left by another program");
    CColumnFiles first, second;
    ASSERT_TRUE(first.Create(folder / "c", 20, ""));
    ASSERT_TRUE(second.Create(folder / "c", 20, ""));
    CCatchingStore store;
    for (int const column : {0, 18}) {  // one that stays open, one that is opened again
        std::string const value(CColumnFiles::kBufferSize + 1, static_cast<char>('a' + column));
        ASSERT_TRUE(first.AppendBytes(column, value.data(), value.size()));
        ASSERT_TRUE(second.AppendBytes(column, "other", 5));
        EXPECT_TRUE(first.HandOver(column, store) && store.caught == value) << column;
        EXPECT_TRUE(second.HandOver(column, store) && store.caught == "other") << column;
    }
    EXPECT_EQ(test::ReadWholeFile(folder / "c.0"), "left by another program");
}

}  // namespace
}  // namespace norva
