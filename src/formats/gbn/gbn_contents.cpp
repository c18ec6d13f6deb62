#include "formats/gbn/gbn_contents.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace norva {

namespace {

std::string AtByte(std::uint64_t offset) {
    std::string text(16, '\0');
    auto const end = std::to_chars(text.data(), text.data() + text.size(), offset, 16).ptr;
    text.resize(static_cast<std::size_t>(end - text.data()));
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char digit) { return digit >= 'a' ? static_cast<char>(digit - 'a' + 'A') : digit; });
    return " at byte 0x" + text;
}

/// What the bytes of a file are spent on.
enum Part {
    kHeader,
    kChannelRecords,
    kLineRecords,
    kDataBlocks,
    kBlocksLeftOut,
    kOtherRecords,
    kEndOfData,
    kUnread,
    kBehindEnd,
};
constexpr std::array<char const*, 9> kPartNames = {"header",
                                                   "channel records",
                                                   "line records",
                                                   "data blocks",
                                                   "data blocks of no line or channel",
                                                   "other records",
                                                   "end of data",
                                                   "records cut or unknown",
                                                   "rest behind the end of data"};

/// One pass over the records of a file.
class ContentsReader {
public:
    ContentsReader(GbnFile& file, GbnContents& contents, GbnValues values)
        : m_file(file), m_contents(contents), m_values(values) {
        for (char const* const name : kPartNames) m_contents.parts.push_back({name});
    }

    /// Counts what lies between the offset and the present position, or the end of the file.
    void Count(Part part, std::uint64_t offset, bool toEnd = false) {
        std::uint64_t const end = toEnd ? std::max(m_file.Length(), offset) : m_file.Position();
        if (end == offset) return;
        ++m_contents.parts[part].count;
        m_contents.parts[part].bytes += end - offset;
    }

    /// Takes the record whose code was just read; false when reading stops here.
    bool TakeRecord(GbnCode code, std::uint64_t offset) {
        m_part = kOtherRecords;
        bool const isWhole = Take(code, offset);
        Count(isWhole ? m_part : kUnread, offset, !isWhole);
        return isWhole;
    }

    void CloseLine() {
        if (!m_contents.lines.empty()) m_contents.locationCount = m_lineFirst + m_contents.lines.back().locationCount;
        m_lineFirst = m_contents.locationCount;
    }

private:
    bool Take(GbnCode code, std::uint64_t offset) {
        m_offset = offset;
        switch (code) {
            case GbnCode::kChannel:
                m_part = kChannelRecords;
                return TakeChannel();
            case GbnCode::kLine:
                m_part = kLineRecords;
                return TakeLine();
            case GbnCode::kBlock:
                return TakeBlock();
            case GbnCode::kSecondChannel:
                m_entryOfNumber.push_back(kNoEntry);
                return m_file.ReadSecondChannelRecord() || StopInside("channel record");
            case GbnCode::kOpaque:
                return m_file.ReadOpaqueRecord() || StopInside("record of code 5");
            default:
                return true;
        }
    }

    /// How many values a channel got in the line that is open.
    struct Fill {
        std::size_t line = std::numeric_limits<std::size_t>::max();
        std::int64_t count = 0;
    };

    static constexpr std::size_t kNoEntry = std::numeric_limits<std::size_t>::max();

    bool Stop(std::string problem) {
        m_contents.problem = std::move(problem);
        return false;
    }
    bool StopInside(std::string const& what) { return Stop("File ends inside the " + what + AtByte(m_offset)); }

    bool TakeChannel() {
        if (!m_file.ReadChannelRecord()) return StopInside("channel record");
        GbnChannelRecord const& record = m_file.channel;
        std::size_t const width = GbnValueWidth(record.valueType);
        if (width == 0) return StopAtType(record.valueType, "channel " + record.name);
        if (record.valueType < 0 && width > m_file.Remaining()) {
            return Stop("The " + std::to_string(width) + " bytes of a text of channel " + record.name +
                        AtByte(m_offset) + " are more than the file has left; reading stopped there");
        }
        int const number = static_cast<int>(m_entryOfNumber.size());
        m_entryOfNumber.push_back(m_contents.channels.size());
        GbnChannelEntry entry;
        entry.channelNumber = number;
        entry.sourceType = GbnStoreType(record.valueType);
        NorvaChannelStruct& channel = entry.description;
        channel.name = record.name;
        channel.dataType = entry.sourceType;
        channel.recordType = record.valueType < 0 ? 1 : 0;
        channel.arraySize = record.valueType < 0 ? static_cast<int>(width - 1) : 1;
        bool const known =
            record.displayFormat >= DisplayFormat::kFixed && record.displayFormat <= DisplayFormat::kGeographic;
        channel.displayFormat = known ? record.displayFormat : DisplayFormat::kFixed;
        channel.decimalPlaces = record.decimals;
        channel.templateFormat = channel.displayFormat == DisplayFormat::kTime   ? 2
                                 : channel.displayFormat == DisplayFormat::kDate ? 0
                                                                                 : -1;
        m_contents.channels.push_back(std::move(entry));
        GbnChannelValues values;
        values.channelNumber = number;
        m_contents.values.push_back(std::move(values));
        m_fills.emplace_back();
        return true;
    }

    bool TakeLine() {
        if (!m_file.ReadLineRecord()) return StopInside("line record");
        m_lineSeen = true;
        m_linePending = true;
        return true;
    }

    bool TakeBlock() {
        if (!m_file.ReadBlockHeader()) return StopInside("head of the data block");
        GbnBlockRecord const& block = m_file.block;
        auto const number = static_cast<std::size_t>(block.channelNumber);
        bool const known = block.channelNumber >= 0 && number < m_entryOfNumber.size();
        std::size_t const entry = known ? m_entryOfNumber[number] : kNoEntry;
        std::string const* const name = entry == kNoEntry ? nullptr : &m_contents.channels[entry].description.name;
        std::size_t const width = GbnValueWidth(block.valueType);
        if (width == 0) return StopAtType(block.valueType, "a data block");
        if (block.valueCount < 0) {
            return Stop("A data block" + AtByte(m_offset) + " has " + std::to_string(block.valueCount) +
                        " values; reading stopped there");
        }
        if (m_linePending) OpenLine();
        auto const whole = static_cast<std::int64_t>(
            std::min<std::uint64_t>(static_cast<std::uint64_t>(block.valueCount), m_file.Remaining() / width));
        std::int64_t taken = whole;
        if (!m_lineSeen) ++m_contents.blocksBeforeLines;
        m_part = m_lineSeen && name != nullptr ? kDataBlocks : kBlocksLeftOut;
        if (m_part == kBlocksLeftOut && block.valueCount > 0) ++m_contents.recordsLeftOut;
        if (m_part == kDataBlocks) {
            taken = TakeValues(entry, whole, width);
        } else {
            m_file.Skip(static_cast<std::uint64_t>(whole) * width);
        }
        if (taken == block.valueCount) return true;
        return Stop("File ends inside the data block" + AtByte(m_offset) + "; " + std::to_string(taken) + " of " +
                    std::to_string(block.valueCount) + " values of channel " +
                    (name != nullptr ? *name : "number " + std::to_string(block.channelNumber)) + " were read");
    }

    void OpenLine() {
        CloseLine();
        GbnLineEntry line;
        line.name = GbnLineName(m_file.line);
        m_contents.lines.push_back(std::move(line));
        m_linePending = false;
    }

    /// Appends `count` values to a channel; the result is how many the file really had.
    std::int64_t TakeValues(std::size_t entry, std::int64_t count, std::size_t width) {
        GbnChannelValues& values = m_contents.values[entry];
        values.fiducialStart = m_file.block.fiducialStart;
        values.fiducialIncrement = m_file.block.fiducialIncrement;
        if (count == 0) return 0;
        Fill& fill = m_fills[entry];
        std::size_t const line = m_contents.lines.size() - 1;
        if (fill.line != line) fill = {line, 0};
        std::size_t const size = static_cast<std::size_t>(count) * width;
        std::int64_t taken = count;
        if (m_values == GbnValues::Skip) {
            m_file.Skip(size);
        } else {
            char* const bytes = m_contents.arena.Take(size);
            taken = static_cast<std::int64_t>(m_file.ReadBytes(bytes, size) / width);
            if (taken > 0) {
                values.runs.push_back(
                    {m_lineFirst + fill.count, taken, m_file.block.valueType, static_cast<std::int32_t>(line), bytes});
            }
        }
        fill.count += taken;
        std::int64_t& locations = m_contents.lines.back().locationCount;
        locations = std::max(locations, fill.count);
        return taken;
    }

    bool StopAtType(std::int32_t valueType, std::string const& where) {
        return Stop("Value type " + std::to_string(valueType) + " of " + where + AtByte(m_offset) +
                    " is unknown; reading stopped there");
    }

    GbnFile& m_file;
    GbnContents& m_contents;
    GbnValues m_values;
    std::uint64_t m_offset = 0;                ///< of the record at hand
    Part m_part = kOtherRecords;               ///< what it counts as
    std::vector<std::size_t> m_entryOfNumber;  ///< kNoEntry for channel records of the second kind
    std::vector<Fill> m_fills;                 ///< one for each channel entry
    std::int64_t m_lineFirst = 0;              ///< first location of the open line
    bool m_lineSeen = false;
    bool m_linePending = false;
};

}  // namespace

std::string GbnLineName(GbnLineRecord const& record) {
    std::string name = std::to_string(record.number);
    if (record.dotSuffix != 0) name += "." + std::to_string(record.dotSuffix);
    if (record.colonSuffix != 0) name += ":" + std::to_string(record.colonSuffix);
    return name;
}

void ReadGbnContents(GbnFile& file, GbnContents& contents, GbnValues values,
                     std::function<void(int percent)> const& progress) {
    ContentsReader reader(file, contents, values);
    if (!file.SkipHeaderText()) {
        contents.problem = "File ends inside its header" + AtByte(file.Position()) + "; no record was read";
    }
    reader.Count(kHeader, 0);
    for (;;) {
        std::uint64_t const offset = file.Position();
        progress(static_cast<int>(file.Length() == 0 ? 0 : offset * 100 / file.Length()));
        auto const code = static_cast<GbnCode>(file.ReadRecordCode());
        if (code == GbnCode::kEnd) {
            reader.Count(kEndOfData, offset);
            reader.Count(kBehindEnd, file.Position(), true);
            break;
        }
        if (!reader.TakeRecord(code, offset)) break;
    }
    reader.CloseLine();
}

}  // namespace norva
