#include "store_document.h"

#include "norva/import_export.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace norva {

namespace {

constexpr long kChunk = 64 * 1024;

template <typename Value>
Value LoadValue(char const* bytes) {
    static_assert(std::endian::native == std::endian::little);
    Value value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// A packed value as the store hands it out, NaN for no-data.
double NumberAt(char const* bytes, int dataType) {
    double const missing = std::numeric_limits<double>::quiet_NaN();
    switch (dataType) {
        case DataType::kFloat: {
            auto const value = LoadValue<float>(bytes);
            return value == kNoDataFloat ? missing : static_cast<double>(value);
        }
        case DataType::kDouble: {
            auto const value = LoadValue<double>(bytes);
            return value == kNoDataDouble ? missing : value;
        }
        case DataType::kShort: {
            auto const value = LoadValue<std::int16_t>(bytes);
            return value == kNoDataShort ? missing : value;
        }
        default: {
            auto const value = LoadValue<std::int32_t>(bytes);
            return value == kNoDataLong ? missing : value;
        }
    }
}

QString TypeText(CNorvaFileUtil& store, int index) {
    switch (store.GetChannelDataType(index)) {
        case DataType::kFloat:
            return QObject::tr("float");
        case DataType::kText:
            return QObject::tr("text (%1)").arg(store.GetChannelArraySize(index));
        case DataType::kShort:
            return QObject::tr("short");
        case DataType::kDouble:
            break;
        default:
            return QObject::tr("long");
    }
    switch (store.GetChannelDisplayFormat(index)) {
        case DisplayFormat::kTime:
            return QObject::tr("time");
        case DisplayFormat::kDate:
            return QObject::tr("date");
        case DisplayFormat::kGeographic:
            return QObject::tr("geographic");
        default:
            return QObject::tr("double");
    }
}

QString FromBytes(std::string const& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

CStoreDocument::CStoreDocument() = default;

bool CStoreDocument::Open(QString const& path, QString& why) {
    auto store = std::make_unique<CNorvaFileUtil>();
    if (store->SetFileName(path.toStdString(), kReopenStore, nullptr) == 0) {
        why = FromBytes(GetLastErrorText());
        return false;
    }
    m_store = std::move(store);
    m_path = path;
    ReadStructure();
    emit Changed();
    return true;
}

void CStoreDocument::ReadStructure() {
    m_printer = std::make_unique<CValuePrinter>(*m_store);
    m_lines.clear();
    for (int line = 0; line < m_store->ProfileCount; ++line) {
        std::string name;
        LineEntry entry;
        m_store->GetProfileInfo(line, name, entry.locations, entry.flag);
        entry.name = FromBytes(name);
        entry.deleted = entry.locations - m_store->GetProfileLocationNum(line, 1);
        m_lines.push_back(std::move(entry));
    }
    m_channels.clear();
    for (int n = 0; n < m_store->ChannelCount; ++n) {
        ChannelEntry entry;
        entry.index = m_store->GetFileChanIndex(n);
        entry.name = FromBytes(m_store->GetChannelName(entry.index));
        entry.units = FromBytes(m_store->GetChannelUnits(entry.index));
        entry.fullName = FromBytes(m_store->GetChannelFullName(entry.index));
        entry.type = TypeText(*m_store, entry.index);
        entry.isNumber = m_store->GetChannelDataType(entry.index) != DataType::kText;
        m_channels.push_back(std::move(entry));
    }
}

QString CStoreDocument::CellText(int channel, int line, long location) {
    return FromBytes(m_printer->CellText(channel, line, location));
}

bool CStoreDocument::IsDeleted(int line, long location) {
    return m_store->IsLocMarkedToDelete(line, location) != 0;
}

std::vector<double> CStoreDocument::Column(int channel, int line, bool hideDeleted) {
    LineEntry const& entry = m_lines[static_cast<std::size_t>(line)];
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(entry.locations));
    int const dataType = m_store->GetChannelDataType(channel);
    std::size_t const size = m_store->GetChannelValueSize(channel);
    std::vector<char> chunk(size * static_cast<std::size_t>(std::min(kChunk, entry.locations)));
    for (long first = 0; first < entry.locations; first += kChunk) {
        long const count = std::min(kChunk, entry.locations - first);
        if (m_store->ReadColumn(channel, line, first, count, chunk.data()) == 0) break;
        for (long i = 0; i < count; ++i) {
            bool const hidden = hideDeleted && entry.deleted > 0 && IsDeleted(line, first + i);
            values.push_back(hidden ? std::numeric_limits<double>::quiet_NaN()
                                    : NumberAt(chunk.data() + static_cast<std::size_t>(i) * size, dataType));
        }
    }
    return values;
}

ColumnStatistics CStoreDocument::Statistics(int channel, std::vector<int> const& lines) {
    ColumnStatistics result;
    long used = 0;
    double squares = 0;
    for (int const line : lines) {
        LineEntry const& entry = m_lines[static_cast<std::size_t>(line)];
        std::vector<double> const values = Column(channel, line, false);
        for (std::size_t i = 0; i < values.size(); ++i) {
            ++result.count;
            if (entry.deleted > 0 && IsDeleted(line, static_cast<long>(i))) {
                ++result.deleted;
                continue;
            }
            double const value = values[i];
            if (std::isnan(value)) {
                ++result.noData;
                continue;
            }
            ++used;
            result.minimum = used == 1 ? value : std::min(result.minimum, value);
            result.maximum = used == 1 ? value : std::max(result.maximum, value);
            // Welford's running mean and sum of squares: no loss of digits for large fields with small changes.
            double const delta = value - result.mean;
            result.mean += delta / static_cast<double>(used);
            squares += delta * (value - result.mean);
        }
    }
    if (used > 0) result.deviation = std::sqrt(squares / static_cast<double>(used));
    return result;
}

bool CStoreDocument::SaveAndReopen(QString& why) {
    bool const saved = m_store->CloseCurFile() != 0;
    if (!saved) why = FromBytes(GetLastErrorText());
    QString reopenFailure;
    bool const opened = Open(m_path, saved ? why : reopenFailure);
    return saved && opened;
}

bool CStoreDocument::MarkDeleted(int line, std::vector<long> const& locations, bool deleted, QString& why) {
    for (long const location : locations) m_store->MarkLocToDelete(line, location, deleted ? 1 : 0);
    return SaveAndReopen(why);
}

bool CStoreDocument::SetLineFlag(int line, int flag, QString& why) {
    m_store->SetProfileFlag(line, flag);
    return SaveAndReopen(why);
}

}  // namespace norva
