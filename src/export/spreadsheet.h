#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// A worksheet in memory, written as BIFF2 records (Microsoft Excel 2.x): BOF, numbers, texts, EOF.
///
/// A cell takes 16 bytes; texts stand one after the other in one buffer, so that a million cells need no million
/// heap nodes. Rows and columns count from 0 and grow on demand.
class CSpreadsheet {
public:
    class CCellRef;

    /// The cell, made if it is not there yet. The reference lasts as long as the sheet.
    CCellRef Cell(std::size_t row, std::size_t column);
    std::size_t RowCount() const { return m_rows.size(); }

    /// Takes bytes of the file; false ends the writing.
    using Sink = bool (*)(void* context, std::string_view bytes);
    /// Writes all records: numbers by rows and columns, then texts in the same order. False when the sink failed.
    bool Write(Sink sink, void* context) const;

private:
    enum class Kind : std::uint8_t { Empty, Number, Text };

    struct CellData {
        union {
            double number;
            std::uint64_t textOffset;
        };
        std::uint8_t textLength = 0;
        std::uint8_t format = 0;  ///< number format index, 6 bits
        Kind kind = Kind::Empty;

        CellData() : number(0) {}
    };

    bool WriteKind(Kind kind, Sink sink, void* context) const;

    std::vector<std::vector<CellData>> m_rows;
    std::string m_texts;

    friend class CCellRef;
};

/// One cell of a sheet.
class CSpreadsheet::CCellRef {
public:
    void SetNumber(double value);
    /// Keeps the first 255 characters.
    void SetText(std::string_view text);
    /// Number format: the low 6 bits count.
    void SetFormatIndex(int index);

private:
    CCellRef(CSpreadsheet& sheet, std::size_t row, std::size_t column) : m_sheet(sheet), m_row(row), m_column(column) {}
    CellData& Data() { return m_sheet.m_rows[m_row][m_column]; }

    CSpreadsheet& m_sheet;
    std::size_t m_row;
    std::size_t m_column;

    friend class CSpreadsheet;
};

}  // namespace norva
