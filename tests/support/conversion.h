#pragma once

#include "formats/column_text/converted_import.h"
#include "norva/import_export.h"
#include "norva/status.h"
#include "platform/files.h"
#include "support/play.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

namespace norva::test {

/// What a converter to column text made of a file.
struct Conversion {
    Status status;
    std::string output;
    ConvertedSource source;

    /// "rows 3, left out 1 (2), more 1 (7), cut 1", with the first lines of the source in brackets.
    std::string Found() const {
        std::string text = "rows " + std::to_string(source.rows);
        auto const add = [&text](char const* what, ReportFinding const& finding) {
            if (finding.count == 0) return;
            text += ", " + std::string(what) + " " + std::to_string(finding.count);
            if (!finding.places.empty()) text += " (" + std::to_string(finding.places[0].line) + ")";
        };
        add("left out", source.report.leftOut);
        add("more", source.report.moreValues);
        add("cut", source.report.cutRecords);
        return text;
    }
    /// The output after its comment and title lines, every run of blanks as one space, none before or after a line.
    std::string Body() const {
        std::string body;
        for (char const c : output.substr(output.find('\n', output.find('\n') + 1) + 1)) {
            if (c == '\n' && body.ends_with(' ')) body.pop_back();
            if (c != ' ' || (!body.empty() && body.back() != ' ' && body.back() != '\n')) body.push_back(c);
        }
        return body;
    }
};

template <typename Converter>
Conversion Convert(CTemporaryFolder const& folder, std::string const& input) {
    Conversion conversion;
    Converter converter;
    conversion.status = converter.ConvertToXYZ(folder / input, folder / "out.xyz");
    if (!conversion.status) return conversion;
    conversion.output = ReadWholeFile(folder / "out.xyz");
    conversion.source = converter.TakeSource();
    EXPECT_TRUE(conversion.source.report.IsAccounted());
    EXPECT_EQ(conversion.source.report.sourceSize, std::filesystem::file_size(folder / input));
    return conversion;
}

template <typename Converter>
Conversion ConvertText(std::string const& text) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in", text);
    return Convert<Converter>(folder, "in");
}

/// Tries a missing input, an output that cannot be created, and a disk that fails in the middle of `text`.
template <typename Converter>
void ExpectFileErrors(std::string const& text) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in", text);
    for (FaultPoint const failing : {FaultPoint::Read, FaultPoint::Write}) {
        int calls = 0;
        SetFaultHook([&](FaultPoint point, std::string const&) { return point == failing && ++calls > 2 ? EIO : 0; });
        Conversion const failed = Convert<Converter>(folder, "in");
        SetFaultHook({});
        std::string const what = failing == FaultPoint::Read ? "read the file : " : "write the file : ";
        EXPECT_TRUE(failed.status.Text().starts_with("Couldn't " + what)) << failed.status.Text();
        EXPECT_EQ(folder.Count(), 1U) << what;
    }
    EXPECT_EQ(Convert<Converter>(folder, "missing").status.Text(), "Could not open the file!");
    std::filesystem::create_directory(folder / "out.xyz");
    Conversion const blocked = Convert<Converter>(folder, "in");
    EXPECT_TRUE(blocked.status.Text().starts_with("Couldn't create the file : ")) << blocked.status.Text();
}

/// Imports a sample under the format of a row of the format list, with the column names of its title line.
inline void ExpectGoldenImport(int row, std::string const& sample, std::string const& golden) {
    CTemporaryFolder const folder;
    PlaySettings const names = {{"dir", folder.Path()}, {"samples", NORVA_SAMPLES}};
    PlayRun const run = Play(R"({"operation": "import", "store": "", "answers": [
                                 {"dialog": 4063, "do": [{"double": "Formats", "row": )" +
                                 std::to_string(row) + R"(}]},
                                 {"open": "{samples}/)" +
                                 sample + R"("}, {"save": "{dir}/out.nvt"},
                                 {"dialog": 4003, "do": [{"double": "File Header", "row": 1}, {"click": 1}]},
                                 {"message": "Do you want to change the column labels?", "answer": "yes"}]})",
                             names);
    EXPECT_EQ(run.failure, "");
    ExpectGolden(run, NORVA_TEST_DATA "/" + golden, names);
    ImportReport report;
    EXPECT_EQ(GetImportReport(report, 0), 1);
    EXPECT_TRUE(report.IsAccounted());
    EXPECT_EQ(report.sourcePath, NORVA_SAMPLES "/" + sample);
}

}  // namespace norva::test
