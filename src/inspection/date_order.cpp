#include "inspection/date_order.h"

#include <bit>

namespace norva {

namespace {

constexpr std::string_view kOrderNames[] = {"dmy", "mdy", "ymd"};

std::size_t IndexOf(unsigned order) {
    return static_cast<std::size_t>(std::countr_zero(order));
}

/// Days never go back, and most steps are of three days or less.
bool GoesOnSteadily(OrderFacts const& facts) {
    return facts.days > 1 && facts.back == 0 && facts.near > 0 && (facts.same + facts.near) * 2 >= facts.days - 1;
}

bool Jumps(OrderFacts const& facts) {
    return facts.back > 0 || facts.far > 0;
}

std::string LongDate(Day const& day) {
    static constexpr char const* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                              "July",    "August",   "September", "October", "November", "December"};
    return std::to_string(day.day) + " " + kMonths[day.month - 1] + " " + std::to_string(day.year);
}

}  // namespace

std::string OrderName(unsigned order) {
    return std::string(kOrderNames[IndexOf(order)]);
}

unsigned OrderBit(std::string_view name) {
    for (std::size_t i = 0; i < std::size(kOrderNames); ++i) {
        if (name == kOrderNames[i]) return kDateOrderBits[i];
    }
    return 0;
}

std::string DateFormText(unsigned order, char separator, bool isShortYear) {
    std::string const year = isShortYear ? "YY" : "YYYY";
    std::string const gap(1, separator == '\0' ? '/' : separator);
    if (order == kYearFirst) return year + gap + "MM" + gap + "DD";
    return (order == kDayFirst ? "DD" + gap + "MM" : "MM" + gap + "DD") + gap + year;
}

DateOrder FindDateOrder(CColumnFacts const& facts, std::optional<std::string> const& settled) {
    DateOrder found;
    unsigned const orders = facts.orders;
    if (facts.dateForms[0] == 0) {
        found.order = kDayFirst;
        found.evidence = facts.dateForms[1] > 0 ? "months by name" : "year and day of the year";
        return found;
    }
    if (orders == 0) return found;
    if (settled && (OrderBit(*settled) & orders) != 0) {
        found.order = OrderBit(*settled);
        found.evidence = "as told; every row fits";
        return found;
    }
    if (std::popcount(orders) == 1) {
        found.order = orders;
        found.evidence = "every row fits";
        unsigned const other = orders == kDayFirst ? kMonthFirst : kDayFirst;
        CellSeen const& first = facts.byOrder[IndexOf(other)].excludedBy;
        bool const isPlain = orders == kYearFirst && !facts.hasShortYear;
        if (first.IsSet() && !isPlain) {
            found.evidence += "; " + first.text + " (line " + std::to_string(first.line) + ") is no " +
                              DateFormText(other, facts.dateSeparator, facts.hasShortYear);
        }
        return found;
    }
    if (!facts.differsFirst.IsSet()) {
        found.order = (orders & kDayFirst) != 0 ? kDayFirst : orders & (~orders + 1);
        found.evidence = "every row means the same day in each order";
        return found;
    }
    if (facts.dateSeparator == '.' && (orders & kDayFirst) != 0) {
        found.order = kDayFirst;
        found.evidence = "with points the day comes first";
        return found;
    }
    for (unsigned const order : kDateOrderBits) {
        if ((orders & order) == 0 || !GoesOnSteadily(facts.byOrder[IndexOf(order)])) continue;
        bool othersJump = true;
        for (unsigned const other : kDateOrderBits) {
            if (other != order && (orders & other) != 0)
                othersJump = othersJump && Jumps(facts.byOrder[IndexOf(other)]);
        }
        if (!othersJump) continue;
        OrderFacts const& steps = facts.byOrder[IndexOf(order)];
        found.order = order;
        found.evidence =
            "days go on from row to row: " + std::to_string(steps.near) + " steps of 1 to 3 days, none back; otherwise";
        for (unsigned const other : kDateOrderBits) {
            if (other == order || (orders & other) == 0) continue;
            OrderFacts const& rival = facts.byOrder[IndexOf(other)];
            found.evidence +=
                " " + std::to_string(rival.far) + " steps of 27 days and more, " + std::to_string(rival.back) + " back";
        }
        return found;
    }
    found.order = (orders & kDayFirst) != 0 ? kDayFirst : orders & (~orders + 1);
    found.rivals = orders & ~found.order;
    found.isDoubt = true;
    unsigned const rival = found.rivals & (~found.rivals + 1);
    DateText date;
    ReadDateText(std::string_view(facts.differsFirst.text).substr(0, facts.differsFirst.text.find_first_of(" T")),
                 date);
    found.evidence = "every row fits " + DateFormText(rival, facts.dateSeparator, facts.hasShortYear) +
                     " as well; line " + std::to_string(facts.differsFirst.line) + ": " +
                     LongDate(DayOf(date, found.order)) + " or " + LongDate(DayOf(date, rival));
    return found;
}

}  // namespace norva
