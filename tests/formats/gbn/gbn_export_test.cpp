#include "exchange/export_selection_template.h"
#include "formats/gbn/gbn_bytes.h"
#include "formats/gbn/gbn_export_type.h"
#include "norva/import_export.h"
#include "norva/scripted_toolkit.h"
#include "platform/files.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <sys/file.h>

#include <cerrno>
#include <ctime>
#include <filesystem>

namespace norva {
namespace {

using test::CGbnBytes;
using test::CPackedValues;
using test::StoreSample;

constexpr char const* kExport = R"({"operation": "export", "store": "{dir}/in.nvt", "name": "{dir}/in.gbn", "answers": [
    {"save": "{dir}/out.gbn"}, {"dialog": 4000, "do": [{"click": 4007}, {"click": 4011}, {"click": 1}]}]})";
constexpr char const* kImport = R"({"operation": "import", "answers": [
    {"dialog": 4063, "do": [{"select": "Formats", "row": 4}, {"click": 1}]}, {"open": "{dir}/out.gbn"},
    {"save": "{dir}/back.nvt"}, {"dialog": 4059, "do": [{"click": "Import Fiducial as a separate channel"}, {"click": 1}]}]})";

class GbnExport : public testing::Test {
protected:
    PlayRun Run(char const* script, PlayOptions const& options = {}) {
        return Play(script, {{"dir", folder.Path()}}, options);
    }
    test::CTemporaryFolder folder;
};

/// Three lines, of whose first the second location is deleted; a channel of every kind.
void WriteSurvey(std::string const& path) {
    CPackedValues x, mag, fid, raw, text, counts;
    for (int n = 0; n < 5; ++n) {
        x.Add(n == 4 ? kNoDataDouble : 2001.5 + n);
        mag.Add(n == 3 ? kNoDataFloat : 0.5F * static_cast<float>(n));
        fid.Add(std::int32_t{-n});
        raw.Add(static_cast<std::int16_t>(n - 2));
        text.Text(n == 2 ? "" : std::string("abcd").substr(static_cast<std::size_t>(n)), 4);
        for (int element = 0; element < 3; ++element) counts.Add(std::int32_t{10 * n + element});
    }
    StoreSample sample;
    sample.lines = {{"L1002.5", 3}, {"LINE 7", 1}, {"North", 1}};
    sample.channels = {
        {{" Mag.raw:1 ", "nT", DataType::kFloat, 0, 0, 1, DisplayFormat::kUnset, -1, -1, 0}, mag.bytes},
        {{"Date", "", DataType::kDouble, 0, 0, 1, DisplayFormat::kDate, 0, 1, 0}, x.bytes},
        {{" ", "", DataType::kInt, 0, 0, 1, DisplayFormat::kExponent, 3, -1, 0}, fid.bytes},
        {{std::string(62, 'x') + "\xC3\xA4" + "y", "", DataType::kShort, 0, 0, 1, 2, 1, 0, 0}, raw.bytes},
        {{"T", "", DataType::kText, 1, 0, 4, DisplayFormat::kFixed, 2, -1, 0}, text.bytes},
        {{"Counts", "", DataType::kLong, 1, 0, 3, DisplayFormat::kGeographic, 2, 0, 0}, counts.bytes}};
    ASSERT_TRUE([&] {
        CNorvaFileUtil store;
        return test::WriteSample(store, path, sample);
    }());
    CNorvaFileUtil store;
    ASSERT_NE(store.SetFileName(path, kReopenStore, nullptr), 0);
    ASSERT_NE(store.MarkLocToDelete(0, 1, 1), 0);
    ASSERT_NE(store.CloseCurFile(), 0);
}

/// The file of that survey; `given` says whether the store gives the values of the second line.
std::string ExpectedSurvey(std::tm const& day, bool given = true) {
    CGbnBytes file;
    file.year = day.tm_year + 1900;
    file.month = day.tm_mon + 1;
    file.day = day.tm_mday;
    file.Channel("Mag_raw_1", 4, 0, 6, 12).Channel("Date", 5, 3, 0, 12).Channel("Ch3", 3, 1, 3, 12);
    file.Channel(std::string(62, 'x'), 2, 2, 1, 12).Channel("T", -5, 0, 2, 12).Channel("Counts", 3, 4, 2, 12);
    file.Line(1, 0, 10025);
    file.Block(0, 4, 2, 1000.0).Add(0.0F).Add(1.0F).Block(1, 5, 2, 1000.0).Add(2001.5).Add(2003.5);
    file.Block(2, 3, 2, 1000.0).Add(0).Add(-2).Block(3, 2, 2, 1000.0).Add(short{-2}).Add(short{0});
    file.Block(4, -5, 2, 1000.0).Text("abcd", 5).Text("", 5).Block(5, 3, 2, 1000.0).Add(0).Add(20);
    file.Line(2, 0, 7).Block(0, 4, 1, 1000.0).Add(kNoDataFloat);
    file.Block(1, 5, 1, 1000.0).Add(given ? 2004.5 : kNoDataDouble).Block(2, 3, 1, 1000.0);
    file.Add(given ? -3 : kNoDataLong).Block(3, 2, 1, 1000.0).Add(given ? short{1} : kNoDataShort);
    file.Block(4, -5, 1, 1000.0).Text(given ? "d" : "", 5).Block(5, 3, 1, 1000.0).Add(given ? 30 : kNoDataLong);
    file.Line(3).Block(0, 4, 1, 1000.0).Add(2.0F).Block(1, 5, 1, 1000.0).Add(kNoDataDouble);
    file.Block(2, 3, 1, 1000.0).Add(-4).Block(3, 2, 1, 1000.0).Add(short{2}).Block(4, -5, 1, 1000.0).Text("", 5);
    return file.Block(5, 3, 1, 1000.0).Add(40).End().bytes;
}

std::tm Today() {
    std::time_t const now = std::time(nullptr);
    return *std::localtime(&now);
}

TEST_F(GbnExport, WritesEveryByteAndTracesToTheLetter) {
    WriteSurvey(folder / "in.nvt");
    std::string const before = ExpectedSurvey(Today());
    PlayRun const run = Run(kExport);
    EXPECT_EQ(run.value, 1);
    ExpectGolden(run, NORVA_TEST_DATA "/gbn_export.jsonl", {{"dir", folder.Path()}});
    std::string const written = test::ReadWholeFile(folder / "out.gbn");
    EXPECT_TRUE(written == before || written == ExpectedSurvey(Today())) << testing::PrintToString(written);
}

/// Gives single values alone, and none of one location.
class CSingleValueStore : public CNorvaFileUtil {
public:
    int ReadColumn(int, int, long, long, void*) override { return 0; }
    int GetData(int index, int profile, long location, float& single, double& number, int& integer, long& longInteger,
                std::string& text, int& dataType) override {
        if (profile == 1) return 0;
        return CNorvaFileUtil::GetData(index, profile, location, single, number, integer, longInteger, text, dataType);
    }
};

TEST_F(GbnExport, WritesNoDataForValuesThatTheStoreDoesNotGive) {
    WriteSurvey(folder / "in.nvt");
    auto const click = [](int control) {
        ScriptAction action;
        action.control = control;
        return action;
    };
    ScriptAnswer answer;
    answer.dialog = 4000;
    using namespace ids::Export;
    answer.actions = {click(kLinesAddAll), click(kColumnsAddAll), click(1)};
    CScriptedToolkit toolkit({answer}, false, nullptr);
    CToolkit* const before = SetToolkit(&toolkit);
    CSingleValueStore store;
    ASSERT_NE(store.SetFileName(folder / "in.nvt", kReopenStore, nullptr), 0);
    ExportJob job{&store, folder / "out.gbn"};
    EXPECT_TRUE(ExportGbnFile(job));
    SetToolkit(before);
    EXPECT_EQ(toolkit.Failure(), "");
    EXPECT_EQ(test::ReadWholeFile(folder / "out.gbn"), ExpectedSurvey(Today(), false));
}

TEST_F(GbnExport, LeavesTheOlderFileWhenItCannotWriteANewOne) {
    WriteSurvey(folder / "in.nvt");
    test::WriteWholeFile(folder / "out.gbn", "older");
    SetFaultHook([](FaultPoint point, std::string const& path) {
        return point == FaultPoint::Write && path.find("out.gbn") != std::string::npos ? ENOSPC : 0;
    });
    PlayRun const full = Run(kExport, {.defaults = true});
    SetFaultHook({});
    EXPECT_EQ(full.value, 0);
    EXPECT_EQ(full.Texts("message"), (std::vector<std::string>{"Couldn't write the file : " + (folder / "out.gbn") +
                                                               "\nNo space left on device"}));
    CFile other;
    ASSERT_TRUE(other.Open(folder / "out.gbn", CFile::Mode::Read));
    ASSERT_EQ(flock(other.Descriptor(), LOCK_EX), 0);
    PlayRun const locked = Run(kExport);
    EXPECT_EQ(locked.value, 0);
    EXPECT_EQ(locked.Texts("message").size() + locked.failure.size(), 0U);
    EXPECT_EQ(test::ReadWholeFile(folder / "out.gbn"), "older");
    EXPECT_EQ(folder.Count(), 2U);
}

/// Values of any channel and line that a GBN file can hold: not its own no-data values, no zero byte in a text.
StoreSample AnySurvey() {
    StoreSample sample;
    int locations = 0;
    for (int line = *rc::gen::inRange(1, 4); line > 0; --line) {
        sample.lines.push_back({"L" + std::to_string(*rc::gen::inRange(0, 99999)), *rc::gen::inRange(1, 20)});
        locations += static_cast<int>(sample.lines.back().locations);
    }
    for (int channel = *rc::gen::inRange(1, 6); channel > 0; --channel) {
        int const type = *rc::gen::element(0, 1, 3, 4, 5);
        int const size = type == DataType::kText ? *rc::gen::inRange(1, 9) : 1;
        CPackedValues values;
        for (int n = 0; n < locations; ++n) {
            auto const bits = *rc::gen::arbitrary<std::int64_t>();
            auto const number = static_cast<double>(bits) / 7;
            if (type == DataType::kFloat) values.Add(bits % 9 == 0 ? kNoDataFloat : static_cast<float>(number));
            if (type == DataType::kDouble) values.Add(bits % 9 == 0 ? kNoDataDouble : number);
            if (type == DataType::kLong) values.Add(bits == -2147483647 ? 0 : static_cast<std::int32_t>(bits));
            if (type == DataType::kShort) values.Add(static_cast<std::int16_t>(bits));
            if (type == DataType::kText) {
                auto text = *rc::gen::container<std::string>(rc::gen::inRange<char>(' ', '~'));
                values.Text(text.substr(0, static_cast<std::size_t>(size)), static_cast<std::size_t>(size));
            }
        }
        std::string const name =
            "C" + std::to_string(channel) + std::string(*rc::gen::inRange<std::size_t>(0, 61), 'n');
        int const recordType = type == DataType::kText ? 1 : 0;
        sample.channels.push_back({{name, "", type, recordType, 0, size, 0, 2, -1, 0}, values.bytes});
    }
    return sample;
}

TEST_F(GbnExport, ReadsBackAsTheSameStore) {
    std::filesystem::path const here = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    EXPECT_TRUE(rc::check("exported and imported again", [&] {
        StoreSample const sample = AnySurvey();
        CNorvaFileUtil written;
        RC_ASSERT(test::WriteSample(written, folder / "in.nvt", sample));
        RC_ASSERT(Run(kExport).value == 1);
        RC_ASSERT(Run(kImport).value == 1);
        CNorvaFileUtil store;
        RC_ASSERT(store.SetFileName(folder / "back.nvt", kReopenStore, nullptr) != 0);
        RC_ASSERT(store.ProfileCount == static_cast<int>(sample.lines.size()));
        RC_ASSERT(store.ChannelCount == static_cast<int>(sample.channels.size()));
        for (int c = 0; c < store.ChannelCount; ++c) {
            auto const& [description, values] = sample.channels[static_cast<std::size_t>(c)];
            RC_ASSERT(store.GetChannelName(c) == description.name);
            RC_ASSERT(store.GetChannelDataType(c) == description.dataType);
            RC_ASSERT(store.GetChannelArraySize(c) == description.arraySize);
            std::string read;
            for (int p = 0; p < store.ProfileCount; ++p) {
                auto const& line = sample.lines[static_cast<std::size_t>(p)];
                std::string name;
                long count = 0;
                int flag = 0;
                store.GetProfileInfo(p, name, count, flag);
                int const suffix = std::stoi(line.name.substr(1));
                RC_ASSERT(name == std::to_string(p + 1) + (suffix != 0 ? ":" + std::to_string(suffix) : ""));
                RC_ASSERT(count == line.locations);
                std::string part(static_cast<std::size_t>(count) * store.GetChannelValueSize(c), '\0');
                RC_ASSERT(store.ReadColumn(c, p, 0, count, part.data()) != 0);
                read += part;
            }
            RC_ASSERT(read == values);
        }
    }));
    std::filesystem::current_path(here);
}

}  // namespace
}  // namespace norva
