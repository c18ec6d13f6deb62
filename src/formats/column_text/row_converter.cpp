#include "formats/column_text/row_converter.h"

#include "formats/column_text/plain_decimal.h"
#include "formats/column_text/written_digits.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "store/value_rules.h"

#include <algorithm>

namespace norva {

namespace {

/// Whether two commas or two tabs stand between two values.
bool HoldsEmptyCell(char const* begin, char const* end) {
    return std::count(begin, end, ',') > 1 || std::count(begin, end, '\t') > 1;
}

/// A value that begins with a quote ends with one, unless a separator inside of the quotes has cut it.
bool HoldsHalfAQuote(std::string_view token) {
    token = Trim(token);
    return token.starts_with('"') && (token.size() == 1 || !token.ends_with('"'));
}

/// Whether commas look like decimal marks: no point, but numbers with one comma between the blanks.
bool HoldsDecimalCommas(std::string_view line) {
    if (line.find('.') != std::string_view::npos || line.find(',') == std::string_view::npos) return false;
    static constexpr CDelimiters blanks{" \t"};
    CTokenCursor cursor(line, blanks);
    std::size_t values = 0;
    std::size_t commas = 0;
    for (std::string_view value; cursor.Next(value); ++values) {
        std::size_t const comma = value.find(',');
        if (comma == std::string_view::npos) continue;
        std::string_view whole = value.substr(0, comma);
        std::string_view const fraction = value.substr(comma + 1);
        if (whole.starts_with('-') || whole.starts_with('+')) whole.remove_prefix(1);
        auto const isDigits = [](std::string_view text) { return !text.empty() && std::ranges::all_of(text, IsDigit); };
        if (!isDigits(whole) || !isDigits(fraction)) return false;
        ++commas;
    }
    return values > 1 && commas > 0;
}

/// Whether a value begins as numbers, dates and times do.
bool BeginsWithNumber(std::string_view value) {
    value = Trim(TrimOf(Trim(value), "\""));
    std::size_t const first = value.find_first_not_of("+-.");
    return first != std::string_view::npos && first < 3 && IsDigit(value[first]);
}

}  // namespace

CRowConverter::CRowConverter(std::vector<NorvaChannelStruct> const& columns, CDelimiters const& delimiters,
                             Forms const& forms, CNorvaDateTime const& dateTime, CNorvaGeographic const& geographic,
                             CColumnFiles& files, CRowReport& report)
    : m_delimiters(delimiters),
      m_forms(forms),
      m_dateTime(dateTime),
      m_geographic(geographic),
      m_files(files),
      m_report(report) {
    m_plans.reserve(columns.size());
    for (NorvaChannelStruct const& settings : columns) {
        m_plans.push_back(PlanFor(settings, static_cast<int>(m_plans.size()), forms));
        if (m_plans.back().kind != Kind::Skipped) m_rowPlans = m_plans.size();
    }
}

CRowConverter::Plan CRowConverter::PlanFor(NorvaChannelStruct const& settings, int column, Forms const& forms) {
    Plan plan;
    plan.column = column;
    plan.templateFormat = settings.templateFormat;
    switch (settings.dataType) {
        case DataType::kFloat:
            plan.kind = Kind::Float;
            break;
        case DataType::kDouble:
            switch (settings.displayFormat) {
                case DisplayFormat::kDate:
                    plan.kind = forms.date != nullptr ? Kind::OwnDate : Kind::Date;
                    break;
                case DisplayFormat::kTime:
                    plan.kind = forms.time != nullptr ? Kind::OwnTime : Kind::Time;
                    break;
                case DisplayFormat::kGeographic:
                    plan.kind = Kind::Geographic;
                    break;
                default:
                    plan.kind = Kind::Double;
            }
            break;
        case DataType::kInt:
        case DataType::kLong:
            plan.kind = Kind::Long;
            break;
        case DataType::kShort:
            plan.kind = Kind::Short;
            break;
        case DataType::kText:
            plan.kind = Kind::Text;
            plan.width = static_cast<std::size_t>(std::max(settings.arraySize, 0));
            break;
        default:
            break;
    }
    plan.isOrdered = IsOrderedChannel(settings, plan.kind);
    if (plan.kind == Kind::Float) plan.exactDigits = 1'000'000;
    if (plan.kind == Kind::Double) plan.exactDigits = 1'000'000'000'000'000;
    plan.range = plan.kind == Kind::Long    ? static_cast<double>(kNoDataLong)
                 : plan.kind == Kind::Short ? static_cast<double>(kNoDataShort)
                                            : kNoDataDouble;
    return plan;
}

/// Times and dates, and what counts the readings of an instrument.
bool CRowConverter::IsOrderedChannel(NorvaChannelStruct const& settings, Kind kind) {
    if (kind >= Kind::Date && kind <= Kind::OwnTime) return true;
    if (!IsNumber(kind)) return false;
    std::string const name = ToUpper(settings.name);
    return name == "FID" || name == "FIDUCIAL" || name == "TIME" || name == "STATION" || name == "POSITION";
}

bool CRowConverter::Row(std::string_view line, bool beginsEmpty) {
    char const* next = line.data();
    char const* const end = next + line.size();
    bool isShifted = beginsEmpty;
    int marks = 0;  // separators that are no blanks
    m_isSplit = false;
    for (std::size_t i = 0; i < m_rowPlans; ++i) {
        Plan& plan = m_plans[i];
        if (next != end && m_delimiters.Has(*next)) {
            char const* const gap = next;
            int separators = 0;
            do {
                separators += *next != ' ' ? 1 : 0;
            } while (++next != end && m_delimiters.Has(*next));
            marks += separators;
            // One at the start stands behind an empty cell.
            if (separators > (i == 0 ? 0 : 1) && next != end) isShifted |= i == 0 || HoldsEmptyCell(gap, next);
        }
        if (next == end) {
            if (isShifted || m_isSplit || marks > 0) NoteRow(line, isShifted);
            m_report.NoteRow(&ImportReport::fewerValues);
            for (; i < m_rowPlans; ++i) {
                if (!PutAbsent(m_plans[i])) return false;
            }
            return true;
        }
        if (IsNumber(plan.kind)) {
            PlainDecimal number;
            char const* const after = ReadPlainDecimal(next, end, number);
            if (after != nullptr && (after == end || m_delimiters.Has(*after))) {
                std::string_view const token(next, static_cast<std::size_t>(after - next));
                if (number.digits >= plan.exactDigits) {
                    double const off =
                        plan.keepsPlaces ? 0.5 : WrittenDigitsOff(static_cast<float>(number.value), number);
                    if (std::fabs(off - 0.5) > 0.01) {
                        // Without a branch: in many files every other coordinate is rounded.
                        plan.rounded += off > 0.5 ? 1 : 0;
                    } else {
                        CheckRounding(plan, number, token);
                    }
                }
                next = after;
                if (plan.kind == Kind::Float && number.value >= plan.low && number.value <= plan.high) {
                    char* const out = m_files.Append(plan.column, 4);
                    if (out == nullptr) return false;
                    StoreFloat(out, static_cast<float>(number.value));
                } else if (!PutNumber(plan, number.value, token)) {
                    return false;
                }
                continue;
            }
        }
        char const* const begin = next;
        while (next != end && !m_delimiters.Has(*next)) ++next;
        if (!PutToken(plan, {begin, static_cast<std::size_t>(next - begin)})) return false;
    }
    if (next != end || m_rowPlans != m_plans.size()) CheckRowEnd(next, end);
    // A row that blanks alone separate holds no commas.
    if (isShifted || m_isSplit || marks > 0 || next != end) NoteRow(line, isShifted);
    return true;
}

void CRowConverter::NoteRow(std::string_view line, bool isShifted) {
    if (isShifted) m_report.NoteRow(&ImportReport::shifted);
    if (m_isSplit || HoldsDecimalCommas(line)) m_report.NoteRow(&ImportReport::split);
}

bool CRowConverter::ReadsAsRow(std::string_view line) const {
    CTokenCursor cursor(line, m_delimiters);
    std::size_t values = 0;
    std::size_t numbers = 0;
    for (std::string_view value; cursor.Next(value); ++values) numbers += BeginsWithNumber(value) ? 1 : 0;
    return values == m_plans.size() ? numbers > 0 : numbers > values / 2;
}

/// Notes a number that its channel does not hold to the last digit that the source wrote.
void CRowConverter::CheckRounding(Plan& plan, PlainDecimal const& number, std::string_view token) {
    double stored = number.value;
    if (plan.kind == Kind::Float) {
        auto const single = static_cast<float>(number.value);
        if (WrittenDigitsOff(single, number) < 0.49) return;
        stored = static_cast<double>(single);
    }
    if (HasWrittenDigits(stored, token)) return;
    ReportFinding& finding = m_report.Channel(plan.column).rounded;
    std::size_t const places = finding.places.size();
    m_report.Note(finding, token);
    plan.keepsPlaces = plan.kind != Kind::Float || finding.places.size() > places;
}

/// Notes a row whose rest is not exactly the values of the last columns, which are skipped.
void CRowConverter::CheckRowEnd(char const* next, char const* end) {
    CTokenCursor cursor({next, static_cast<std::size_t>(end - next)}, m_delimiters);
    std::string_view token;
    for (std::size_t i = m_rowPlans; i < m_plans.size(); ++i) {
        if (!cursor.Next(token)) return m_report.NoteRow(&ImportReport::fewerValues);
    }
    if (cursor.Next(token)) m_report.NoteRow(&ImportReport::moreValues);
}

bool CRowConverter::Value(int column, std::string_view token) {
    Plan& plan = m_plans[static_cast<std::size_t>(column)];
    char const* const end = token.data() + token.size();
    PlainDecimal number;
    if (!IsNumber(plan.kind) || ReadPlainDecimal(token.data(), end, number) != end) return PutToken(plan, token);
    if (number.digits >= plan.exactDigits) CheckRounding(plan, number, token);
    return PutNumber(plan, number.value, token);
}

bool CRowConverter::Absent(int column) {
    return PutAbsent(m_plans[static_cast<std::size_t>(column)]);
}

bool CRowConverter::Number(int column, double value, std::string_view token) {
    Plan& plan = m_plans[static_cast<std::size_t>(column)];
    if (IsNumber(plan.kind)) return PutNumber(plan, value, token);
    return plan.kind == Kind::Skipped || PutConverted(plan, true, value, token);
}

bool CRowConverter::Text(int column, std::string_view token) {
    Plan const& plan = m_plans[static_cast<std::size_t>(column)];
    if (plan.kind == Kind::Skipped) return true;
    if (token.size() > plan.width) m_report.Note(m_report.Channel(column).cut, token);
    return PutText(plan, token);
}

bool CRowConverter::Missing(int column, std::string_view token) {
    Plan const& plan = m_plans[static_cast<std::size_t>(column)];
    if (plan.kind == Kind::Skipped) return true;
    m_report.Note(m_report.Channel(column).noData, token);
    return PutMissing(plan);
}

bool CRowConverter::Unreadable(int column, std::string_view token) {
    Plan const& plan = m_plans[static_cast<std::size_t>(column)];
    if (plan.kind == Kind::Skipped) return true;
    m_report.Note(m_report.Channel(column).unreadable, token);
    return PutMissing(plan);
}

void CRowConverter::StartLine() {
    for (Plan& plan : m_plans) plan.previous = -std::numeric_limits<double>::infinity();
}

void CRowConverter::Finish() {
    for (Plan const& plan : m_plans) {
        ReportChannel& channel = m_report.Channel(plan.column);
        channel.rounded.count += plan.rounded;
        if (plan.minimum > plan.maximum) continue;
        channel.hasRange = true;
        channel.minimum = plan.minimum;
        channel.maximum = plan.maximum;
    }
}

bool CRowConverter::PutAbsent(Plan& plan) {
    if (plan.kind == Kind::Skipped) return true;
    m_report.Note(m_report.Channel(plan.column).missing, {});
    return PutMissing(plan);
}

bool CRowConverter::PutMissing(Plan const& plan) {
    return plan.kind == Kind::Text ? PutText(plan, "*") : StoreMissing(plan);
}

bool CRowConverter::PutToken(Plan& plan, std::string_view token) {
    m_isSplit = m_isSplit || HoldsHalfAQuote(token);
    if (plan.kind == Kind::Skipped) return true;
    std::string_view const written = token;
    token = TrimOf(token, "\"");
    if (plan.kind == Kind::Text) {
        if (token.size() > plan.width) m_report.Note(m_report.Channel(plan.column).cut, written);
        return PutText(plan, token);
    }
    if (token.empty() || Contains(token, "*")) {
        m_report.Note(m_report.Channel(plan.column).noData, written);
        return StoreMissing(plan);
    }

    double value = kNoDataDouble;
    switch (plan.kind) {
        case Kind::Date: {
            bool const isRead = m_dateTime.GetDoubleDate(token, plan.templateFormat, value) != 0;
            return PutConverted(plan, isRead, value, written);
        }
        case Kind::Time: {
            std::size_t const point = token.find('.');
            int const decimals = point == std::string_view::npos ? 0 : static_cast<int>(token.size() - point - 1);
            bool const isRead = m_dateTime.GetDoubleTime(token, plan.templateFormat, decimals, value) != 0;
            return PutConverted(plan, isRead, value, written);
        }
        case Kind::Geographic: {
            int decimals = 0;
            bool const isRead = m_geographic.GetDoubleData(token, plan.templateFormat, value, decimals) != 0;
            return PutConverted(plan, isRead, value, written);
        }
        case Kind::OwnDate:
            return PutConverted(plan, IsDigit(token.front()), m_forms.date(token), written);
        case Kind::OwnTime:
            return PutConverted(plan, IsDigit(token.front()), m_forms.time(token), written);
        default:
            return PutScanned(plan, token, written);
    }
}

/// A number that is written in another way than plain decimals are; `token` is `written` without quotes.
bool CRowConverter::PutScanned(Plan& plan, std::string_view token, std::string_view written) {
    NumberRead const read = ScanNumber(token);
    ReportChannel& channel = m_report.Channel(plan.column);
    if (read.consumed == 0) {
        m_report.Note(channel.unreadable, written);
    } else if (read.consumed < TrimRight(token).size()) {
        m_report.Note(channel.withRest, written);
    }
    bool const isReal = plan.kind == Kind::Float || plan.kind == Kind::Double;
    if (isReal && read.consumed > 0 && std::fabs(read.value) < plan.range) {
        double const stored =
            plan.kind == Kind::Float ? static_cast<double>(static_cast<float>(read.value)) : read.value;
        if (!HasWrittenDigits(stored, token.substr(0, read.consumed))) m_report.Note(channel.rounded, written);
    }
    return PutNumber(plan, read.value, written);
}

/// Stores a double that came of a date, time or coordinate.
bool CRowConverter::PutConverted(Plan& plan, bool isRead, double value, std::string_view token) {
    if (!isRead) {
        m_report.Note(m_report.Channel(plan.column).unreadable, token);
    } else if (!(value >= plan.low && value <= plan.high)) {
        Examine(plan, value, token);
    }
    return PutDouble(plan, value);
}

bool CRowConverter::PutNumber(Plan& plan, double value, std::string_view token) {
    if (!(value >= plan.low && value <= plan.high)) {
        Examine(plan, value, token);
        return Store(plan, value, token);
    }
    // Between values that were in range, so that the range need not be asked.
    if (plan.kind == Kind::Float) {
        char* const out = m_files.Append(plan.column, 4);
        if (out == nullptr) return false;
        StoreFloat(out, static_cast<float>(value));
        return true;
    }
    return plan.kind == Kind::Double ? PutDouble(plan, value) : StoreWhole(plan, value, token);
}

void CRowConverter::Examine(Plan& plan, double value, std::string_view token) {
    ReportChannel& channel = m_report.Channel(plan.column);
    if (!(std::fabs(value) <= plan.range)) return m_report.Note(channel.outOfRange, token);
    bool const isWhole = plan.kind == Kind::Long || plan.kind == Kind::Short;
    if (isWhole) value = std::trunc(value);
    // The largest floats round up to the no-data value.
    bool const roundsUp = plan.kind == Kind::Float && static_cast<float>(value) == kNoDataFloat;
    if (value == plan.range || roundsUp) return m_report.Note(channel.noData, token);
    plan.minimum = std::min(plan.minimum, value);
    plan.maximum = std::max(plan.maximum, value);
    if (!plan.isOrdered) {
        plan.low = plan.minimum;
        plan.high = plan.maximum;
        return;
    }
    bool const isClock = plan.kind == Kind::Time || plan.kind == Kind::OwnTime;
    if (RunsBackwards(value, plan.previous, isClock)) m_report.Note(channel.backwards, token);
    plan.previous = value;
}

bool CRowConverter::Store(Plan const& plan, double value, std::string_view token) {
    if (plan.kind == Kind::Float) {
        char* const out = m_files.Append(plan.column, 4);
        if (out == nullptr) return false;
        StoreFloat(out, FloatInRange(value));
        return true;
    }
    if (plan.kind == Kind::Long || plan.kind == Kind::Short) return StoreWhole(plan, value, token);
    return PutDouble(plan, DoubleInRange(value));
}

bool CRowConverter::StoreWhole(Plan const& plan, double value, std::string_view token) {
    std::int32_t whole = 0;
    if (plan.kind == Kind::Long) {
        char* const out = m_files.Append(plan.column, 4);
        if (out == nullptr) return false;
        whole = LongInRange(value);
        StoreLittle32(out, static_cast<std::uint32_t>(whole));
    } else {
        char* const out = m_files.Append(plan.column, 2);
        if (out == nullptr) return false;
        std::int16_t const stored = ShortInRange(value);
        whole = stored;
        StoreLittle16(out, static_cast<std::uint16_t>(stored));
    }
    // What came out as no-data was noted for that.
    if (static_cast<double>(whole) != value && static_cast<double>(whole) != plan.range) {
        m_report.Note(m_report.Channel(plan.column).withFraction, token);
    }
    return true;
}

bool CRowConverter::PutDouble(Plan const& plan, double value) {
    char* const out = m_files.Append(plan.column, 8);
    if (out == nullptr) return false;
    StoreDouble(out, value);
    return true;
}

bool CRowConverter::StoreMissing(Plan const& plan) {
    // Every no-data value is what lies outside the range of its type.
    return Store(plan, 2 * kNoDataDouble, {});
}

bool CRowConverter::PutText(Plan const& plan, std::string_view token) {
    token = token.substr(0, plan.width);
    if (m_forms.upperCase) {
        ToUpper(token, m_text);
        token = m_text;
    }
    if (plan.width > 0 && plan.width <= CColumnFiles::kBufferSize) {
        char* const out = m_files.Append(plan.column, plan.width);
        if (out == nullptr) return false;
        std::fill(std::copy(token.begin(), token.end(), out), out + plan.width, ' ');
        return true;
    }
    if (!m_files.AppendBytes(plan.column, token.data(), token.size())) return false;
    static std::string const kBlanks(4096, ' ');
    for (std::size_t left = plan.width - token.size(); left > 0;) {
        std::size_t const part = std::min(left, kBlanks.size());
        if (!m_files.AppendBytes(plan.column, kBlanks.data(), part)) return false;
        left -= part;
    }
    return true;
}

}  // namespace norva
