#pragma once

#include "norva/api.h"
#include "norva/settings.h"
#include "norva/status.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Settings of column text as they are made from the first lines of a file. Shows nothing, knows no window: the dialog
/// "Import: Set Channels", command lines and templates all use this.
namespace norva {

/// Which characters separate the labels of a header line.
struct NORVA_API HeaderDelimiters {
    bool comma = false;
    bool tab = false;
    bool semicolon = false;
    bool space = false;
    bool other = false;
    std::string otherText = " ";  ///< one character or none

    /// A line feed, then every character of the set.
    std::string Text() const;

    bool operator==(HeaderDelimiters const&) const = default;
};

/// A line with text, without the blanks at its end.
struct PreviewLine {
    std::string text{};
    std::uint64_t offset = 0;  ///< just after the line
    std::uint64_t number = 0;  ///< in the file, from 1
};

/// The start of a text file, or of the text that a file is converted to.
struct TextPreview {
    static constexpr std::size_t kMostLines = 40;

    std::string path{};                 ///< as messages name the file
    std::vector<PreviewLine> lines{};   ///< the first lines with text
    bool isCsv = false;                 ///< values may hold blanks: the file's name ends in "CSV"
    bool readsHyphens = false;          ///< "-" in a header line is a blank (gravity meters)
    bool isSeaSpy = false;              ///< records of a SeaSPY log as plain fields, see `titles`
    bool hasCoordinates = false;        ///< the log has them
    std::vector<std::string> titles{};  ///< of a log's fields
};

/// Reads the start of a file of one of the text formats ("ASCII XYZ", "Scintrex CG5", "SeaSPY(Marine Magnetics)",
/// "GPS Exchange Format(GPX)", ...). `format` is a label of the format list; empty: recognised. Fails for a file that
/// cannot be read, is not of that format or holds no text, and for a format that is no text.
NORVA_API Status ReadTextPreview(std::string const& path, std::string const& format, TextPreview& preview);

/// What a column can be made.
enum class ColumnType { Text, Float, Double, Short, Long, Date, Time, Geographic, Skipped };

NORVA_API ColumnType TypeOf(NorvaChannelStruct const& column);
/// "text", "float", "double", "short", "long", "date", "time", "geographic", "skip".
NORVA_API std::string_view ColumnTypeName(ColumnType type);
NORVA_API std::optional<ColumnType> FindColumnType(std::string_view name);

/// Templates of dates or times: "YYYY/MM/DD" and its code.
struct NORVA_API ValueTemplates {
    std::vector<std::string> names{};
    std::vector<int> codes{};

    /// Place of a code in the lists; -1 for none.
    int IndexOf(int code) const;
};
NORVA_API ValueTemplates const& DateTemplates();
NORVA_API ValueTemplates const& TimeTemplates();

enum class ColumnClass : int;  // what the rows show a column to be

/// Whether a header line may be made of nothing but numbers, which then become names.
enum class NumbersAsNames { Refuse, Take };

/// Column settings while they are made: as guessed from a preview, then changed. Columns count from 0; one that is not
/// there throws std::out_of_range.
class NORVA_API CColumnTextDraft {
public:
    /// As the dialog opens: the first lines that hold no data skipped (of a CSV file one line more), every column
    /// guessed from the rows below.
    explicit CColumnTextDraft(TextPreview preview);

    TextPreview const& Preview() const { return m_preview; }
    ColumnTextSettings const& Settings() const { return m_settings; }
    int ColumnCount() const { return static_cast<int>(m_titles.size()); }
    /// Column titles as shown: the labels of a header line with their units.
    std::vector<std::string> const& Titles() const { return m_titles; }
    /// The preview lines from the skip count on as values; a row may have fewer or more than there are columns.
    std::vector<std::vector<std::string>> const& Rows() const { return m_rows; }
    /// Preview lines that are shown as the file's header.
    int HeaderCount() const { return m_headerCount; }
    /// The skip counts that can be chosen; the last is below the first when no line holds data.
    int FirstSkip() const { return m_firstSkip; }
    int LastSkip() const { return static_cast<int>(m_preview.lines.size()) - 1; }
    /// As the dialog splits header lines of this file unless told otherwise.
    HeaderDelimiters UsualDelimiters() const;

    /// Leaves out that many preview lines. The columns are guessed again, unless one was changed before.
    Status SetSkip(int count);
    /// Takes names and units of all columns from a preview line (from 0). On failure nothing changes.
    Status TakeHeaderLine(int line, HeaderDelimiters const& delimiters,
                          NumbersAsNames numbers = NumbersAsNames::Refuse);
    /// Also sets what goes with the type: the width of a text, decimals or an exponent, the template that the first
    /// value fits (without one the column keeps its template).
    Status SetType(int column, ColumnType type);
    /// Place in DateTemplates() or TimeTemplates() of the template that the column's first value fits; -1 for none.
    int FittingTemplate(int column, ColumnType dateOrTime) const;
    /// Template code of a date or time column.
    Status SetTemplate(int column, int code);
    /// Characters of a text, 1 at least.
    Status SetTextSize(int column, int size);
    void SetName(int column, std::string name);
    void SetUnits(int column, std::string units);
    /// The column whose changes start a line of the survey, which is not imported itself; -1 for none.
    void SetLabelColumn(int column);
    /// Whether the column can be made that type: fields of a SeaSPY log keep to their kind.
    bool Allows(int column, ColumnType type) const;

    /// Takes whole settings, after CheckColumnText.
    Status SetSettings(ColumnTextSettings settings);

private:
    NorvaChannelStruct& Column(int column);
    void SplitRows();
    void ResetTitles(std::size_t count);
    void Guess();
    void ApplyClasses();
    void PresetSeaSpy();
    void SplitTitles();
    void ChooseText(std::size_t column);
    void ChooseNumberFormat(std::size_t column);
    void ChooseTemplate(int column, ColumnType type);
    void ChooseGeographic(std::size_t column);

    TextPreview m_preview;
    ColumnTextSettings m_settings;
    int m_headerCount = 0;
    int m_firstSkip = 0;
    bool m_isEdited = false;
    std::vector<std::vector<std::string>> m_rows;
    std::vector<std::string> m_titles;
    std::vector<ColumnClass> m_classes;
};

/// The settings that the dialog opens with.
NORVA_API ColumnTextSettings GuessColumnText(TextPreview const& preview);
/// Whether a file that begins so can be read by the settings: the number of columns, the lines to skip, types, widths
/// and templates.
NORVA_API Status CheckColumnText(TextPreview const& preview, ColumnTextSettings const& settings);

}  // namespace norva
