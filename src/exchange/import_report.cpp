#include "norva/import_report.h"

#include "exchange/report_places.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/sha256.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace norva {

namespace {

constexpr std::size_t kLongestText = 200;
constexpr std::size_t kReadSize = 256 * 1024;

thread_local std::size_t mostPlaces = ReportFinding::kUsualPlaces;

}  // namespace

ReportKind const kReportKinds[] = {
    {"no_data", "marked as no-data", &ReportChannel::noData, false},
    {"missing", "missing at the end of a row", &ReportChannel::missing, false},
    {"out_of_range", "out of range, stored as no-data", &ReportChannel::outOfRange, true},
    {"altered", "stored as another number: out of range, or marked as missing in another way", &ReportChannel::altered,
     true},
    {"not_a_number", "not a number (NaN), stored as it stands", &ReportChannel::notNumber, false},
    {"unreadable", "unreadable, stored as 0 or no-data", &ReportChannel::unreadable, true},
    {"with_rest", "number followed by something else", &ReportChannel::withRest, true},
    {"with_fraction", "fraction dropped by a whole-number channel", &ReportChannel::withFraction, true},
    {"rounded", "rounded by the channel's precision", &ReportChannel::rounded, true},
    {"cut", "text cut to the channel's width", &ReportChannel::cut, true},
    {"dropped", "value without a location in the store", &ReportChannel::dropped, true},
    {"backwards", "below the value before it in its line", &ReportChannel::backwards, false},
    {nullptr, nullptr, nullptr, false},
};

ReportRowKind const kReportRowKinds[] = {
    {"rows_mended", "rows split otherwise than the rows around them", &ImportReport::mended, false},
    {"rows_with_fewer_values", "rows with fewer values than columns", &ImportReport::fewerValues, true},
    {"rows_with_more_values", "rows with more values than columns", &ImportReport::moreValues, true},
    {"cut_records", "records that the file cuts off", &ImportReport::cutRecords, true},
    {"left_out", "data that belongs to no line or channel", &ImportReport::leftOut, true},
    {"doubtful_markers", "markers that may be data", &ImportReport::doubtfulMarkers, true},
    {"shifted", "rows with an empty cell, values behind it shifted", &ImportReport::shifted, true},
    {"split", "rows with a value cut in pieces by separators", &ImportReport::split, true},
    {"skipped_rows", "rows skipped that read as data", &ImportReport::skippedRows, true},
    {"doubtful_names", "rows whose line may have a wrong name", &ImportReport::doubtfulNames, true},
    {"joined", "tracks or waypoints joined to the line before", &ImportReport::joined, true},
    {nullptr, nullptr, nullptr, false},
};

bool ImportReport::IsAccounted() const {
    std::uint64_t units = 0;
    std::uint64_t bytes = 0;
    for (ReportPart const& part : parts) {
        units += part.count;
        bytes += part.bytes;
    }
    std::uint64_t const locations = LocationCount();
    bool const channelsAddUp = std::ranges::all_of(channels, [&](ReportChannel const& channel) {
        std::uint64_t const without = channel.noData.count + channel.missing.count + channel.outOfRange.count +
                                      channel.altered.count + channel.notNumber.count;
        return channel.values == locations && without + channel.unreadable.count <= locations;
    });
    return units == unitsRead && bytes == bytesRead && bytesRead == sourceSize && channelsAddUp;
}

std::uint64_t ImportReport::LossCount() const {
    std::uint64_t count = 0;
    for (ReportRowKind const* kind = kReportRowKinds; kind->name != nullptr; ++kind) {
        if (kind->isLoss) count += (this->*kind->finding).count;
    }
    for (ReportChannel const& channel : channels) {
        for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
            if (kind->isLoss) count += (channel.*kind->finding).count;
        }
    }
    return count;
}

std::uint64_t ImportReport::LocationCount() const {
    std::uint64_t count = 0;
    for (ReportLine const& line : lines) count += line.locations;
    return count;
}

std::uint64_t ImportReport::RepeatedLines() const {
    return static_cast<std::uint64_t>(std::ranges::count_if(lines, &ReportLine::isRepeated));
}

std::size_t MostPlaces() {
    return mostPlaces;
}

CMostPlacesScope::CMostPlacesScope(std::size_t most) : m_before(std::exchange(mostPlaces, most)) {}

CMostPlacesScope::~CMostPlacesScope() {
    mostPlaces = m_before;
}

void AddFinding(ReportFinding& finding, std::uint64_t line, std::uint64_t column, std::string_view text) {
    ++finding.count;
    if (finding.places.size() >= MostPlaces()) return;
    finding.places.push_back({line, column, std::string(text.substr(0, kLongestText))});
}

int GetFileSha256(std::string const& path, std::string& digits) {
    CFile file;
    auto const fail = [&] {
        ClearLastErrorText();
        SetLastErrorText(FileErrorText("read", path, file.Error()));
        return 0;
    };
    if (!file.Open(path, CFile::Mode::Read)) return fail();
    auto const buffer = std::make_unique<char[]>(kReadSize);
    CSha256 sum;
    std::size_t got = 0;
    do {
        if (!file.Read(buffer.get(), kReadSize, got)) return fail();
        sum.Add(buffer.get(), got);
    } while (got > 0);
    digits = sum.Finish();
    return 1;
}

}  // namespace norva
