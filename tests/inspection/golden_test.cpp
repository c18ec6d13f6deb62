#include "norva/inspection.h"
#include "support/classic_locale.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

using namespace norva;

namespace {

std::string TypeText(NorvaChannelStruct const& channel) {
    std::string text = channel.name;
    if (!channel.units.empty()) text += " [" + channel.units + "]";
    return text + ": " + ValueTypeText(channel);
}

/// The proposal as a person would check it: columns, lines, counts, then the evidence.
std::string Described(Inspection const& found) {
    std::ostringstream out;
    ColumnTextSettings const& settings = found.settings;
    for (std::size_t i = 0; i < settings.columns.size(); ++i) {
        ColumnReading const& reading = settings.columnReadings[i];
        out << reading.source + 1 << " " << TypeText(settings.columns[i]);
        if (!reading.order.empty()) out << ", " << reading.order;
        for (std::string const& missing : reading.missing) out << ", missing " << missing;
        if (settings.labelColumn == static_cast<int>(i)) out << ", starts lines";
        out << "\n";
    }
    InspectionCounts const& counts = found.counts;
    out << "rows " << counts.rows << ", of lines " << counts.lines;
    auto const tell = [&](char const* what, std::uint64_t count) {
        if (count > 0) out << ", " << what << " " << count;
    };
    tell("mended", counts.mended);
    tell("continued", counts.continued);
    tell("left out", counts.leftOut);
    tell("of another table", counts.otherTable);
    tell("above", counts.above);
    tell("markers", counts.markers);
    tell("comments", counts.comments);
    tell("rules", counts.rules);
    tell("blank", counts.blank);
    tell("names again", counts.namesAgain);
    tell("nothing at the end", counts.nothingAtEnd);
    out << "\n";
    if (!found.surveyLines.empty()) {
        out << "lines";
        for (std::string const& label : found.surveyLines) out << " " << label;
        out << "\n";
    }
    out << (found.isTable ? "" : "no table\n") << "--\n" << found.Text();
    return out.str();
}

std::vector<std::filesystem::path> Cases() {
    std::vector<std::filesystem::path> cases;
    for (auto const& entry : std::filesystem::directory_iterator(NORVA_TEST_DATA "/inspection")) {
        std::string const extension = entry.path().extension();
        if (extension != ".golden" && extension != ".dfn") cases.push_back(entry.path());
    }
    std::sort(cases.begin(), cases.end());
    return cases;
}

}  // namespace

/// Every file of tests/data/inspection beside the proposal that it gets. NORVA_NEW_GOLDEN=1 writes the proposals anew,
/// to be read before they are kept.
TEST(InspectionGolden, EveryFileGetsItsProposal) {
    test::CClassicLocale const classic;
    bool const writes = std::getenv("NORVA_NEW_GOLDEN") != nullptr;
    std::vector<std::filesystem::path> const cases = Cases();
    ASSERT_GE(cases.size(), 71U);
    for (std::filesystem::path const& path : cases) {
        SCOPED_TRACE(path.filename().string());
        Inspection found;
        ASSERT_TRUE(InspectTextFile(path.string(), {}, found));
        InspectionCounts const& counts = found.counts;
        EXPECT_EQ(counts.lines, counts.rows + counts.continued + counts.leftOut + counts.otherTable + counts.above +
                                    counts.markers + counts.comments + counts.rules + counts.blank + counts.namesAgain +
                                    counts.nothingAtEnd)
            << "every line is accounted for";
        std::string const golden = path.string() + ".golden";
        if (writes) test::WriteWholeFile(golden, Described(found));
        EXPECT_EQ(Described(found), test::ReadWholeFile(golden)) << test::ReadWholeFile(path.string());
    }
}
