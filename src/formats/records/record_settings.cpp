#include "formats/records/record_settings.h"

#include "formats/records/binary_conversion.h"
#include "formats/records/binary_record.h"

#include <algorithm>

namespace norva {

namespace {

using Format = RecordChannel::Format;

/// What is wrong with a channel, "" for nothing.
std::string ProblemOf(RecordChannel const& channel) {
    if (channel.name.empty()) return "it has no name";
    if (channel.format == Format::None) return "it has no format";
    if (FindConversion(channel.format, channel.dataType) == nullptr) {
        return "its data type is " + std::to_string(channel.dataType) +
               ", which is neither float, double, long nor short";
    }
    return {};
}

}  // namespace

void SetChannelCount(RecordSettings& settings, std::size_t count) {
    std::size_t at = settings.channels.size();
    settings.channels.resize(count);
    for (; at < count; ++at) settings.channels[at].name = "Ch" + std::to_string(at + 1);
}

bool IsRecordKnown(RecordSettings const& settings) {
    return !settings.channels.empty() && std::ranges::all_of(settings.channels, [](RecordChannel const& channel) {
        return !channel.name.empty() && channel.format != Format::None;
    });
}

void FitToFile(RecordSettings& settings, std::uint64_t fileLength) {
    std::int64_t records = 0;
    std::int64_t points = 0;
    if (IsRecordKnown(settings)) {
        records = CountRecords(fileLength, RecordSize(settings.channels)).records;
        points = settings.pointsPerLine.value_or(0);
        if (points == 0 || points > records) points = records;
    }
    settings.records = records;
    settings.pointsPerLine = points;
}

Status CheckRecordSettings(RecordSettings const& settings) {
    if (settings.pointsPerLine.value_or(0) < 1) return Status::Failure("Set Number of points in a line");
    bool const isWhole = std::ranges::all_of(settings.channels, [](RecordChannel const& channel) {
        return !channel.name.empty() && channel.dataType != DataType::kSkipped && channel.format != Format::None;
    });
    if (!isWhole) return Status::Failure("Check settings for data column");
    if (settings.fiducial && settings.frequency < 1) return Status::Failure("Set the Sampling Frequency");
    return {};
}

Status CompleteRecordSettings(RecordSettings& settings, std::string const& path, std::uint64_t fileLength) {
    auto const fail = [&path](std::string reason) {
        return Status::Failure("Couldn't import the file", path, std::move(reason));
    };
    if (settings.channels.empty()) {
        return fail(
            "Fixed-length records do not say how they are laid out: name, format and data type of each channel "
            "are needed.");
    }
    if (settings.channels.size() > kMostRecordChannels) {
        return fail("A record can have " + std::to_string(kMostRecordChannels) + " channels at most, not " +
                    std::to_string(settings.channels.size()) + ".");
    }
    for (std::size_t i = 0; i < settings.channels.size(); ++i) {
        std::string const problem = ProblemOf(settings.channels[i]);
        if (!problem.empty()) {
            return fail("Channel " + std::to_string(i + 1) + " \"" + settings.channels[i].name + "\": " + problem +
                        ".");
        }
    }
    if (settings.records.value_or(0) < 0) {
        return fail("The number of records is " + std::to_string(*settings.records) + ".");
    }
    if (settings.pointsPerLine.value_or(1) < 1) {
        return fail("The number of points per line is " + std::to_string(*settings.pointsPerLine) + ".");
    }
    if (settings.fiducial && settings.frequency < 1) {
        return fail("The sampling frequency is " + std::to_string(settings.frequency) + " Hz.");
    }
    if (!settings.records) settings.records = CountRecords(fileLength, RecordSize(settings.channels)).records;
    if (!settings.pointsPerLine && *settings.records == 0) return fail("There are no records to import.");
    if (!settings.pointsPerLine) settings.pointsPerLine = settings.records;
    return {};
}

}  // namespace norva
