#include "norva/file_util.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "store/store_reader.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

namespace norva {
namespace {

using test::CPackedValues;
using test::CTemporaryFolder;
using test::ReadWholeFile;
using test::StoreSample;
using namespace std::string_literals;

/// The deleted marks of all lines, a character a location.
std::string Marks(CNorvaFileUtil& store) {
    std::string marks;
    for (int line = 0; line < store.ProfileCount; ++line) {
        for (long at = 0; at < store.GetProfileLocationNum(line, 0); ++at) {
            marks += store.IsLocMarkedToDelete(line, at) != 0 ? 'x' : '.';
        }
        marks += '|';
    }
    return marks;
}

TEST(StoreChanges, MarksAndFlagsAreSavedOnClosing) {
    CTemporaryFolder folder;
    std::string const path = folder / "a.nvt";
    ASSERT_TRUE(test::WriteSampleStore(path));
    CNorvaFileUtil store;
    auto const reopen = [&] { return store.SetFileName(path, kReopenStore, nullptr); };
    ASSERT_EQ(reopen(), 1);
    store.MarkLocToDelete(0, 0, 1);
    store.MarkLocToDelete(0, 4, 1);
    store.MarkLocToDelete(0, 4, 1);
    store.MarkLocToDelete(1, 2, 1);
    store.SetProfileFlag(1, -3);
    EXPECT_EQ(store.GetProfileLocationNum(0, 1), 3);
    EXPECT_EQ(reopen(), 1) << "opening closes, and saves, what was open";
    EXPECT_EQ(Marks(store), "x...x|..x|");
    EXPECT_EQ(store.GetProfileLocationNum(0, 0), 5);
    EXPECT_EQ(store.GetProfileLocationNum(0, 1), 3);
    EXPECT_EQ(test::ReadSample(store), test::MakeStoreSample());
    EXPECT_EQ(store.VerifyData(), 1);
    std::string name;
    long count = 0;
    int flag = 0;
    EXPECT_EQ(store.GetProfileInfo(1, name, count, flag), 1);
    EXPECT_EQ(flag, -3);

    std::string const marked = ReadWholeFile(path);
    store.MarkLocToDelete(0, 0, 1);
    store.SetProfileFlag(1, -3);
    ASSERT_EQ(store.CloseCurFile(), 1);
    EXPECT_EQ(ReadWholeFile(path), marked);
    ASSERT_EQ(reopen(), 1);
    for (long at : {0L, 4L}) store.MarkLocToDelete(0, at, 0);
    store.MarkLocToDelete(1, 2, 0);
    ASSERT_EQ(store.CloseCurFile(), 1);
    ASSERT_EQ(reopen(), 1);
    EXPECT_EQ(Marks(store), ".....|...|");
}

TEST(StoreChanges, AFileWithoutTheOwnSectionGainsItWithAMark) {
    CTemporaryFolder folder;
    std::string const path = folder / "a.nvt";
    test::WriteWholeFile(path,
                         "PROFILES START\nA, B,2\nPROFILES END\nCHANNELS START\nMag,total,nT,0,1,5,0,2,-1\n"
                         "Sum,,1,3,3,0,0,-1\nDATA START\n\1\0\2\0\3\0\0\0\4\0\0\0DATA END\n"s);
    CNorvaFileUtil store;
    for (char const* marks : {"..|", ".x|"}) {
        ASSERT_EQ(store.SetFileName(path, kReopenStore, nullptr), 1) << GetLastErrorText();
        StoreSample const sample = test::ReadSample(store);
        EXPECT_EQ(sample.lines[0].name, "A, B");
        EXPECT_EQ(store.GetChannelFullName(0), "Mag (total,nT)");
        EXPECT_EQ(sample.channels[0].values, "\1\0\2\0"s);
        EXPECT_EQ(store.GetChannelArraySize(1), 3);
        EXPECT_EQ(sample.channels[1].values, "\3\0\0\0\4\0\0\0"s) << "its first elements, which are all there are";
        EXPECT_EQ(Marks(store), marks);
        EXPECT_EQ(store.VerifyData(), 1);
        store.MarkLocToDelete(0, 1, 1);
        ASSERT_EQ(store.CloseCurFile(), 1) << GetLastErrorText();
    }
}

/// A value to sort by: few different ones, so that many are equal, and no-data among them.
std::string AnyKey(int dataType) {
    int const number = *rc::gen::inRange(-3, 4);
    bool const isGap = *rc::gen::inRange(0, 5) == 0;
    CPackedValues packed;
    switch (dataType) {
        case DataType::kFloat:
            return packed.Add(isGap ? kNoDataFloat : static_cast<float>(number) * 1e29F).bytes;
        case DataType::kDouble:
            return packed.Add(isGap ? (number < 0 ? std::nan("") : kNoDataDouble) : number / 3.0 + 1e30 * (number > 2))
                .bytes;
        case DataType::kText:
            return packed.Text(isGap ? "*" : std::string(1, static_cast<char>('A' + number * 20)), 2).bytes;
        case DataType::kShort:
            return packed.Add(isGap ? kNoDataShort : static_cast<std::int16_t>(number * 10922)).bytes;
        default:
            return packed.Add(isGap ? kNoDataLong : std::int32_t{number * 715'827'882}).bytes;
    }
}

/// -1, 0 or 1 as the first comes before, beside or after the second.
int Compare(int dataType, std::string const& first, std::string const& second) {
    if (dataType == DataType::kText) {
        bool const firstGap = first == "* ";
        bool const secondGap = second == "* ";
        if (firstGap || secondGap) return int{firstGap} - int{secondGap};
        return std::clamp(first.compare(second), -1, 1);
    }
    auto const number = [&](std::string const& bytes) {
        auto const as = [&](auto value, auto gap) {
            std::memcpy(&value, bytes.data(), sizeof value);
            bool const isGap = value == gap || value != value;
            return isGap ? std::numeric_limits<double>::infinity() : static_cast<double>(value);
        };
        if (dataType == DataType::kFloat) return as(0.0F, kNoDataFloat);
        if (dataType == DataType::kDouble) return as(0.0, kNoDataDouble);
        return dataType == DataType::kShort ? as(std::int16_t{}, kNoDataShort) : as(std::int32_t{}, kNoDataLong);
    };
    return int{number(first) > number(second)} - int{number(first) < number(second)};
}

TEST(StoreChanges, SortingIsStableWithNoDataLastAndMovesWholeRows) {
    CTemporaryFolder folder;
    std::string const path = folder / "a.nvt";
    bool const holds = rc::check([&] {
        int const dataType = *rc::gen::inRange(0, 6);
        StoreSample sample;
        sample.lines = {{"L", *rc::gen::inRange(0L, 30L)}, {"M", *rc::gen::inRange(0L, 30L)}};
        long const total = sample.lines[0].locations + sample.lines[1].locations;
        std::vector<std::string> keys;
        CPackedValues key, order, both;
        for (long at = 0; at < total; ++at) {
            key.bytes += keys.emplace_back(AnyKey(dataType));
            order.Add(static_cast<std::int32_t>(at));
            both.Add(static_cast<std::int16_t>(at)).Add(static_cast<std::int16_t>(-at));
        }
        bool const isText = dataType == DataType::kText;
        sample.channels = {{{"Order", "", DataType::kLong, 0, 0, 1, 0, 0, -1, 0}, order.bytes},
                           {{"Both", "", DataType::kShort, 1, 0, 2, 0, 0, -1, 0}, both.bytes},
                           {{"Key", "", dataType, isText ? 1 : 0, 0, isText ? 2 : 1, 0, 0, -1, 0}, key.bytes}};
        CNorvaFileUtil store;
        RC_ASSERT(test::WriteSample(store, path, sample) && store.SetFileName(path, kReopenStore, nullptr) == 1);
        for (int line = 0; line < 2; ++line) {
            for (long at = 0; at < sample.lines[static_cast<std::size_t>(line)].locations; at += 3) {
                store.MarkLocToDelete(line, at, 1);
            }
        }
        RC_ASSERT(store.SortByChannel(nullptr, 2, 1, -1, 1, -1) == 1);
        RC_ASSERT(store.CloseCurFile() == 1 && store.SetFileName(path, kReopenStore, nullptr) == 1);
        RC_ASSERT(store.VerifyData() == 1);

        std::vector<double> row;
        long first = 0;
        for (int line = 0; line < 2; ++line) {
            long const count = sample.lines[static_cast<std::size_t>(line)].locations;
            std::vector<bool> seen(static_cast<std::size_t>(count));
            long before = -1;
            for (long at = 0; at < count; ++at) {
                RC_ASSERT(store.GetArrayData(0, line, at, row) == 1);
                auto const was = static_cast<long>(row[0]);
                RC_ASSERT((was >= first && was < first + count && !seen[static_cast<std::size_t>(was - first)]));
                seen[static_cast<std::size_t>(was - first)] = true;
                std::string value(keys[0].size(), '\0');
                RC_ASSERT(store.ReadColumn(2, line, at, 1, value.data()) == 1);
                RC_ASSERT(value == keys[static_cast<std::size_t>(was)]);
                RC_ASSERT(store.GetArrayData(1, line, at, row) == 1);
                RC_ASSERT(row == std::vector<double>({static_cast<double>(was), static_cast<double>(-was)}));
                RC_ASSERT(store.IsLocMarkedToDelete(line, at) == ((was - first) % 3 == 0 ? 1 : 0));
                if (before >= 0) {
                    int const order = Compare(dataType, keys[static_cast<std::size_t>(before)], value);
                    RC_ASSERT((order < 0 || (order == 0 && before < was)));
                }
                before = was;
            }
            first += count;
        }
    });
    EXPECT_TRUE(holds);
}

/// Large enough that its columns take several system calls.
StoreSample LargeSample(std::int32_t seed) {
    StoreSample sample;
    sample.lines = {{"L", 40'000}};
    CPackedValues wide, array;
    for (std::int32_t at = 0; at < 40'000; ++at) {
        wide.Add(static_cast<double>((at * 7919 + seed) % 40'009));
        array.Add(at).Add(at + seed);
    }
    sample.channels = {{{"Wide", "", DataType::kDouble, 0, 0, 1, 0, 0, -1, 0}, wide.bytes},
                       {{"Array", "", DataType::kLong, 1, 0, 2, 0, 0, -1, 0}, array.bytes}};
    return sample;
}

TEST(StoreChanges, AFailureAtAnySystemCallKeepsTheOlderStore) {
    StoreSample const older = LargeSample(1);
    StoreSample const newer = LargeSample(2);
    struct Case {
        char const* what;
        std::function<bool(CNorvaFileUtil&, std::string const&)> run;
    };
    auto const open = [](CNorvaFileUtil& store, std::string const& path) {
        return store.SetFileName(path, kReopenStore, nullptr) != 0;
    };
    Case const cases[] = {
        {"writing",
         [&](CNorvaFileUtil& store, std::string const& path) { return test::WriteSample(store, path, newer); }},
        {"marking",
         [&](CNorvaFileUtil& store, std::string const& path) {
             return open(store, path) && store.MarkLocToDelete(0, 7, 1) != 0 && store.CloseCurFile() != 0;
         }},
        {"sorting", [&](CNorvaFileUtil& store, std::string const& path) {
             return open(store, path) && store.SortByChannel(nullptr, 0, 1, -1, 1, -1) != 0 &&
                    store.CloseCurFile() != 0;
         }}};
    for (auto const& [what, run] : cases) {
        CTemporaryFolder folder;
        std::string const path = folder / "a.nvt";
        CNorvaFileUtil store;
        ASSERT_TRUE(test::WriteSample(store, path, older));
        std::string const before = ReadWholeFile(path);
        ASSERT_TRUE(run(store, path));
        std::string const after = ReadWholeFile(path);
        ASSERT_NE(before, after);
        int failed = 0;
        for (bool isDone = false; !isDone; ++failed) {
            test::WriteWholeFile(path, before);
            int calls = 0;
            bool isRenamed = false;
            SetFaultHook([&](FaultPoint point, std::string const&) {
                if (point == FaultPoint::Remove) return 0;
                // A folder that takes no new files, or a full disk.
                if (calls++ == failed) return point == FaultPoint::Open ? EACCES : ENOSPC;
                isRenamed = isRenamed || point == FaultPoint::Rename;
                return 0;
            });
            {
                CNorvaFileUtil failing;
                isDone = run(failing, path);
            }
            SetFaultHook({});
            if (!isDone) {
                std::string const text = GetLastErrorText();
                EXPECT_TRUE(text.ends_with("No space left on device") || text.ends_with("Permission denied")) << text;
            }
            EXPECT_TRUE(ReadWholeFile(path) == (isDone || isRenamed ? after : before)) << what << " call " << failed;
            EXPECT_EQ(folder.Count(), 1U) << what << " call " << failed;
            ASSERT_LT(failed, 500);
        }
        EXPECT_GT(failed, 10) << what;
    }
}

TEST(StoreChanges, AReaderKeepsTheStoreThatItOpened) {
    CTemporaryFolder folder;
    std::string const path = folder / "a.nvt";
    CNorvaFileUtil reader;
    CNorvaFileUtil writer;
    ASSERT_TRUE(test::WriteSample(writer, path, LargeSample(1)));
    ASSERT_EQ(reader.SetFileName(path, kReopenStore, nullptr), 1);
    ASSERT_TRUE(test::WriteSample(writer, path, LargeSample(2)));
    std::string const newer = ReadWholeFile(path);
    EXPECT_EQ(test::ReadSample(reader), LargeSample(1));

    reader.MarkLocToDelete(0, 0, 1);
    EXPECT_EQ(reader.SortByChannel(nullptr, 0, 1, -1, 1, -1), 0);
    EXPECT_EQ(reader.CloseCurFile(), 0) << "its marks belong to a store that is no longer there";
    EXPECT_EQ(ReadWholeFile(path), newer);
}

TEST(StoreChanges, ReadingGoesOnAfterAFailureAndStopsAtACutFile) {
    CTemporaryFolder folder;
    std::string const path = folder / "a.nvt";
    CNorvaFileUtil store;
    ASSERT_TRUE(test::WriteSample(store, path, LargeSample(1)));
    ASSERT_EQ(store.SetFileName(path, kReopenStore, nullptr), 1);
    std::vector<double> value;
    SetFaultHook([](FaultPoint point, std::string const&) { return point == FaultPoint::Read ? EIO : 0; });
    EXPECT_EQ(store.GetArrayData(0, 0, 3, value), 0);
    SetFaultHook({});
    EXPECT_NE(GetLastErrorText().find("Input/output error"), std::string::npos) << GetLastErrorText();
    EXPECT_EQ(store.GetArrayData(0, 0, 3, value), 1);
    EXPECT_EQ(value, std::vector<double>{3 * 7919 + 1});
    std::filesystem::resize_file(path, 1000);
    EXPECT_EQ(store.GetArrayData(0, 0, 39'999, value), 0);
    EXPECT_EQ(store.VerifyData(), 0);
    EXPECT_EQ(store.SortByChannel(nullptr, 0, 1, -1, 1, -1), 0);
    EXPECT_NE(GetLastErrorText().find("cut short while it was open"), std::string::npos) << GetLastErrorText();
}

/// Windows of the smallest size, shared by many columns, with values across their ends and one larger than any.
TEST(StoreChanges, SmallWindowsGiveTheSameValues) {
    CTemporaryFolder folder;
    StoreSample sample = test::MakeStoreSample();
    sample.channels[4].description.arraySize = 700;
    sample.channels[4].values.clear();
    for (int at = 0; at < 8; ++at) sample.channels[4].values += std::string(700, static_cast<char>('a' + at));
    sample.channels[5].description.arraySize = 30;
    sample.channels[5].values.resize(std::size_t{8} * 30 * 4, '\x05');
    CNorvaFileUtil store;
    ASSERT_TRUE(test::WriteSample(store, folder / "a.nvt", sample)) << GetLastErrorText();
    for (std::size_t budget : {std::size_t{1}, std::size_t{1500}, CStoreReader::kWindowBytes}) {
        CStoreReader reader(budget);
        std::string reason;
        ASSERT_TRUE(reader.Open(folder / "a.nvt", reason)) << reason;
        for (int at : {0, 7, 3, 4, 2, 6, 1, 5}) {
            StoreProfile const& line = reader.Structure().profiles[at < 5 ? 0 : 1];
            for (std::size_t channel = 0; channel < sample.channels.size(); ++channel) {
                auto const width = static_cast<std::size_t>(reader.Structure().channels[channel].valueWidth);
                std::string const expected =
                    sample.channels[channel].values.substr(static_cast<std::size_t>(at) * width, width);
                EXPECT_EQ(std::string(reader.WholeValue(channel, line, at - line.first), width), expected) << channel;
                std::size_t const inColumn = reader.Structure().channels[channel].columnWidth;
                EXPECT_EQ(std::string(reader.ColumnValue(channel, line, at - line.first), inColumn),
                          expected.substr(0, inColumn))
                    << channel;
            }
        }
    }
}

}  // namespace
}  // namespace norva
