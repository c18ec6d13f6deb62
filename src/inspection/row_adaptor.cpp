#include "inspection/row_adaptor.h"

#include "inspection/date_order.h"

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

constexpr double kSecondsOfDay = 86400;

CellKind KindOfForm(NorvaChannelStruct const& channel, ColumnReading::Form form) {
    using Form = ColumnReading::Form;
    if (channel.dataType == DataType::kSkipped) return CellKind::Missing;
    if (channel.dataType == DataType::kText) return CellKind::Text;
    switch (form) {
        case Form::Date:
        case Form::DayOfYear:
            return CellKind::Date;
        case Form::Time:
            return CellKind::Time;
        case Form::DateTime:
            return CellKind::DateTime;
        case Form::Degrees:
            return CellKind::Position;
        default:
            return CellKind::Number;
    }
}

bool IsMissingText(std::string_view text) {
    return text.find_first_not_of('*') == std::string_view::npos;
}

bool HasHighByte(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) < 0; });
}

}  // namespace

bool CRowAdaptor::CanRead(ColumnTextSettings const& settings) {
    if (!settings.reading || settings.columnReadings.size() != settings.columns.size()) return false;
    if (settings.reading->width < 1 || settings.looks.size() != static_cast<std::size_t>(settings.reading->width))
        return false;
    if (settings.labelColumn >= static_cast<int>(settings.columns.size())) return false;
    return std::all_of(
        settings.columnReadings.begin(), settings.columnReadings.end(), [&](ColumnReading const& reading) {
            return reading.source >= 0 && reading.source < settings.reading->width && reading.epochDivisor > 0;
        });
}

CRowAdaptor::CRowAdaptor(ColumnTextSettings const& settings, IAdaptedSink& sink)
    : m_settings(settings),
      m_sink(sink),
      m_rule(SplitRuleOf(*settings.reading)),
      m_cellRules(CellRulesOf(*settings.reading)),
      m_cells(settings.columns.size()),
      m_buffers(settings.columns.size()),
      m_reader(*settings.reading, settings.looks, RowsFor::Values, *this) {
    for (std::size_t i = 0; i < settings.columns.size(); ++i) {
        ColumnReading const& reading = settings.columnReadings[i];
        Plan plan;
        plan.reading = &reading;
        plan.source = static_cast<std::size_t>(reading.source);
        plan.kind = KindOfForm(settings.columns[i], reading.form);
        plan.isRead = KindOf(settings.looks[plan.source].kind) == plan.kind;
        plan.isDate = settings.columns[i].displayFormat == DisplayFormat::kDate;
        plan.order = OrderBit(reading.order);
        for (std::string const& text : reading.missing) {
            NumberText number;
            if (ScanNumberText(text, DecimalMarks::Both, number)) plan.missing.push_back(ValueOf(number, text));
        }
        m_plans.push_back(std::move(plan));
    }
}

bool CRowAdaptor::Feed(std::string_view line, std::uint64_t number) {
    if (m_goesOn) m_reader.Feed(line, number);
    return m_goesOn;
}

bool CRowAdaptor::Finish() {
    if (m_goesOn) m_reader.Finish();
    return m_goesOn;
}

void CRowAdaptor::Line(LineView const& line) {
    if (m_goesOn) m_goesOn = m_sink.Line(line);
}

void CRowAdaptor::Row(RowView const& row) {
    if (!m_goesOn) return;
    for (std::size_t i = 0; i < m_plans.size(); ++i) {
        Plan& plan = m_plans[i];
        CellPart const& part = row.parts[plan.source];
        AdaptedCell& cell = m_cells[i];
        cell.text = part.text;
        if (plan.kind == CellKind::Missing) {
            cell.what = AdaptedCell::What::Missing;
        } else if (plan.kind == CellKind::Text) {
            cell.what = IsMissingText(part.text) ? AdaptedCell::What::Missing : AdaptedCell::What::Text;
            cell.text = TextOf(part, m_buffers[i]);
        } else if (plan.isRead) {
            Adapt(plan, part, row.reads[plan.source], cell);
        } else {
            ReadCell(part.text, m_cellRules, plan.kind, m_settings.looks[plan.source].suffix, m_read);
            Adapt(plan, part, m_read, cell);
        }
    }
    AdaptedRow adapted{row.number, row.text, m_cells, {}, row.mend};
    if (m_settings.labelColumn >= 0) {
        Plan const& plan = m_plans[static_cast<std::size_t>(m_settings.labelColumn)];
        adapted.label = TextOf(row.parts[plan.source], m_label);
    }
    m_goesOn = m_sink.Row(adapted);
}

std::string_view CRowAdaptor::TextOf(CellPart const& part, std::string& buffer) {
    std::string_view const plain = PlainText(part, m_rule, m_plain);
    if (m_settings.reading->encoding == TextReading::Encoding::Latin1 && HasHighByte(plain)) {
        buffer.clear();
        AppendLatin1AsUtf8(buffer, plain);
        return buffer;
    }
    if (!part.isEscaped) return plain;
    buffer = plain;
    return buffer;
}

/// Dates, times and positions that are written as numbers.
double CRowAdaptor::NumberAs(Plan const& plan, double number, bool& isRead) const {
    using Form = ColumnReading::Form;
    isRead = true;
    switch (plan.reading->form) {
        case Form::CompactDate: {
            auto const digits = static_cast<int>(std::clamp(number, 0.0, 1e9));
            Day const day{digits / 10000, digits / 100 % 100, digits % 100};
            isRead = IsCalendarDay(day);
            return isRead ? DecimalYear(day) : 0;
        }
        case Form::CompactTime: {
            auto const whole = static_cast<int>(std::clamp(number, 0.0, 1e7));
            isRead = number >= 0 && number < 250000 && whole / 100 % 100 < 60 && whole % 100 < 60;
            return whole / 10000 + (whole / 100 % 100) / 60.0 + (whole % 100 + (number - whole)) / 3600.0;
        }
        case Form::EpochSeconds: {
            double const seconds = number / static_cast<double>(plan.reading->epochDivisor);
            double const days = std::floor(seconds / kSecondsOfDay);
            isRead = std::fabs(days) < 3e6;
            if (!isRead) return 0;
            return plan.isDate ? DecimalYear(DayOfNumber(static_cast<std::int64_t>(days)))
                               : (seconds - days * kSecondsOfDay) / 3600;
        }
        case Form::PackedMinutes: {
            double degrees = 0;
            isRead = UnpackMinutes(number, degrees);
            return degrees;
        }
        default:
            return number;
    }
}

void CRowAdaptor::Adapt(Plan& plan, CellPart const& part, CellRead const& read, AdaptedCell& cell) {
    cell.what = AdaptedCell::What::Missing;
    if (read.kind == CellKind::Missing) return;
    cell.what = AdaptedCell::What::Unreadable;
    if (read.kind != plan.kind) return;
    bool isRead = true;
    switch (read.kind) {
        case CellKind::Number: {
            double const number = ValueOf(read.number, part.text);
            if (std::find(plan.missing.begin(), plan.missing.end(), number) != plan.missing.end()) {
                cell.what = AdaptedCell::What::Missing;
                return;
            }
            cell.value = NumberAs(plan, number, isRead);
            break;
        }
        case CellKind::Date:
        case CellKind::DateTime: {
            DateText const& date = read.when.date;
            bool const isNumbers = date.form == DateText::Form::Numbers;
            if (isNumbers && (date.orders & plan.order) == 0) return;
            if (read.kind == CellKind::Date) {
                if (!(date == plan.date)) {
                    plan.date = date;
                    plan.year = DecimalYear(DayOf(date, plan.order));
                }
                cell.value = plan.year;
                break;
            }
            std::int64_t day = 0;
            double seconds = 0;
            ToUtc(read.when, plan.order, day, seconds);
            cell.value = plan.isDate ? DecimalYear(DayOfNumber(day)) : seconds / 3600;
            break;
        }
        case CellKind::Time:
            cell.value = read.when.time.seconds / 3600;
            break;
        default:
            cell.value = read.position.degrees;
            break;
    }
    if (isRead) cell.what = AdaptedCell::What::Value;
}

}  // namespace norva
