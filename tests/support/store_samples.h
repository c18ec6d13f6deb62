#pragma once

#include "norva/file_util.h"

#include <bit>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace norva::test {

/// Packed values of a column, as WriteHuge takes them.
class CPackedValues {
public:
    template <typename Number>
    CPackedValues& Add(Number number) {
        static_assert(std::is_arithmetic_v<Number> && std::endian::native == std::endian::little);
        bytes.append(reinterpret_cast<char const*>(&number), sizeof number);
        return *this;
    }
    CPackedValues& Text(std::string text, std::size_t width) {
        text.resize(width, ' ');
        bytes += text;
        return *this;
    }
    std::string bytes;
};

struct SampleChannel {
    NorvaChannelStruct description;
    std::string values;  ///< of all profiles, packed

    bool operator==(SampleChannel const&) const = default;
};

/// What a store holds, to be written and compared.
struct StoreSample {
    struct Line {
        std::string name;
        long locations = 0;

        bool operator==(Line const&) const = default;
    };
    std::vector<Line> lines;
    std::vector<SampleChannel> channels;

    bool operator==(StoreSample const&) const = default;
};

/// Two lines of 5 and 3 locations; a channel of every type and an array of 3 integers; no-data in the second location
/// of the first line. Location n over both lines, from 0, holds X = 1000 + n / 4, Mag = 48000.5 - n, Fid = 100 * n,
/// Raw = -n, Station = "S<n>", Counts = {n, 2 * n, 3 * n}.
inline StoreSample MakeStoreSample() {
    constexpr int kText = DataType::kText;
    CPackedValues x, mag, fid, raw, station, counts;
    for (int n = 0; n < 8; ++n) {
        bool const isGap = n == 1;
        x.Add(isGap ? kNoDataDouble : 1000.0 + n / 4.0);
        mag.Add(isGap ? kNoDataFloat : 48000.5F - static_cast<float>(n));
        fid.Add(isGap ? kNoDataLong : std::int32_t{100 * n});
        raw.Add(isGap ? kNoDataShort : static_cast<std::int16_t>(-n));
        station.Text(isGap ? "*" : "S" + std::to_string(n), 6);
        for (int element = 1; element <= 3; ++element) counts.Add(isGap ? kNoDataLong : std::int32_t{n * element});
    }
    StoreSample sample;
    sample.lines = {{"L10", 5}, {"L20", 3}};
    sample.channels = {{{"X", "m", DataType::kDouble, 0, 0, 1, DisplayFormat::kFixed, 2, -1, 0}, x.bytes},
                       {{"Mag", "nT", DataType::kFloat, 0, 0, 1, DisplayFormat::kFixed, 2, -1, 0}, mag.bytes},
                       {{"Fid", "", DataType::kLong, 0, 0, 1, DisplayFormat::kFixed, 0, -1, 0}, fid.bytes},
                       {{"Raw", "mV", DataType::kShort, 0, 0, 1, DisplayFormat::kFixed, 0, -1, 0}, raw.bytes},
                       {{"Station", "", kText, 1, 0, 6, DisplayFormat::kFixed, 0, -1, 0}, station.bytes},
                       {{"Counts", "", DataType::kLong, 1, 0, 3, DisplayFormat::kFixed, 0, -1, 0}, counts.bytes}};
    return sample;
}

/// Writes the sample through the store's calls; false when one of them fails.
inline bool WriteSample(CNorvaFileUtil& store, std::string const& path, StoreSample const& sample) {
    if (store.SetFileName(path, kCreateStore, nullptr) == 0) return false;
    for (auto const& line : sample.lines) {
        if (store.AddProfileToStructure(line.name, line.locations) == 0) return false;
    }
    for (auto const& channel : sample.channels) {
        if (store.AddChannelToStructure(channel.description) == 0) return false;
    }
    if (store.SaveProfileStructure() == 0 || store.SaveChannelStructure() == 0 || store.StartWriteData() == 0) {
        return false;
    }
    for (auto const& channel : sample.channels) {
        if (store.WriteHuge(channel.values.data(), channel.values.size()) == 0) return false;
    }
    return store.EndWriteData() != 0 && store.CloseCurFile() != 0;
}

/// Everything of an open store, to compare it with what was written.
inline StoreSample ReadSample(CNorvaFileUtil& store) {
    StoreSample sample;
    for (int line = 0; line < store.ProfileCount; ++line) {
        int flag = 0;
        auto& read = sample.lines.emplace_back();
        store.GetProfileInfo(line, read.name, read.locations, flag);
    }
    for (int n = 0; n < store.ChannelCount; ++n) {
        int const index = store.GetFileChanIndex(n);
        auto& read = sample.channels.emplace_back();
        read.description.name = store.GetChannelName(index);
        read.description.units = store.GetChannelUnits(index);
        read.description.dataType = store.GetChannelDataType(index);
        read.description.recordType = store.GetChannelRecordType(index);
        read.description.arraySize = store.GetChannelArraySize(index);
        read.description.displayFormat = store.GetChannelDisplayFormat(index);
        read.description.decimalPlaces = store.GetChannelNumDecPlaces(index);
        read.description.templateFormat = store.GetChannelTemplateFormat(index);
        for (int line = 0; line < store.ProfileCount; ++line) {
            long const count = store.GetProfileLocationNum(line, 0);
            std::string values(static_cast<std::size_t>(count) * store.GetChannelValueSize(index), '\0');
            if (store.ReadColumn(index, line, 0, count, values.data()) == 0) return {};
            read.values += values;
        }
    }
    return sample;
}

/// Writes the small sample store; false when that fails.
inline bool WriteSampleStore(std::string const& path) {
    CNorvaFileUtil store;
    return WriteSample(store, path, MakeStoreSample());
}

}  // namespace norva::test
