#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

/// Tables as surveys write them, with what is really in them.
namespace norva::test {

/// The same numbers from the same seed everywhere.
class CDice {
public:
    explicit CDice(std::uint64_t seed) : m_state(seed * 0x9E3779B97F4A7C15U + 1) {}
    std::uint64_t Next() {
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15U);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }
    /// From `low` to `high`, both included.
    int Between(int low, int high) {
        return low + static_cast<int>(Next() % static_cast<std::uint64_t>(high - low + 1));
    }
    bool Chance(int percent) { return Between(1, 100) <= percent; }
    double Uniform() { return static_cast<double>(Next() >> 11) / 9007199254740992.0; }
    template <typename Choices>
    auto const& Of(Choices const& choices) {
        return choices[static_cast<std::size_t>(Between(0, static_cast<int>(std::size(choices)) - 1))];
    }

private:
    std::uint64_t m_state;
};

struct TrueCell {
    std::optional<double> value{};
    std::string text{};
    bool isMissing = false;
};

struct TrueColumn {
    enum class Kind { Number, Text, Date, Time, Position };
    std::string name{};
    std::string units{};
    Kind kind = Kind::Number;
    std::vector<TrueCell> cells{};
};

struct GeneratedTable {
    std::string layout{};
    std::string extension{};
    std::string bytes{};
    std::vector<TrueColumn> columns{};
    std::vector<std::string> labels{};  ///< of each row's line of the survey; empty: one line
    bool isHard = false;
    std::size_t rowsThatMayDiffer = 0;  ///< odd rows that the file holds on purpose, to be told of
};

inline std::string Fixed(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

class CTableMaker {
public:
    static constexpr int kLayouts = 22;

    explicit CTableMaker(std::uint64_t seed) : m_dice(seed) {}

    GeneratedTable Make(int layout) {
        m_table = {};
        m_rows = m_dice.Chance(20) ? m_dice.Between(3, 8) : m_dice.Between(12, 300);
        switch (layout) {
            case 0:
                return Csv("csv");
            case 1:
                m_unitRow = true;
                return Csv("csv, row of units");
            case 2:
                m_separator = ";";
                m_mark = ',';
                return Csv("semicolon, decimal comma");
            case 3:
                m_separator = "\t";
                m_extension = ".txt";
                return Csv("tab");
            case 4:
                m_separator = "|";
                m_extension = ".txt";
                return Csv("bar");
            case 5:
                m_separator = ", ";
                m_quotesNames = true;
                return Csv("comma and blank, quoted names");
            case 6:
                return Xyz("blanks with marker rows", true, true);
            case 7:
                return Xyz("blanks without header", false, false);
            case 8:
                m_comment = m_dice.Chance(50) ? "/" : "#";
                return Xyz("blanks, names in a comment", true, m_dice.Chance(50));
            case 9:
                m_preamble = m_dice.Between(1, 60);
                return Csv("preamble");
            case 10:
                m_names = false;
                return Csv("csv without header");
            case 11:
                m_labelColumn = true;
                return Csv("line column");
            case 12:
                m_dummy = m_dice.Of(kDummies);
                return Csv("dummies");
            case 13:
                m_texts = 2;
                return Csv("texts with separators");
            case 14:
                m_dates = 1;
                return Csv("dates and times");
            case 15:
                m_dates = 2;
                return Csv("date-times");
            case 16:
                m_positions = true;
                return Csv("positions");
            case 17:
                m_late = true;
                m_rows = m_dice.Between(200, 2500);
                return Csv("decimals late in the file");
            case 18:
                m_trailing = true;
                m_separator = ";";
                return Csv("separator at the end of rows");
            case 19:
                m_oddRows = true;
                m_table.isHard = true;
                m_texts = 1;
                m_rows += 40;
                return Csv("odd rows");
            case 20:
                m_latin = true;
                m_texts = 1;
                return Csv("Latin-1");
            default:
                m_wide = true;
                return Csv("UTF-16");
        }
    }

private:
    static constexpr char const* kDummies[] = {"-9999", "-99999", "-999.25", "1e32", "-9999.99", "-999"};

    TrueColumn& Column(std::string name, std::string units, TrueColumn::Kind kind) {
        m_table.columns.push_back({std::move(name), std::move(units), kind, {}});
        return m_table.columns.back();
    }

    /// What the cell is, and how it is written.
    void Number(std::size_t column, double value, int decimals, std::vector<std::string>& row) {
        std::string text = Fixed(value, decimals);
        TrueCell cell;
        cell.value = std::stod(text);
        if (m_missingIn == static_cast<int>(column) && m_dice.Chance(15)) {
            cell = {{}, {}, true};
            text = !m_dummy.empty() ? m_dummy : m_missing;
        }
        m_table.columns[column].cells.push_back(cell);
        if (m_mark == ',') {
            for (char& c : text) c = c == '.' ? ',' : c;
        }
        row.push_back(std::move(text));
    }

    void Word(std::size_t column, std::string text, std::vector<std::string>& row) {
        m_table.columns[column].cells.push_back({{}, text, text.empty()});
        std::string written;
        bool const needs = text.find_first_of(",;|\t\"\n") != std::string::npos || (m_texts == 2 && m_dice.Chance(30));
        if (!needs) {
            row.push_back(std::move(text));
            return;
        }
        written = "\"";
        for (char const c : text) written += c == '"' ? "\"\"" : std::string(1, c);
        row.push_back(written + "\"");
    }

    std::string SomeText() {
        static constexpr char const* kWords[] = {
            "fence", "power line", "ok",           "gate, open", "road 12", "noise \"high\"", "sand; wet",
            "NA",    "-",          "Line 7 start", "near 5,5",   "rock",    "see note 3",     ""};
        if (m_latin) {
            static constexpr char const* kLatin[] = {"caf\xE9", "\xD6l", "ok", "Stra\xDFte 5", "ni\xF1o"};
            return m_dice.Of(kLatin);
        }
        std::string text = m_dice.Of(kWords);
        if (m_texts != 2) {
            for (char& c : text) c = c == ',' || c == ';' || c == '"' ? '_' : c;
        }
        return text;
    }

    struct Source {
        enum What {
            Fid,
            Easting,
            Northing,
            Mag,
            Alt,
            Grav,
            Text,
            Station,
            DayCell,
            Clock,
            Stamp,
            Lat,
            Lon,
            Line,
            Flag
        } what;
        int decimals = 0;
    };

    void ChooseColumns() {
        using Kind = TrueColumn::Kind;
        if (m_labelColumn) {
            static constexpr char const* kNames[] = {"Line", "LINE", "line_no", "Profile", "Flight"};
            Add(Source::Line, 0, m_dice.Of(kNames), "", Kind::Text);
        }
        if (m_dice.Chance(60)) Add(Source::Fid, 0, "Fid", "", Kind::Number);
        if (m_dice.Chance(20) && m_separator != " ") Add(Source::Station, 0, "Station", "", Kind::Text);
        if (m_dates == 1) {
            Add(Source::DayCell, 0, "Date", "", Kind::Date);
            Add(Source::Clock, m_dice.Between(0, 3), "Time", "", Kind::Time);
        }
        if (m_dates == 2) {
            Add(Source::DayCell, 0, "Stamp_date", "", Kind::Date);
            Add(Source::Stamp, m_dice.Between(0, 3), "Stamp_time", "", Kind::Time);
        }
        if (m_positions) {
            Add(Source::Lat, 0, "Lat", "", Kind::Position);
            Add(Source::Lon, 0, "Lon", "", Kind::Position);
        } else {
            Add(Source::Easting, m_dice.Between(0, 3), "X", "m", Kind::Number);
            Add(Source::Northing, m_dice.Between(0, 3), "Y", "m", Kind::Number);
        }
        Add(Source::Mag, m_dice.Between(1, 3), "Mag", "nT", Kind::Number);
        if (m_dice.Chance(60)) Add(Source::Alt, m_dice.Between(0, 2), "Alt", "m", Kind::Number);
        if (m_dice.Chance(30)) Add(Source::Grav, m_dice.Between(2, 4), "Grav", "mGal", Kind::Number);
        if (m_dice.Chance(30)) Add(Source::Flag, 0, "Sats", "", Kind::Number);
        for (int i = 0; i < m_texts; ++i) Add(Source::Text, 0, i == 0 ? "Remark" : "Note", "", Kind::Text);
        if (m_dice.Chance(50) || !m_dummy.empty()) {
            for (std::size_t i = 0; i < m_sources.size(); ++i) {
                if (m_sources[i].what == Source::Mag) m_missingIn = static_cast<int>(i);
            }
        }
        static constexpr char const* kMarks[] = {"", "*", "NaN", "N/A", "--", "null", "?"};
        m_missing = m_dice.Of(kMarks);
        if (m_separator == " " && m_missing.empty()) m_missing = "*";
    }

    void Add(Source::What what, int decimals, std::string name, std::string units, TrueColumn::Kind kind) {
        m_sources.push_back({what, decimals});
        if (m_names && !m_unitRow && m_separator != " " && !units.empty() && m_unitStyle == 0) units.clear();
        if (!m_names || m_separator == " ") units.clear();
        Column(std::move(name), std::move(units), kind);
    }

    std::vector<std::string> Row(int i) {
        std::vector<std::string> row;
        bool const isLate = m_late && i < m_rows - 5;
        m_seconds += m_dice.Between(1, 9);
        for (std::size_t c = 0; c < m_sources.size(); ++c) {
            Source const source = m_sources[c];
            double const wave = std::sin(i * 0.05 + m_phase);
            switch (source.what) {
                case Source::Fid:
                    Number(c, m_firstFid + i, 0, row);
                    break;
                case Source::Easting:
                    Number(c, 450000 + i * 2.5 + wave, isLate ? 0 : source.decimals, row);
                    break;
                case Source::Northing:
                    Number(c, 6200000 - i * 1.25 + wave * 3, isLate ? 0 : source.decimals, row);
                    break;
                case Source::Mag:
                    Number(c, 48000 + 900 * wave + m_dice.Uniform() * 10, isLate ? 0 : source.decimals, row);
                    break;
                case Source::Alt:
                    Number(c, 30 + 5 * wave, source.decimals, row);
                    break;
                case Source::Grav:
                    Number(c, 978600 + 20 * wave, source.decimals, row);
                    break;
                case Source::Flag:
                    Number(c, m_dice.Between(4, 12), 0, row);
                    break;
                case Source::Text:
                    Word(c, SomeText(), row);
                    break;
                case Source::Station: {
                    char text[16];
                    std::snprintf(text, sizeof text, "%05d", 100 + i * 25);
                    Word(c, text, row);
                    break;
                }
                case Source::Line:
                    Word(c, LabelOf(i), row);
                    break;
                case Source::DayCell:
                    DayCell(c, i, row);
                    break;
                case Source::Clock:
                    Clock(c, source.decimals, row);
                    break;
                case Source::Stamp: {
                    std::vector<std::string> clock;
                    Clock(c, source.decimals, clock);
                    row.back() += (m_joint == 0 ? "T" : " ") + clock[0] + (m_joint == 0 && m_zone ? "Z" : "");
                    break;
                }
                case Source::Lat:
                    Position(c, -35.25 + i * 0.0013, 'N', 'S', row);
                    break;
                case Source::Lon:
                    Position(c, 18.5 + i * 0.0021, 'E', 'W', row);
                    break;
            }
        }
        return row;
    }

    std::string LabelOf(int i) const {
        int const line = i / m_perLine;
        return m_letter + std::to_string(1000 + line * 10);
    }

    void DayCell(std::size_t column, int i, std::vector<std::string>& row) {
        // From the 10th of a month into the next one or two.
        static constexpr int kBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
        static constexpr char const* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
        int const year = 2021;
        int const ofYear = kBefore[m_month - 1] + 10 + i * 40 / m_rows;
        int month = m_month;
        while (kBefore[month] < ofYear) ++month;
        int const day = ofYear - kBefore[month - 1];
        m_table.columns[column].cells.push_back({year + (kBefore[month - 1] + day) / 365.0, {}, false});
        char text[32];
        switch (m_dates == 2 ? 0 : m_dateStyle) {
            case 0:
                std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
                break;
            case 1:
                std::snprintf(text, sizeof text, "%02d/%02d/%04d", day, month, year);
                break;
            case 2:
                std::snprintf(text, sizeof text, "%02d/%02d/%04d", month, day, year);
                break;
            case 3:
                std::snprintf(text, sizeof text, "%02d-%s-%04d", day, kMonths[month - 1], year);
                break;
            case 4:
                std::snprintf(text, sizeof text, "%04d%02d%02d", year, month, day);
                break;
            case 5:
                std::snprintf(text, sizeof text, "%d.%d.%04d", day, month, year);
                break;
            case 6:
                std::snprintf(text, sizeof text, "%s %02d %04d", kMonths[month - 1], day, year);
                break;
            default:
                std::snprintf(text, sizeof text, "%04d-%03d", year, kBefore[month - 1] + day);
                break;
        }
        row.emplace_back(text);
    }

    void Clock(std::size_t column, int decimals, std::vector<std::string>& row) {
        int const whole = 9 * 3600 + m_seconds % 36000;
        std::string const fraction = decimals == 0 ? "" : Fixed(m_dice.Between(0, 9) / 10.0, decimals).substr(1);
        char text[32];
        std::snprintf(text, sizeof text, "%02d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
        double const seconds = whole + (fraction.empty() ? 0 : std::stod("0" + fraction));
        m_table.columns[column].cells.push_back({seconds / 3600, {}, false});
        row.push_back(text + fraction);
    }

    void Position(std::size_t column, double degrees, char plus, char minus, std::vector<std::string>& row) {
        double const magnitude = std::fabs(degrees);
        int const whole = static_cast<int>(magnitude);
        int const minutes = static_cast<int>((magnitude - whole) * 60);
        double const rest = std::stod(Fixed(((magnitude - whole) * 60 - minutes) * 60 * 0.99, 2));
        double const restMinutes = std::stod(Fixed((magnitude - whole) * 60 * 0.99, 4));
        char const letter = degrees < 0 ? minus : plus;
        char text[64];
        double value = whole + minutes / 60.0 + rest / 3600;
        switch (m_positionStyle) {
            case 0:
                std::snprintf(text, sizeof text, "%d\xC2\xB0%02d'%05.2f\"%c", whole, minutes, rest, letter);
                break;
            case 1:
                std::snprintf(text, sizeof text, "%c%d %02d %05.2f", letter, whole, minutes, rest);
                break;
            case 2:
                std::snprintf(text, sizeof text, "%s%d.%02d.%05.2f", degrees < 0 ? "-" : "", whole, minutes, rest);
                break;
            default:
                value = whole + restMinutes / 60;
                std::snprintf(text, sizeof text, "%d\xC2\xB0 %07.4f'%c", whole, restMinutes, letter);
                break;
        }
        m_table.columns[column].cells.push_back({degrees < 0 ? -value : value, {}, false});
        row.emplace_back(text);
    }

    std::string Joined(std::vector<std::string> const& row) const {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i > 0) line += m_separator;
            line += row[i];
        }
        return line + (m_trailing ? m_separator : "");
    }

    std::vector<std::string> Names(bool withUnits) const {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < m_table.columns.size(); ++i) {
            if (m_sources[i].what == Source::Stamp) continue;
            TrueColumn const& column = m_table.columns[i];
            std::string name = m_dates == 2 && m_sources[i].what == Source::DayCell ? "Stamp" : column.name;
            if (withUnits && !column.units.empty())
                name += m_unitStyle == 1 ? " (" + column.units + ")" : "[" + column.units + "]";
            if (m_quotesNames) name = "\"" + name + "\"";
            names.push_back(std::move(name));
        }
        return names;
    }

    void Begin() {
        m_unitStyle = m_dice.Between(0, 2);
        m_dateStyle = m_dice.Between(0, 7);
        m_positionStyle = m_dice.Between(0, 3);
        m_joint = m_dice.Between(0, 1);
        m_zone = m_dice.Chance(50);
        m_month = m_dice.Between(1, 10);
        m_perLine = m_dice.Between(5, 40);
        m_letter = m_dice.Chance(50) ? "L" : "";
        m_firstFid = m_dice.Between(0, 40000);
        m_phase = m_dice.Uniform() * 6;
        if (m_texts == 0 && m_dice.Chance(25) && m_separator != " ") m_texts = 1;
    }

    GeneratedTable Csv(std::string layout) {
        Begin();
        m_table.layout = std::move(layout);
        m_table.extension = m_extension;
        ChooseColumns();
        std::vector<std::string> lines;
        for (int i = 0; i < m_preamble; ++i) {
            static constexpr char const* kLines[] = {"Instrument log",
                                                     "Operator: J. Smith",
                                                     "Date: 23.10.2020",
                                                     "========",
                                                     "",
                                                     "Base station at 450000 6200000",
                                                     "Sensor height, 2.1 m"};
            lines.emplace_back(m_dice.Of(kLines));
        }
        if (m_names) lines.push_back(Joined(Names(!m_unitRow)));
        if (m_unitRow) {
            std::vector<std::string> units;
            for (std::size_t i = 0; i < m_table.columns.size(); ++i) {
                if (m_sources[i].what != Source::Stamp) units.push_back(m_table.columns[i].units);
            }
            lines.push_back(Joined(units));
        }
        for (int i = 0; i < m_rows; ++i) {
            std::vector<std::string> const row = Row(i);
            std::string line = Joined(row);
            if (m_oddRows && i > 2 && i % 17 == 5) {
                // One separator too many, in a place that reads as an empty cell.
                std::size_t const at = line.find(m_separator);
                line.insert(at, m_separator);
                ++m_table.rowsThatMayDiffer;
            }
            lines.push_back(std::move(line));
            if (m_labelColumn) m_table.labels.push_back(LabelOf(i));
        }
        if (m_oddRows) {
            lines.push_back("Total: " + std::to_string(m_rows) + " readings");
            ++m_table.rowsThatMayDiffer;
        }
        if (!m_names) {
            for (std::size_t i = 0; i < m_table.columns.size(); ++i)
                m_table.columns[i].name = "Ch" + std::to_string(i + 1);
        }
        return Finish(lines);
    }

    GeneratedTable Xyz(std::string layout, bool hasNames, bool hasMarkers) {
        m_separator = " ";
        m_extension = ".xyz";
        m_names = hasNames;
        Begin();
        m_table.layout = std::move(layout);
        m_table.extension = m_extension;
        ChooseColumns();
        std::vector<std::string> lines;
        if (hasNames) lines.push_back((m_comment.empty() ? "" : m_comment + " ") + Aligned(Names(false)));
        if (hasNames && m_dice.Chance(40))
            lines.push_back((m_comment.empty() ? "" : m_comment) + "======== ======== ========");
        static constexpr char const* kWords[] = {"Line", "LINE", "TIE", "L", "Flight"};
        std::string const word = m_dice.Of(kWords);
        for (int i = 0; i < m_rows; ++i) {
            if (hasMarkers && i % m_perLine == 0) lines.push_back(word + "  " + LabelOf(i));
            lines.push_back(Aligned(Row(i)));
            if (hasMarkers) m_table.labels.push_back(LabelOf(i));
        }
        if (!hasNames) {
            for (std::size_t i = 0; i < m_table.columns.size(); ++i)
                m_table.columns[i].name = "Ch" + std::to_string(i + 1);
        }
        return Finish(lines);
    }

    static std::string Aligned(std::vector<std::string> const& row) {
        std::string line;
        for (std::string const& cell : row) {
            line.append(cell.size() < 12 ? 12 - cell.size() : 1, ' ');
            line += cell;
        }
        return line;
    }

    GeneratedTable Finish(std::vector<std::string> const& lines) {
        char const* const end = m_dice.Chance(40) ? "\r\n" : "\n";
        std::string text;
        for (std::string const& line : lines) text += line + end;
        if (m_dice.Chance(20)) text.resize(text.size() - (end[1] == '\0' ? 1 : 2));
        if (m_wide) {
            std::string wide = "\xFF\xFE";
            for (char const c : text) {
                wide += c;
                wide += '\0';
            }
            text = std::move(wide);
        }
        if (m_latin) {
            // Truth is UTF-8: every Latin-1 character of the samples is below 100 (hex).
            for (TrueColumn& column : m_table.columns) {
                for (TrueCell& cell : column.cells) {
                    std::string utf8;
                    for (char const c : cell.text) {
                        auto const byte = static_cast<unsigned char>(c);
                        if (byte < 0x80) {
                            utf8 += c;
                        } else {
                            utf8 += static_cast<char>(0xC0 | byte >> 6);
                            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
                        }
                    }
                    cell.text = std::move(utf8);
                }
            }
        }
        m_table.bytes = std::move(text);
        return std::move(m_table);
    }

    CDice m_dice;
    GeneratedTable m_table;
    std::vector<Source> m_sources;
    int m_rows = 0;
    std::string m_separator = ",";
    std::string m_extension = ".csv";
    std::string m_comment;
    std::string m_missing;
    std::string m_dummy;
    std::string m_letter;
    char m_mark = '.';
    bool m_names = true;
    bool m_unitRow = false;
    bool m_quotesNames = false;
    bool m_labelColumn = false;
    bool m_positions = false;
    bool m_late = false;
    bool m_trailing = false;
    bool m_oddRows = false;
    bool m_latin = false;
    bool m_wide = false;
    bool m_zone = false;
    int m_preamble = 0;
    int m_texts = 0;
    int m_dates = 0;
    int m_missingIn = -1;
    int m_unitStyle = 0;
    int m_dateStyle = 0;
    int m_positionStyle = 0;
    int m_joint = 0;
    int m_month = 1;
    int m_perLine = 10;
    int m_firstFid = 0;
    int m_seconds = 0;
    double m_phase = 0;
};

}  // namespace norva::test
