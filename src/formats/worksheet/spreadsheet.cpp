#include "formats/worksheet/spreadsheet.h"

#include "store/value_rules.h"

#include <algorithm>
#include <string>

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
constexpr std::size_t kTextBlock = 64 * 1024;

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

CSpreadsheetCell CSpreadsheet::Cell(std::size_t row, std::size_t column) {
    while (m_rows.size() <= row) m_rows.push_back({m_cells.size(), 0});
    Row& cells = m_rows[row];
    if (column >= cells.count) {
        if (cells.start + cells.count != m_cells.size()) {
            std::size_t const start = m_cells.size();
            for (std::size_t i = 0; i < cells.count; ++i) m_cells.push_back(m_cells[cells.start + i]);
            cells.start = start;
        }
        cells.count = column + 1;
        m_cells.resize(cells.start + cells.count);
    }
    return {*this, m_cells[cells.start + column]};
}

char const* CSpreadsheet::KeepText(std::string_view text) {
    if (m_textBlocks.empty() || text.size() > kTextBlock - m_textUsed) {
        m_textBlocks.push_back(std::make_unique_for_overwrite<char[]>(kTextBlock));
        m_textUsed = 0;
    }
    char* const kept = m_textBlocks.back().get() + m_textUsed;
    std::copy(text.begin(), text.end(), kept);
    m_textUsed += text.size();
    return kept;
}

bool CSpreadsheet::WriteKind(Kind kind, Sink sink, void* context) const {
    std::string out;
    out.reserve(kBufferSize + kLabelHead + kLongestText);
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        for (std::size_t column = 0; column < m_rows[row].count; ++column) {
            CellData const& cell = m_cells[m_rows[row].start + column];
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
                out.append(cell.text, cell.textLength);
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

void CSpreadsheetCell::SetNumber(double value) {
    m_data.number = value;
    m_data.kind = CSpreadsheet::Kind::Number;
}

void CSpreadsheetCell::SetText(std::string_view text) {
    text = text.substr(0, kLongestText);
    m_data.text = m_sheet.KeepText(text);
    m_data.textLength = static_cast<std::uint8_t>(text.size());
    m_data.kind = CSpreadsheet::Kind::Text;
}

void CSpreadsheetCell::SetFormatIndex(int index) {
    m_data.format = static_cast<std::uint8_t>(index & 0x3F);
}

}  // namespace norva
