#include "norva/file_util.h"

#include "norva/import_export.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <tuple>

namespace norva {
namespace {

using test::CPackedValues;
using test::CTemporaryFolder;
using test::StoreSample;

std::size_t PackedWidth(NorvaChannelStruct const& channel) {
    static constexpr std::size_t kWidths[] = {4, 8, 4, 4, 1, 2};
    bool const isMany = channel.dataType == DataType::kText || channel.recordType == 1;
    return kWidths[channel.dataType] * static_cast<std::size_t>(isMany ? channel.arraySize : 1);
}

/// A value as GetData gives it, as bits: the doubles of NaNs compare too.
std::optional<std::string> PackedData(CNorvaFileUtil& store, int channel, int line, long location) {
    float single = 0;
    double number = 0;
    int integer = 0;
    long longInteger = 0;
    std::string text;
    int dataType = -1;
    if (store.GetData(channel, line, location, single, number, integer, longInteger, text, dataType) == 0) return {};
    EXPECT_EQ(integer, longInteger);
    CPackedValues packed;
    if (dataType == DataType::kFloat) packed.Add(single);
    if (dataType == DataType::kDouble) packed.Add(number);
    if (dataType == DataType::kInt || dataType == DataType::kLong) packed.Add(std::int32_t{integer});
    if (dataType == DataType::kShort) packed.Add(static_cast<std::int16_t>(integer));
    if (dataType == DataType::kText) packed.bytes = text;
    return packed.bytes;
}

/// Any text of any bytes, those that could break a line more often.
rc::Gen<std::string> AnyName() {
    return rc::gen::container<std::string>(
        rc::gen::oneOf(rc::gen::arbitrary<char>(), rc::gen::elementOf(std::string("\n\r,\0 END", 8))));
}

rc::Gen<StoreSample> AnyStore() {
    return rc::gen::exec([] {
        StoreSample sample;
        std::size_t locations = 0;
        for (int line = *rc::gen::inRange(0, 4); line > 0; --line) {
            sample.lines.push_back({*AnyName(), *rc::gen::inRange(0L, 30L)});
            locations += static_cast<std::size_t>(sample.lines.back().locations);
        }
        for (int channel = *rc::gen::inRange(0, 5); channel > 0; --channel) {
            auto& made = sample.channels.emplace_back();
            made.description = {*AnyName(),
                                *AnyName(),
                                *rc::gen::inRange(0, 6),
                                *rc::gen::inRange(0, 2),
                                0,
                                *rc::gen::inRange(1, 5),
                                *rc::gen::inRange(-1, 5),
                                *rc::gen::arbitrary<int>(),
                                *rc::gen::arbitrary<int>(),
                                0};
            made.values =
                *rc::gen::container<std::string>(locations * PackedWidth(made.description), rc::gen::arbitrary<char>());
        }
        return sample;
    });
}

/// Hands over every value by a call of its own.
void SaveOneByOne(CNorvaFileUtil& store, StoreSample const& sample) {
    for (auto const& channel : sample.channels) {
        NorvaChannelStruct const& of = channel.description;
        bool const isMany = of.dataType == DataType::kText || of.recordType == 1;
        std::size_t const width = PackedWidth(of) / static_cast<std::size_t>(isMany ? of.arraySize : 1);
        for (std::size_t at = 0; at < channel.values.size(); at += width) {
            alignas(8) char value[8];
            std::memcpy(value, channel.values.data() + at, width);
            RC_ASSERT(store.SaveData(of.dataType, value) == 1);
        }
    }
}

TEST(FileUtil, AnyStoreReadsBackAsItWasWrittenInPiecesOfAnySize) {
    CTemporaryFolder folder;
    bool const holds = rc::check([&] {
        StoreSample const sample = *AnyStore();
        CNorvaFileUtil store;
        RC_ASSERT(store.SetFileName(folder / "a.nvt", kCreateStore, nullptr) != 0);
        for (auto const& line : sample.lines) RC_ASSERT(store.AddProfileToStructure(line.name, line.locations) == 1);
        for (auto const& channel : sample.channels) {
            RC_ASSERT(store.AddChannelToStructure(channel.description) == 1);
            RC_ASSERT(store.AddChannelToStructure("not kept", "", -1, 1, 4, 0, 0, 0, 0) == 1);
        }
        RC_ASSERT(store.SaveChannelStructure() == 1 && store.SaveProfileStructure() == 1);
        RC_ASSERT(store.StartWriteData() == 1);
        if (*rc::gen::arbitrary<bool>()) {
            SaveOneByOne(store, sample);
        } else {
            std::string bytes;
            for (auto const& channel : sample.channels) bytes += channel.values;
            for (std::size_t from = 0; from < bytes.size();) {
                auto const piece = std::min<std::size_t>(*rc::gen::inRange<std::size_t>(1, 60), bytes.size() - from);
                RC_ASSERT(store.WriteHuge(bytes.data() + from, piece) == 1);
                from += piece;
            }
        }
        RC_ASSERT(store.EndWriteData() == 1 && store.CloseCurFile() == 1);
        RC_ASSERT(folder.Count() == 1U);

        RC_ASSERT(store.SetFileName(folder / "a.nvt", kReopenStore, nullptr) == 1);
        RC_ASSERT(test::ReadSample(store) == sample);
        RC_ASSERT(store.VerifyData() == 1);
        std::vector<std::shared_ptr<void const>> owners(sample.channels.size());
        std::vector<std::span<std::byte const>> mapped(sample.channels.size());
        for (int channel = 0; channel < store.ChannelCount; ++channel) {
            auto const at = static_cast<std::size_t>(channel);
            RC_ASSERT(store.MapColumn(channel, owners[at], mapped[at]) == 1);
        }
        RC_ASSERT(store.MapColumn(store.ChannelCount, owners.emplace_back(), mapped.emplace_back()) == 0);
        for (int channel = 0; channel < store.ChannelCount; ++channel) {
            auto const& written = sample.channels[static_cast<std::size_t>(channel)];
            bool const isText = written.description.dataType == DataType::kText;
            std::size_t const width = PackedWidth(written.description);
            std::size_t place = 0;
            for (int line = 0; line < store.ProfileCount; ++line) {
                for (long at = 0; at < store.GetProfileLocationNum(line, 0); ++at, place += width) {
                    std::string expected = written.values.substr(place, width);
                    if (isText) expected.erase(expected.find_last_not_of(' ') + 1);
                    auto const found = PackedData(store, channel, line, at);
                    RC_ASSERT(found.has_value());
                    RC_ASSERT((isText ? *found == expected : expected.starts_with(*found)));
                }
            }
        }
        RC_ASSERT(store.CloseCurFile() == 1);
        for (std::size_t channel = 0; channel < sample.channels.size(); ++channel) {
            auto const* const bytes = reinterpret_cast<char const*>(mapped[channel].data());
            RC_ASSERT(std::string(bytes, mapped[channel].size()) == sample.channels[channel].values);
        }
    });
    EXPECT_TRUE(holds);
}

TEST(FileUtil, WhatIsNotThereGivesZero) {
    CTemporaryFolder folder;
    ASSERT_TRUE(test::WriteSampleStore(folder / "a.nvt"));
    CNorvaFileUtil store;
    EXPECT_FALSE(PackedData(store, 0, 0, 0));
    ASSERT_EQ(store.SetFileName(folder / "a.nvt", kReopenStore, nullptr), 1);
    EXPECT_EQ(store.GetChannelFullName(1), "Mag (nT)");
    EXPECT_EQ(store.GetChannelFullName(2), "Fid");
    for (auto const& [channel, line, location] : std::vector<std::tuple<int, int, long>>{
             {-1, 0, 0}, {6, 0, 0}, {0, -1, 0}, {0, 2, 0}, {0, 0, -1}, {0, 0, 5}, {0, 1, 3}}) {
        EXPECT_FALSE(PackedData(store, channel, line, location)) << channel << " " << line << " " << location;
    }
    EXPECT_EQ(store.GetFileChanIndex(6), -1);
    std::vector<double> elements;
    EXPECT_EQ(store.GetArrayData(5, 0, 4, elements), 1);
    EXPECT_EQ(elements, (std::vector<double>{4, 8, 12}));
    EXPECT_EQ(store.GetArrayData(3, 0, 4, elements), 1);
    EXPECT_EQ(elements, std::vector<double>{-4});
    EXPECT_EQ(store.GetArrayData(4, 0, 0, elements), 0) << "a text has no elements";
    char buffer[64];
    EXPECT_EQ(store.ReadColumn(0, 0, 4, 2, buffer), 0);
    EXPECT_EQ(store.ReadColumn(0, 0, std::numeric_limits<long>::max(), 1, buffer), 0);
    EXPECT_EQ(store.ReadColumn(0, 0, 5, 0, buffer), 1);
    EXPECT_EQ(store.IsLocMarkedToDelete(0, 99), 0);
    EXPECT_EQ(store.MarkLocToDelete(0, 5, 1), 0);
    EXPECT_EQ(store.SetProfileFlag(2, 1), 0);
    EXPECT_EQ(store.SortByChannel(nullptr, 6, 1, -1, 1, -1), 0);
    EXPECT_EQ(store.WriteHuge(buffer, 1), 0) << "it is open for reading";
    EXPECT_EQ(store.CloseCurFile(), 1);
    EXPECT_EQ(store.ProfileCount + store.ChannelCount, 0);
}

}  // namespace
}  // namespace norva
