#include "store_document.h"

#include "common/store_column.h"
#include "norva/import_export.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace norva {

namespace {

constexpr long kSampledLocations = 4096;  ///< per channel, to see how many decimals it has
constexpr int kSampledPieces = 8;

/// Digits after the point of the shortest text that reads back the same.
template <typename Number>
int DecimalsOf(Number value) {
    std::array<char, 400> digits{};
    auto const [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
    if (error != std::errc{}) return 0;
    auto const* const point = std::find(digits.data(), end, '.');
    return point == end ? 0 : static_cast<int>(end - point) - 1;
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

/// A step from one state of the changes to the next.
class CStoreDocument::CChangeCommand : public QUndoCommand {
public:
    CChangeCommand(CStoreDocument& document, QString const& text, StoreChanges after)
        : QUndoCommand(text), m_document(document), m_before(document.m_changes), m_after(std::move(after)) {}

    void undo() override { m_document.Apply(m_before); }
    void redo() override { m_document.Apply(m_after); }

private:
    CStoreDocument& m_document;
    StoreChanges m_before;
    StoreChanges m_after;
};

CStoreDocument::CStoreDocument() = default;

bool CStoreDocument::Open(QString const& path, QString& why) {
    auto store = std::make_unique<CNorvaFileUtil>();
    if (store->SetFileName(path.toStdString(), kReopenStore, nullptr) == 0) {
        why = FromBytes(GetLastErrorText());
        return false;
    }
    m_printer.reset();
    m_store = std::move(store);
    m_path = path;
    m_changes = {};
    RememberFile();
    ReadStructure();
    m_undo.clear();
    return true;
}

void CStoreDocument::RememberFile() {
    QFileInfo const file(m_path);
    m_fileTime = file.lastModified();
    m_fileSize = file.size();
}

bool CStoreDocument::WasChangedOutside() const {
    QFileInfo const file(m_path);
    return IsOpen() && file.exists() && (file.lastModified() != m_fileTime || file.size() != m_fileSize);
}

void CStoreDocument::ReadLines() {
    m_lines.clear();
    for (int line = 0; line < m_store->ProfileCount; ++line) {
        std::string name;
        LineEntry entry;
        m_store->GetProfileInfo(line, name, entry.locations, entry.flag);
        entry.name = FromBytes(name);
        entry.deleted = entry.locations - m_store->GetProfileLocationNum(line, 1);
        if (StoreChanges::Marks const* const marks = m_changes.MarksOf(line)) {
            entry.deleted = static_cast<long>(std::count(marks->begin(), marks->end(), true));
        }
        if (auto const flag = m_changes.flags.find(line); flag != m_changes.flags.end()) entry.flag = flag->second;
        m_lines.push_back(std::move(entry));
    }
}

void CStoreDocument::ReadStructure() {
    m_printer = std::make_unique<CValuePrinter>(*m_store);
    ReadLines();
    m_channels.clear();
    for (int n = 0; n < m_store->ChannelCount; ++n) {
        ChannelEntry entry;
        entry.index = m_store->GetFileChanIndex(n);
        entry.name = FromBytes(m_store->GetChannelName(entry.index));
        entry.units = FromBytes(m_store->GetChannelUnits(entry.index));
        entry.fullName = FromBytes(m_store->GetChannelFullName(entry.index));
        entry.type = TypeText(*m_store, entry.index);
        entry.isNumber = m_store->GetChannelDataType(entry.index) != DataType::kText;
        entry.isArray = entry.isNumber && m_store->GetChannelRecordType(entry.index) == 1 &&
                        m_store->GetChannelArraySize(entry.index) > 1;
        entry.displayFormat = m_store->GetChannelDisplayFormat(entry.index);
        entry.decimals = NeededDecimals(entry, m_store->GetChannelNumDecPlaces(entry.index));
        m_channels.push_back(std::move(entry));
    }
}

int CStoreDocument::NeededDecimals(ChannelEntry const& entry, int atMost) {
    int const dataType = m_store->GetChannelDataType(entry.index);
    bool const isReal = dataType == DataType::kFloat || dataType == DataType::kDouble;
    if (!isReal) return 0;
    if (atMost <= 0 || entry.displayFormat != DisplayFormat::kFixed) return std::max(atMost, 0);
    // One decimal at least, so that a real number looks like one.
    int needed = 1;
    std::vector<double> values;
    int const everyLine = static_cast<int>(m_lines.size()) / kSampledPieces + 1;
    for (int line = 0; line < static_cast<int>(m_lines.size()); line += everyLine) {
        long const count =
            std::min(m_lines[static_cast<std::size_t>(line)].locations, kSampledLocations / kSampledPieces);
        values.resize(static_cast<std::size_t>(count));
        if (!ReadNumbers(*m_store, entry.index, line, 0, count, values.data())) break;
        for (double const value : values) {
            if (!std::isfinite(value) || needed >= atMost) continue;
            needed = std::max(needed,
                              dataType == DataType::kFloat ? DecimalsOf(static_cast<float>(value)) : DecimalsOf(value));
        }
    }
    return std::min(needed, atMost);
}

ChannelEntry const* CStoreDocument::FindChannel(int index) const {
    for (ChannelEntry const& entry : m_channels) {
        if (entry.index == index) return &entry;
    }
    return nullptr;
}

QString CStoreDocument::CellText(int channel, int line, long location) {
    ChannelEntry const* const entry = FindChannel(channel);
    double value = 0;
    if (entry == nullptr || !entry->isNumber || entry->isArray || entry->displayFormat != DisplayFormat::kFixed ||
        !ReadNumbers(*m_store, channel, line, location, 1, &value)) {
        return FromBytes(m_printer->CellText(channel, line, location));
    }
    return std::isnan(value) ? QString("*") : QString::number(value, 'f', entry->decimals);
}

bool CStoreDocument::IsDeleted(int line, long location) {
    if (StoreChanges::Marks const* const marks = m_changes.MarksOf(line)) {
        return (*marks)[static_cast<std::size_t>(location)];
    }
    return m_store->IsLocMarkedToDelete(line, location) != 0;
}

std::vector<bool> CStoreDocument::DeletedMarks(int line) {
    if (StoreChanges::Marks const* const marks = m_changes.MarksOf(line)) return *marks;
    LineEntry const& entry = m_lines[static_cast<std::size_t>(line)];
    if (entry.deleted == 0) return {};
    std::vector<bool> marks(static_cast<std::size_t>(entry.locations));
    for (long i = 0; i < entry.locations; ++i) {
        marks[static_cast<std::size_t>(i)] = m_store->IsLocMarkedToDelete(line, i) != 0;
    }
    return marks;
}

std::vector<double> CStoreDocument::Column(int channel, int line, bool hideDeleted) {
    LineEntry const& entry = m_lines[static_cast<std::size_t>(line)];
    std::vector<double> values(static_cast<std::size_t>(entry.locations));
    if (!ReadNumbers(*m_store, channel, line, 0, entry.locations, values.data())) return {};
    if (!hideDeleted || entry.deleted == 0) return values;
    std::vector<bool> const marks = DeletedMarks(line);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (marks[i]) values[i] = std::numeric_limits<double>::quiet_NaN();
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

void CStoreDocument::Apply(StoreChanges changes) {
    m_changes = std::move(changes);
    ReadLines();
    emit MarksChanged();
}

void CStoreDocument::Push(QString const& text, StoreChanges changes) {
    m_undo.push(new CChangeCommand(*this, text, std::move(changes)));
}

void CStoreDocument::MarkDeleted(int line, std::vector<long> const& locations, bool deleted) {
    auto marks = std::make_shared<StoreChanges::Marks>(DeletedMarks(line));
    marks->resize(static_cast<std::size_t>(m_lines[static_cast<std::size_t>(line)].locations));
    for (long const location : locations) (*marks)[static_cast<std::size_t>(location)] = deleted;
    StoreChanges changes = m_changes;
    changes.marks[line] = std::move(marks);
    Push(deleted ? tr("mark as deleted") : tr("take the mark away"), std::move(changes));
}

void CStoreDocument::SetLineFlag(int line, int flag) {
    StoreChanges changes = m_changes;
    changes.flags[line] = flag;
    Push(flag != 0 ? tr("hide the line") : tr("show the line"), std::move(changes));
}

bool CStoreDocument::Save(QString& why) {
    for (auto const& [line, marks] : m_changes.marks) {
        for (std::size_t i = 0; i < marks->size(); ++i) {
            long const location = static_cast<long>(i);
            bool const isMarked = m_store->IsLocMarkedToDelete(line, location) != 0;
            if (isMarked != (*marks)[i]) m_store->MarkLocToDelete(line, location, (*marks)[i] ? 1 : 0);
        }
    }
    for (auto const& [line, flag] : m_changes.flags) m_store->SetProfileFlag(line, flag);
    StoreChanges const unsaved = m_changes;
    bool const isSaved = m_store->CloseCurFile() != 0;
    if (!isSaved) why = FromBytes(GetLastErrorText());
    if (isSaved) {
        m_undo.setClean();
        m_changes = {};
    }
    // The store reads on from the file that stands there now.
    auto store = std::make_unique<CNorvaFileUtil>();
    if (store->SetFileName(m_path.toStdString(), kReopenStore, nullptr) == 0) {
        if (isSaved) why = FromBytes(GetLastErrorText());
        return false;
    }
    bool fitsAsBefore = store->ProfileCount == static_cast<int>(m_lines.size());
    for (int line = 0; fitsAsBefore && line < store->ProfileCount; ++line) {
        fitsAsBefore = store->GetProfileLocationNum(line, 0) == m_lines[static_cast<std::size_t>(line)].locations;
    }
    m_printer.reset();
    m_store = std::move(store);
    if (isSaved || !fitsAsBefore) m_undo.clear();
    m_changes = isSaved || !fitsAsBefore ? StoreChanges{} : unsaved;
    if (isSaved) RememberFile();
    ReadStructure();
    return isSaved;
}

}  // namespace norva
