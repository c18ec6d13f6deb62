#include "formats/cg3/cg3_settings.h"

#include "formats/cg3/cg3_dump_layout.h"
#include "formats/cg3/cg3_format.h"
#include "inspection/date_text.h"
#include "norva/contents.h"
#include "norva/converters.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

/// Columns whose title contains one of these are imported when none are chosen.
constexpr std::string_view kUsualColumns[] = {"STATION", "GRAV.", "E.T.C.", "TIME", kCG3HeightTitle};

bool IsCode(std::vector<int> const& codes, int code) {
    return std::ranges::find(codes, code) != codes.end();
}

}  // namespace

std::vector<int> UsualCg3Columns(std::vector<std::string> const& titles) {
    std::vector<int> columns;
    for (std::size_t column = 0; column < titles.size(); ++column) {
        std::string const upper = ToUpper(titles[column]);
        bool const isUsual =
            std::ranges::any_of(kUsualColumns, [&upper](std::string_view keyword) { return Contains(upper, keyword); });
        if (isUsual) columns.push_back(static_cast<int>(column));
    }
    return columns;
}

void ChooseCg3Columns(Cg3Settings& settings, std::vector<int> const& columns, bool chosen) {
    if (!settings.columns) settings.columns.emplace();
    std::vector<int>& all = *settings.columns;
    std::erase_if(all, [&columns](int column) { return std::ranges::find(columns, column) != columns.end(); });
    if (chosen) all.insert(all.end(), columns.begin(), columns.end());
    std::ranges::sort(all);
}

Status CompleteCg3Settings(Cg3Settings& settings, std::string const& path, std::vector<std::string> const& titles) {
    auto const fail = [&path](std::string reason) {
        return Status::Failure("Couldn't import the file", path, std::move(reason));
    };
    if (titles.empty()) return fail("No line of column titles (STATION) follows two lines of dashes.");
    if (!settings.columns) settings.columns = UsualCg3Columns(titles);
    for (int const column : *settings.columns) {
        if (column < 0 || static_cast<std::size_t>(column) >= titles.size()) {
            return fail("There is no column " + std::to_string(column + 1) + "; the dump has " +
                        std::to_string(titles.size()) + ".");
        }
    }
    std::ranges::sort(*settings.columns);
    settings.columns->erase(std::unique(settings.columns->begin(), settings.columns->end()), settings.columns->end());
    if (settings.columns->empty()) return fail("No column is chosen to be imported.");
    CNorvaDateTime const converter;
    std::vector<std::string> names;
    std::vector<int> codes;
    converter.GetImportDateTemplate(names, codes);
    if (!IsCode(codes, settings.dateFormat)) {
        return fail("There is no date format " + std::to_string(settings.dateFormat) + ".");
    }
    converter.GetImportTimeTemplate(names, codes);
    if (!IsCode(codes, settings.timeFormat)) {
        return fail("There is no time format " + std::to_string(settings.timeFormat) + ".");
    }
    return {};
}

Status ProposeCg3Settings(std::string const& path, ImportSettings& proposed) {
    CG3DumpLayout layout;
    if (Status status = ReadCG3DumpLayout(path, layout); !status) return status;
    Cg3Settings settings;
    unsigned orders = kDayFirst | kMonthFirst | kYearFirst;
    bool isShort = true;
    for (std::string const& text : layout.dates) {
        DateText date;
        if (!ReadDateText(text, date) || date.form != DateText::Form::Numbers) continue;
        orders &= date.orders;
        isShort = date.isShortYear;
    }
    // The instrument's own order where the dates allow it.
    if ((orders & kYearFirst) != 0) {
        settings.dateFormat = isShort ? 1 : 0;
    } else if ((orders & kDayFirst) != 0) {
        settings.dateFormat = isShort ? 3 : 2;
    } else if ((orders & kMonthFirst) != 0) {
        settings.dateFormat = isShort ? 5 : 4;
    }
    proposed = settings;
    return {};
}

Status ListCg3File(std::string const& path, Cg3Listing& listing) {
    listing = {};
    CG3DumpLayout layout;
    if (Status status = ReadCG3DumpLayout(path, layout); !status) return status;
    listing.usual = UsualCg3Columns(layout.titles);
    listing.columns = std::move(layout.titles);
    return {};
}

}  // namespace norva
