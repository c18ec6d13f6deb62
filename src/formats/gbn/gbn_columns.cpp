#include "formats/gbn/gbn_columns.h"

#include "formats/records/binary_conversion.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "store/value_rules.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstring>
#include <string>
#include <string_view>

namespace norva {

namespace {

// Conversion of one value to the type of its channel.

/// Truncated; the no-data value stays one, and what fits no 32-bit integer is -2147483648.
template <std::floating_point Source>
std::int32_t ToLong(Source value) {
    return IsNoData(value) ? kNoDataLong : TruncateToInt32(value);
}

template <class Target, class Source>
Target Convert(Source value) {
    if constexpr (std::same_as<Source, std::string_view>) {
        if constexpr (std::floating_point<Target>)
            return static_cast<Target>(ReadNumber(value));
        else
            return Convert<Target>(std::int32_t{ReadInt(value)});
    } else if constexpr (std::floating_point<Target> || std::same_as<Target, Source>) {
        return static_cast<Target>(value);
    } else if constexpr (std::same_as<Target, std::int32_t>) {
        if constexpr (std::floating_point<Source>)
            return ToLong(value);
        else
            return value;
    } else if constexpr (std::floating_point<Source>) {
        return IsNoData(value) ? kNoDataShort : LowShort(TruncateToInt32(value));
    } else {
        return LowShort(value);
    }
}

/// As printf's "%d" or "%f" prints it.
template <class Source>
void AppendText(std::string& out, Source value) {
    if constexpr (std::floating_point<Source>)
        AppendFixed(out, value, 6);
    else
        AppendInteger(out, value);
}

void Put(char* out, float value) {
    StoreFloat(out, value);
}
void Put(char* out, double value) {
    StoreDouble(out, value);
}
void Put(char* out, std::int32_t value) {
    StoreLittle32(out, static_cast<std::uint32_t>(value));
}
void Put(char* out, std::int16_t value) {
    StoreLittle16(out, static_cast<std::uint16_t>(value));
}

bool IsMarked(std::floating_point auto value) {
    return IsNoData(value);
}
bool IsMarked(std::int32_t value) {
    return IsNoDataLong(value);
}
bool IsMarked(std::int16_t value) {
    return IsNoDataShort(value);
}

/// Counts what became of `count` values that now stand at `out`; `at(i)` gives what the i-th was.
template <class Target, class At>
void TallyNumbers(std::int64_t count, char const* out, ValueTally& tally, At at) {
    using Source = decltype(at(0));
    if constexpr (std::same_as<Source, Target>) {
        TallyStored<Target>(out, static_cast<std::size_t>(count), tally);
        return;
    }
    for (std::int64_t i = 0; i < count; ++i, out += sizeof(Target)) {
        Source const value = at(i);
        double number = 0;
        if constexpr (std::same_as<Source, std::string_view>) {
            NumberRead const read = ScanNumber(value);
            tally.unreadable += read.consumed == 0 ? 1U : 0U;
            if (read.consumed == 0) continue;
            tally.withRest += read.consumed < TrimRight(value).size() ? 1U : 0U;
            number = read.value;
        } else {
            tally.noData += IsMarked(value) ? 1U : 0U;
            if (IsMarked(value)) continue;
            number = static_cast<double>(value);
        }
        Target const stored = LoadValue<Target>(out);
        if (!TallyLoss(number, stored, tally)) TallyRange(stored, tally);
    }
}

/// A column that grows value by value.
class ColumnWriter {
public:
    ColumnWriter(CColumnFiles& files, int column, std::size_t arraySize)
        : m_files(files), m_column(column), m_arraySize(arraySize) {}

    /// What the values from now on are counted in; null for nothing.
    void CountIn(ValueTally* tally) { m_tally = tally; }

    /// `count` values; `next(i)` gives the i-th, which was made of `at(i)`.
    template <class Target, class Next, class At>
    bool Numbers(std::int64_t count, Next next, At at) {
        constexpr auto kAtOnce = static_cast<std::int64_t>(CColumnFiles::kBufferSize / sizeof(Target));
        // Batches of a fixed size become vector instructions.
        constexpr std::int64_t kBatch = 16;
        std::array<Target, kBatch> batch;
        for (std::int64_t done = 0; done < count;) {
            std::int64_t const end = std::min(count, done + kAtOnce);
            char* out = m_files.Append(m_column, static_cast<std::size_t>(end - done) * sizeof(Target));
            if (out == nullptr) return false;
            char const* const values = out;
            std::int64_t const first = done;
            for (; end - done >= kBatch; done += kBatch) {
                for (std::int64_t i = 0; i < kBatch; ++i) batch[static_cast<std::size_t>(i)] = next(done + i);
                for (Target const value : batch) {
                    Put(out, value);
                    out += sizeof(Target);
                }
            }
            for (; done < end; ++done, out += sizeof(Target)) Put(out, next(done));
            if (m_tally == nullptr) continue;
            TallyNumbers<Target>(end - first, values, *m_tally, [&](std::int64_t i) { return at(first + i); });
        }
        return true;
    }

    /// One text, cut or padded with blanks to the array size.
    bool Text(std::string_view text) {
        if (m_tally != nullptr && text.size() > m_arraySize) ++m_tally->cut;
        text = text.substr(0, m_arraySize);
        if (m_arraySize > CColumnFiles::kBufferSize) return LongText(text);
        char* const out = m_files.Append(m_column, m_arraySize);
        if (out == nullptr) return false;
        if (!text.empty()) std::memcpy(out, text.data(), text.size());
        std::memset(out + text.size(), ' ', m_arraySize - text.size());
        return true;
    }

private:
    bool LongText(std::string_view text) {
        if (!m_files.AppendBytes(m_column, text.data(), text.size())) return false;
        for (std::size_t left = m_arraySize - text.size(); left > 0;) {
            std::size_t const part = std::min(left, CColumnFiles::kBufferSize);
            char* const out = m_files.Append(m_column, part);
            if (out == nullptr) return false;
            std::memset(out, ' ', part);
            left -= part;
        }
        return true;
    }

    CColumnFiles& m_files;
    int m_column;
    std::size_t m_arraySize;
    ValueTally* m_tally = nullptr;
};

/// Writes `count` values, of which `at` gives the i-th, as `dataType`.
template <class At>
bool WriteValues(std::int64_t count, int dataType, ColumnWriter& writer, At at) {
    auto const numbers = [&]<class Target>(Target /*kind*/) {
        return writer.Numbers<Target>(
            count, [&](std::int64_t i) { return Convert<Target>(at(i)); }, at);
    };
    switch (dataType) {
        case DataType::kFloat:
            return numbers(float{});
        case DataType::kDouble:
            return numbers(double{});
        case DataType::kLong:
            return numbers(std::int32_t{});
        case DataType::kShort:
            return numbers(std::int16_t{});
        default:
            break;
    }
    std::string text;
    for (std::int64_t i = 0; i < count; ++i) {
        bool written = false;
        if constexpr (std::same_as<decltype(at(i)), std::string_view>) {
            written = writer.Text(at(i));
        } else {
            text.clear();
            AppendText(text, at(i));
            written = writer.Text(text);
        }
        if (!written) return false;
    }
    return true;
}

template <std::int32_t type>
bool WriteNumericRun(GbnRun const& run, int dataType, ColumnWriter& writer) {
    return WriteValues(run.count, dataType, writer, [bytes = run.bytes](std::int64_t i) {
        return GbnValue<type>::Decode(bytes + static_cast<std::size_t>(i) * GbnValue<type>::kWidth);
    });
}

bool WriteRun(GbnRun const& run, int dataType, ColumnWriter& writer) {
    switch (run.valueType) {
        case GbnValueType::kInt8:
            return WriteNumericRun<GbnValueType::kInt8>(run, dataType, writer);
        case GbnValueType::kUInt16:
            return WriteNumericRun<GbnValueType::kUInt16>(run, dataType, writer);
        case GbnValueType::kInt16:
            return WriteNumericRun<GbnValueType::kInt16>(run, dataType, writer);
        case GbnValueType::kInt32:
            return WriteNumericRun<GbnValueType::kInt32>(run, dataType, writer);
        case GbnValueType::kFloat:
            return WriteNumericRun<GbnValueType::kFloat>(run, dataType, writer);
        case GbnValueType::kDouble:
            return WriteNumericRun<GbnValueType::kDouble>(run, dataType, writer);
        default:
            break;
    }
    std::size_t const width = GbnValueWidth(run.valueType);
    return WriteValues(run.count, dataType, writer, [bytes = run.bytes, width](std::int64_t i) {
        return DecodeGbnText(bytes + static_cast<std::size_t>(i) * width, width);
    });
}

bool WriteNoData(std::int64_t count, int sourceType, int dataType, ColumnWriter& writer) {
    switch (sourceType) {
        case DataType::kFloat:
            return WriteValues(count, dataType, writer, [](std::int64_t) { return kNoDataFloat; });
        case DataType::kDouble:
            return WriteValues(count, dataType, writer, [](std::int64_t) { return kNoDataDouble; });
        case DataType::kLong:
            return WriteValues(count, dataType, writer, [](std::int64_t) { return kNoDataLong; });
        case DataType::kShort:
            return WriteValues(count, dataType, writer, [](std::int64_t) { return kNoDataShort; });
        default:
            return WriteValues(count, dataType, writer, [](std::int64_t) { return std::string_view(); });
    }
}

}  // namespace

NorvaChannelStruct DescribedGbnChannel(GbnChannelEntry const& entry) {
    NorvaChannelStruct channel = entry.description;
    bool const text = channel.dataType == DataType::kText;
    channel.recordType = text ? 1 : 0;
    // A text of one byte holds its zero byte alone; the least that a store can hold is one blank.
    channel.arraySize = text ? std::max(channel.arraySize, 1) : 1;
    return channel;
}

bool WriteGbnColumn(GbnContents const& contents, std::size_t channel, NorvaChannelStruct const& described,
                    CColumnFiles& files, GbnColumnTally& tally) {
    ColumnWriter writer(files, static_cast<int>(channel), static_cast<std::size_t>(described.arraySize));
    int const sourceType = contents.channels[channel].sourceType;
    auto const pad = [&](std::int64_t count) {
        writer.CountIn(nullptr);
        return WriteNoData(count, sourceType, described.dataType, writer);
    };
    std::int64_t next = 0;
    for (GbnRun const& run : contents.values[channel].runs) {
        if (!pad(run.first - next)) return false;
        if (contents.lines[static_cast<std::size_t>(run.line)].selected != 0) {
            tally.present += static_cast<std::uint64_t>(run.count);
            writer.CountIn(&tally.values);
        }
        if (!WriteRun(run, described.dataType, writer)) return false;
        next = run.first + run.count;
    }
    return pad(contents.locationCount - next);
}

}  // namespace norva
