#include "inspection.h"

#include "norva/inspection.h"
#include "settings.h"
#include "store_error.h"
#include "store_handle.h"

namespace norva::python {

namespace {

constexpr std::pair<char const*, std::uint64_t InspectionCounts::*> kCounts[] = {
    {"lines", &InspectionCounts::lines},
    {"rows", &InspectionCounts::rows},
    {"mended", &InspectionCounts::mended},
    {"continued", &InspectionCounts::continued},
    {"left_out", &InspectionCounts::leftOut},
    {"other_table", &InspectionCounts::otherTable},
    {"above", &InspectionCounts::above},
    {"markers", &InspectionCounts::markers},
    {"comments", &InspectionCounts::comments},
    {"rules", &InspectionCounts::rules},
    {"blank", &InspectionCounts::blank},
    {"names_again", &InspectionCounts::namesAgain},
    {"nothing_at_end", &InspectionCounts::nothingAtEnd},
};

InspectionOptions OptionsFrom(py::dict const& given) {
    InspectionOptions options;
    auto const take = [&given](char const* name, auto& member) {
        if (given.contains(name)) member = given[name].cast<std::decay_t<decltype(member)>>();
    };
    take("dates", options.dates);
    take("no_data", options.noData);
    take("keep", options.keep);
    take("markers", options.markerWords);
    take("finds_markers", options.findsMarkers);
    take("label_column", options.labelColumn);
    take("separator", options.separator);
    take("header_line", options.headerLine);
    take("text_columns", options.textColumns);
    return options;
}

char const* NameOf(InspectedLine::What what) {
    switch (what) {
        case InspectedLine::What::Mended:
            return "mended";
        case InspectedLine::What::LeftOut:
            return "left out";
        case InspectedLine::What::OtherTable:
            return "another table";
        case InspectedLine::What::SpoiltCell:
            return "spoilt cell";
    }
    return "";
}

}  // namespace

py::dict InspectText(std::string const& path, py::dict const& options) {
    InspectionOptions const told = OptionsFrom(options);
    Inspection found;
    Status status;
    {
        py::gil_scoped_release const others;
        status = InspectTextFile(path, told, found);
    }
    if (!status) throw CStoreError(status.What(), path, status.Place(), status.Reason());

    py::list findings;
    for (InspectionFinding const& one : found.findings) {
        findings.append(
            py::make_tuple(StrOf(one.subject), StrOf(one.choice), StrOf(one.evidence), one.isDoubt, StrOf(one.option)));
    }
    py::list lines;
    for (InspectedLine const& one : found.lines) {
        lines.append(py::make_tuple(one.line, one.last, NameOf(one.what), StrOf(one.text), StrOf(one.reason)));
    }
    py::list labels;
    for (std::string const& label : found.surveyLines) labels.append(StrOf(label));
    py::dict counts;
    for (auto const& [name, member] : kCounts) counts[name] = found.counts.*member;
    py::dict proposal;
    proposal["settings"] = py::cast(std::move(found.settings));
    proposal["findings"] = findings;
    proposal["odd_lines"] = lines;
    proposal["survey_lines"] = labels;
    proposal["counts"] = counts;
    proposal["header_line"] = found.headerLine;
    proposal["unit_line"] = found.unitLine;
    proposal["is_table"] = found.isTable;
    return proposal;
}

}  // namespace norva::python
