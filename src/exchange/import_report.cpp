#include "norva/import_report.h"

#include "exchange/report_draft.h"
#include "norva/import_export.h"
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

thread_local ImportReport draft;

}  // namespace

ReportKind const kReportKinds[] = {
    {"no_data", "marked as no-data", &ReportChannel::noData, false},
    {"missing", "missing at the end of a row", &ReportChannel::missing, false},
    {"out_of_range", "out of range, stored as no-data", &ReportChannel::outOfRange, true},
    {"unreadable", "unreadable, stored as 0 or no-data", &ReportChannel::unreadable, true},
    {"with_rest", "number followed by something else", &ReportChannel::withRest, true},
    {"with_fraction", "fraction dropped by a whole-number channel", &ReportChannel::withFraction, true},
    {"cut", "text cut to the channel's width", &ReportChannel::cut, true},
    {"dropped", "value without a location in the store", &ReportChannel::dropped, true},
    {"backwards", "below the value before it in its line", &ReportChannel::backwards, false},
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
        std::uint64_t const without = channel.noData.count + channel.missing.count + channel.outOfRange.count;
        return channel.values == locations && without + channel.unreadable.count <= locations;
    });
    return units == unitsRead && bytes == bytesRead && bytesRead == sourceSize && channelsAddUp;
}

std::uint64_t ImportReport::LossCount() const {
    std::uint64_t count =
        fewerValues.count + moreValues.count + cutRecords.count + leftOut.count + doubtfulMarkers.count;
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

void ForgetReport() {
    draft = {};
}

void StartReport(std::string const& sourcePath, std::string_view format) {
    draft = {};
    draft.sourcePath = sourcePath;
    draft.format = format;
    draft.norvaVersion = GetLibraryVersion();
}

void FinishReport(ImportReport report) {
    report.sourcePath = draft.sourcePath;
    report.format = draft.format;
    report.norvaVersion = draft.norvaVersion;
    draft = std::move(report);
}

ImportReport* FinishedReport() {
    return draft.unit.empty() ? nullptr : &draft;
}

void AddFinding(ReportFinding& finding, std::uint64_t line, std::uint64_t column, std::string_view text) {
    ++finding.count;
    if (finding.places.size() == ReportFinding::kMostPlaces) return;
    finding.places.push_back({line, column, std::string(text.substr(0, kLongestText))});
}

int GetImportReport(ImportReport& report, int withChecksum) {
    if (draft.unit.empty()) return 0;
    if (withChecksum != 0 && draft.sourceSha256.empty() && GetFileSha256(draft.sourcePath, draft.sourceSha256) == 0) {
        return 0;
    }
    report = draft;
    return 1;
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
