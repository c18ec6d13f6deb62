#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

namespace norva {

class CSpreadsheetCell;

/// A worksheet in memory, written as BIFF2 records (Microsoft Excel 2.x): BOF, numbers, texts, EOF.
///
/// A cell takes 16 bytes, a row another 16; cells, rows and texts each stand one after the other, so that a million
/// of them need no million heap nodes. Rows and columns count from 0 and grow on demand, best row after row: a row
/// that grows once a later one has cells moves behind it.
class CSpreadsheet {
public:
    /// The cell, made empty if it is not there yet; to be used before its row grows.
    CSpreadsheetCell Cell(std::size_t row, std::size_t column);

    /// Takes bytes of the file; false ends the writing.
    using Sink = bool (*)(void* context, std::string_view bytes);
    /// Writes all records: numbers by rows and columns, then texts in the same order. False when the sink failed.
    bool Write(Sink sink, void* context) const;

private:
    enum class Kind : std::uint8_t { Empty, Number, Text };

    struct CellData {
        union {
            double number;
            char const* text;  ///< in m_textBlocks
        };
        std::uint8_t textLength = 0;
        std::uint8_t format = 0;  ///< number format index, 6 bits
        Kind kind = Kind::Empty;

        CellData() : number(0) {}
    };

    struct Row {
        std::size_t start = 0;  ///< of its cells in m_cells
        std::size_t count = 0;
    };

    bool WriteKind(Kind kind, Sink sink, void* context) const;
    char const* KeepText(std::string_view text);

    std::deque<CellData> m_cells;
    std::deque<Row> m_rows;
    std::vector<std::unique_ptr<char[]>> m_textBlocks;
    std::size_t m_textUsed = 0;  ///< of the last block

    friend class CSpreadsheetCell;
};

/// One cell of a sheet.
class CSpreadsheetCell {
public:
    void SetNumber(double value);
    /// Keeps the first 255 characters.
    void SetText(std::string_view text);
    /// Number format: the low 6 bits count.
    void SetFormatIndex(int index);

private:
    CSpreadsheetCell(CSpreadsheet& sheet, CSpreadsheet::CellData& data) : m_sheet(sheet), m_data(data) {}

    CSpreadsheet& m_sheet;
    CSpreadsheet::CellData& m_data;

    friend class CSpreadsheet;
};

}  // namespace norva
