#include "import_text/row_converter.h"

#include "import_text/ascii_file_import.h"
#include "import_text/plain_decimal.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "store/value_rules.h"

#include <algorithm>

namespace norva {

CRowConverter::CRowConverter(std::vector<NorvaChannelStruct> const& columns, CDelimiters const& delimiters,
                             Source source, CNorvaDateTime const& dateTime, CNorvaGeographic const& geographic,
                             CColumnFiles& files)
    : m_delimiters(delimiters),
      m_upperCase(source == Source::Text),
      m_dateTime(dateTime),
      m_geographic(geographic),
      m_files(files) {
    m_plans.reserve(columns.size());
    for (NorvaChannelStruct const& settings : columns) {
        m_plans.push_back(PlanFor(settings, static_cast<int>(m_plans.size()), source));
        if (m_plans.back().kind != Kind::Skipped) m_rowPlans = m_plans.size();
    }
}

CRowConverter::Plan CRowConverter::PlanFor(NorvaChannelStruct const& settings, int column, Source source) {
    Plan plan;
    plan.column = column;
    plan.templateFormat = settings.templateFormat;
    bool const seaSpy = source == Source::SeaSpy;
    switch (settings.dataType) {
        case DataType::kFloat:
            plan.kind = Kind::Float;
            break;
        case DataType::kDouble:
            switch (settings.displayFormat) {
                case DisplayFormat::kDate:
                    plan.kind = seaSpy ? Kind::SeaSpyDate : Kind::Date;
                    break;
                case DisplayFormat::kTime:
                    plan.kind = seaSpy ? Kind::SeaSpyTime : Kind::Time;
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
    return plan;
}

bool CRowConverter::Row(std::string_view line) {
    char const* next = line.data();
    char const* const end = next + line.size();
    for (std::size_t i = 0; i < m_rowPlans; ++i) {
        Plan const& plan = m_plans[i];
        while (next != end && m_delimiters.Has(*next)) ++next;
        if (next == end) {
            if (!PutToken(plan, "*")) return false;
            continue;
        }
        if (IsNumber(plan.kind)) {
            double value = 0;
            char const* const after = ReadPlainDecimal(next, end, value);
            if (after != nullptr && (after == end || m_delimiters.Has(*after))) {
                if (!PutNumber(plan, value)) return false;
                next = after;
                continue;
            }
        }
        char const* const begin = next;
        while (next != end && !m_delimiters.Has(*next)) ++next;
        if (!PutToken(plan, {begin, static_cast<std::size_t>(next - begin)})) return false;
    }
    return true;
}

bool CRowConverter::Value(int column, std::string_view token) {
    Plan const& plan = m_plans[static_cast<std::size_t>(column)];
    char const* const end = token.data() + token.size();
    double value = 0;
    if (IsNumber(plan.kind) && ReadPlainDecimal(token.data(), end, value) == end) return PutNumber(plan, value);
    return PutToken(plan, token);
}

bool CRowConverter::PutToken(Plan const& plan, std::string_view token) {
    if (plan.kind == Kind::Skipped) return true;
    token = TrimOf(token, "\"");
    if (plan.kind == Kind::Text) return PutText(plan, token);
    if (token.empty() || Contains(token, "*")) return PutMissing(plan);

    double value = kNoDataDouble;
    switch (plan.kind) {
        case Kind::Date:
            m_dateTime.GetDoubleDate(token, plan.templateFormat, value);
            return PutDouble(plan, value);
        case Kind::Time: {
            std::size_t const point = token.find('.');
            int const decimals = point == std::string_view::npos ? 0 : static_cast<int>(token.size() - point - 1);
            m_dateTime.GetDoubleTime(token, plan.templateFormat, decimals, value);
            return PutDouble(plan, value);
        }
        case Kind::Geographic: {
            int decimals = 0;
            m_geographic.GetDoubleData(token, plan.templateFormat, value, decimals);
            return PutDouble(plan, value);
        }
        case Kind::SeaSpyDate:
            return PutDouble(plan, CAsciiFileImport::GetSeaSPYDate(token));
        case Kind::SeaSpyTime:
            return PutDouble(plan, CAsciiFileImport::GetSeaSPYTime(token));
        default:
            return PutNumber(plan, ReadNumber(token));
    }
}

bool CRowConverter::PutNumber(Plan const& plan, double value) {
    char* out = nullptr;
    switch (plan.kind) {
        case Kind::Float:
            if ((out = m_files.Append(plan.column, 4)) == nullptr) return false;
            StoreFloat(out, FloatInRange(value));
            return true;
        case Kind::Long:
            if ((out = m_files.Append(plan.column, 4)) == nullptr) return false;
            StoreLittle32(out, static_cast<std::uint32_t>(LongInRange(value)));
            return true;
        case Kind::Short:
            if ((out = m_files.Append(plan.column, 2)) == nullptr) return false;
            StoreLittle16(out, static_cast<std::uint16_t>(ShortInRange(value)));
            return true;
        default:
            return PutDouble(plan, DoubleInRange(value));
    }
}

bool CRowConverter::PutDouble(Plan const& plan, double value) {
    char* const out = m_files.Append(plan.column, 8);
    if (out == nullptr) return false;
    StoreDouble(out, value);
    return true;
}

bool CRowConverter::PutMissing(Plan const& plan) {
    // Every no-data value is what lies outside the range of its type.
    return PutNumber(plan, 2 * kNoDataDouble);
}

bool CRowConverter::PutText(Plan const& plan, std::string_view token) {
    token = token.substr(0, plan.width);
    if (m_upperCase) {
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
