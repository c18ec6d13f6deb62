#include "export/spreadsheet.h"

#include "store/value_rules.h"

namespace norva {

namespace {

// Record types and lengths of BIFF2; every record is type (2 bytes), length (2 bytes), payload, little-endian.
constexpr std::uint16_t kBof = 0x0009;
constexpr std::uint16_t kNumber = 0x0003;
constexpr std::uint16_t kLabel = 0x0004;
constexpr std::uint16_t kEof = 0x000A;
constexpr std::uint16_t kBofLength = 4;
constexpr std::uint16_t kNumberLength = 15;
constexpr std::uint16_t kLabelHead = 8;
constexpr std::uint16_t kVersion = 0x0002;
constexpr std::uint16_t kWorksheet = 0x0010;
constexpr std::size_t kLongestText = 255;
constexpr std::size_t kBufferSize = 64 * 1024;

void Append16(std::string& out, std::uint16_t value) {
    char bytes[2];
    StoreLittle16(bytes, value);
    out.append(bytes, 2);
}

/// Type and length, row, column (their low 16 bits) and the three attribute bytes.
void AppendCellHead(std::string& out, std::uint16_t type, std::uint16_t length, std::size_t row, std::size_t column,
                    std::uint8_t format) {
    Append16(out, type);
    Append16(out, length);
    Append16(out, static_cast<std::uint16_t>(row & 0xFFFFU));
    Append16(out, static_cast<std::uint16_t>(column & 0xFFFFU));
    out += '\0';
    out += static_cast<char>(format);
    out += '\0';
}

}  // namespace

CSpreadsheet::CCellRef CSpreadsheet::Cell(std::size_t row, std::size_t column) {
    if (row >= m_rows.size()) m_rows.resize(row + 1);
    std::vector<CellData>& cells = m_rows[row];
    if (column >= cells.size()) {
        // Rows of a sheet are alike: the row before says how wide this one will be.
        if (cells.capacity() <= column && row > 0) cells.reserve(m_rows[row - 1].size());
        cells.resize(column + 1);
    }
    return {*this, row, column};
}

bool CSpreadsheet::WriteKind(Kind kind, Sink sink, void* context) const {
    std::string out;
    out.reserve(kBufferSize + kLabelHead + kLongestText);
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        for (std::size_t column = 0; column < m_rows[row].size(); ++column) {
            CellData const& cell = m_rows[row][column];
            if (cell.kind != kind) continue;
            if (kind == Kind::Number) {
                AppendCellHead(out, kNumber, kNumberLength, row, column, cell.format);
                char bytes[8];
                StoreDouble(bytes, cell.number);
                out.append(bytes, sizeof bytes);
            } else {
                AppendCellHead(out, kLabel, static_cast<std::uint16_t>(kLabelHead + cell.textLength), row, column,
                               cell.format);
                out += static_cast<char>(cell.textLength);
                out.append(m_texts, cell.textOffset, cell.textLength);
            }
            if (out.size() >= kBufferSize) {
                if (!sink(context, out)) return false;
                out.clear();
            }
        }
    }
    return sink(context, out);
}

bool CSpreadsheet::Write(Sink sink, void* context) const {
    std::string record;
    Append16(record, kBof);
    Append16(record, kBofLength);
    Append16(record, kVersion);
    Append16(record, kWorksheet);
    if (!sink(context, record) || !WriteKind(Kind::Number, sink, context) || !WriteKind(Kind::Text, sink, context)) {
        return false;
    }
    record.clear();
    Append16(record, kEof);
    Append16(record, 0);
    return sink(context, record);
}

void CSpreadsheet::CCellRef::SetNumber(double value) {
    Data().number = value;
    Data().kind = Kind::Number;
}

void CSpreadsheet::CCellRef::SetText(std::string_view text) {
    text = text.substr(0, kLongestText);
    CellData& cell = Data();
    cell.textOffset = m_sheet.m_texts.size();
    cell.textLength = static_cast<std::uint8_t>(text.size());
    cell.kind = Kind::Text;
    m_sheet.m_texts.append(text);
}

void CSpreadsheet::CCellRef::SetFormatIndex(int index) {
    Data().format = static_cast<std::uint8_t>(index & 0x3F);
}

}  // namespace norva
