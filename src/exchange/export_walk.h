#pragma once

#include "exchange/export_type.h"
#include "exchange/progress_dlg.h"
#include "norva/exporter_base.h"
#include "norva/value_text.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The one walk over what an export writes: lines, the locations of each that are not marked deleted, and the values of
/// its channels. A writer is handed them and writes.
namespace norva {

/// What there is to choose from.
struct ExportChoices {
    std::vector<std::string> lines;     ///< as FillProfileArray lists them
    std::vector<std::string> channels;  ///< in the store's channel order
    bool pointId = true;                ///< the format has a place for point numbers
    bool units = false;                 ///< the format writes units, and some channel has them
};

/// The progress window of an export.
struct ExportWindow {
    explicit ExportWindow(std::string_view text) {
        window.Create();
        window.SetWindowTitle("Export");
        window.ResetBars();
        window.ShowFileName(text);
    }

    CProgressDlg window;
    CProgressReporter progress{window};
};

/// What an exporter needs to know of a channel, asked for once.
struct ExportChannel {
    std::size_t number = 0;  ///< place in the output, from 0
    int position = 0;        ///< in the store's channel order
    int index = 0;           ///< as the store's calls take it
    int dataType = 0;
    int arraySize = 1;
    ValueFormat format;
    std::size_t width = 0;       ///< bytes of a packed value: the text, or the first element
    std::size_t storeWidth = 0;  ///< bytes of a location in the store; 0 when it does not tell
    ExportReportChannel* report = nullptr;

    static ExportChannel Of(CNorvaFileUtil& store, int position);
};

/// Counts a number whose text reads back as another one.
inline void CountLostDigits(ExportChannel const& channel) {
    bool const hasExponent = channel.format.displayFormat == DisplayFormat::kExponent;
    ++(hasExponent ? channel.report->exponents : channel.report->fewerDigits);
}

/// A line of the survey that is written.
struct ExportLine {
    int number = 0;  ///< place in the output, from 0
    int profile = 0;
    std::string name;
    long locations = 0;
    int flag = 0;
};

/// Takes the rows of an export.
template <typename Writer>
concept RowWriter = requires(Writer writer, ExportLine line, ExportChannel channel, StoreValue value) {
    { writer.StartLine(line) } -> std::same_as<bool>;
    writer.StartRow(line, 0L);
    writer.Cell(channel, value);
    { writer.EndRow() } -> std::same_as<bool>;
    { Writer::kTellsChannels } -> std::convertible_to<bool>;  // progress through the store's channels in every row
};

/// Takes the columns of an export; a value that the store does not give is null.
template <typename Writer>
concept ColumnWriter = requires(Writer writer, ExportChannel channel, StoreValue const* value,
                                std::string_view packed) {
    { writer.Packed(channel, packed) } -> std::same_as<bool>;
    { writer.Single(channel, value) } -> std::same_as<bool>;
};

class CExportWalk {
public:
    /// `job` has been chosen for, and its report counts what is walked.
    CExportWalk(ExportJob& job, CProgressReporter& progress);

    std::vector<ExportChannel>& Channels() { return m_channels; }

    /// Calls `take` with every line, in output order, after the share of the lines before it was told, until it is
    /// false. All of these are false once the walk has ended early; Result() says why, unless the writer knows.
    template <typename Take>
    bool Lines(Take take);
    template <RowWriter Writer>
    bool Rows(Writer& writer);
    /// The values of a channel in a line.
    template <ColumnWriter Writer>
    bool Column(ExportChannel const& channel, ExportLine const& line, Writer& writer);
    /// Calls `take` with every location of the line that is not marked deleted, until it is false.
    template <typename Take>
    bool Locations(ExportLine const& line, Take take);

    /// Locations of the line that are not marked deleted.
    long Kept(ExportLine const& line);

    void ChannelPercent(std::size_t number) {
        m_progress.ChannelPercent(static_cast<long long>(number) * 100 / m_store.ChannelCount);
    }
    /// Good, unless the store could not be read.
    Status Result() { return std::move(m_failure); }

private:
    bool Read(ExportChannel const& channel, ExportLine const& line, long location);
    bool FailReading();
    /// Reads `count` locations from `first` on and keeps the values of those not marked deleted in m_block.
    bool ReadBlock(ExportChannel const& channel, ExportLine const& line, long first, long count);
    static constexpr std::size_t kBlockBytes = std::size_t{256} * 1024;
    static constexpr long kLocationsATurn = 256 * 1024;

    CNorvaFileUtil& m_store;
    ExportSettings const& m_settings;
    ExportReport& m_report;
    CProgressReporter& m_progress;
    bool m_isPacked;
    std::vector<ExportChannel> m_channels;
    StoreValue m_value;
    std::vector<char> m_block;
    std::size_t m_kept = 0;  ///< bytes of m_block
    long m_untold = 0;       ///< locations read since the toolkit had its turn
    Status m_failure;
};

template <typename Take>
bool CExportWalk::Lines(Take take) {
    auto const count = static_cast<int>(m_settings.lines->size());
    ExportLine line;
    for (line.number = 0; line.number < count; ++line.number) {
        m_progress.FilePercent(static_cast<long long>(line.number) * 100 / count);
        line.profile = (*m_settings.lines)[static_cast<std::size_t>(line.number)];
        m_store.GetProfileInfo(line.profile, line.name, line.locations, line.flag);
        if (!take(static_cast<ExportLine const&>(line))) return false;
    }
    return true;
}

template <typename Take>
bool CExportWalk::Locations(ExportLine const& line, Take take) {
    for (long location = 0; location < line.locations; ++location) {
        m_progress.Row();
        if (m_store.IsLocMarkedToDelete(line.profile, location) != 0) continue;
        if (!take(location)) return false;
    }
    return true;
}

template <RowWriter Writer>
bool CExportWalk::Rows(Writer& writer) {
    return Lines([&](ExportLine const& line) {
        if (!writer.StartLine(line)) return false;
        return Locations(line, [&](long location) {
            writer.StartRow(line, location);
            int told = 0;
            auto const tellUpTo = [&](int end) {
                if constexpr (Writer::kTellsChannels) {
                    for (; told < end; ++told) ChannelPercent(static_cast<std::size_t>(told));
                }
            };
            for (ExportChannel const& channel : m_channels) {
                tellUpTo(channel.position + 1);
                if (Read(channel, line, location)) {
                    writer.Cell(channel, static_cast<StoreValue const&>(m_value));
                } else if (!m_failure) {
                    return false;
                }
            }
            tellUpTo(m_store.ChannelCount);
            return writer.EndRow();
        });
    });
}

template <ColumnWriter Writer>
bool CExportWalk::Column(ExportChannel const& channel, ExportLine const& line, Writer& writer) {
    if (m_isPacked && channel.width > 0 && channel.storeWidth >= channel.width) {
        auto const atOnce = static_cast<long>(std::max<std::size_t>(kBlockBytes / channel.storeWidth, 1));
        for (long first = 0; first < line.locations; first += atOnce) {
            if (!ReadBlock(channel, line, first, std::min(atOnce, line.locations - first))) return false;
            if (m_kept > 0 && !writer.Packed(channel, std::string_view(m_block.data(), m_kept))) return false;
        }
        return true;
    }
    return Locations(line, [&](long location) {
        bool const given = Read(channel, line, location);
        if (!given && !m_failure) return false;
        return writer.Single(channel, given ? &m_value : nullptr);
    });
}

}  // namespace norva
