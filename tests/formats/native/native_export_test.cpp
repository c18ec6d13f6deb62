#include "exchange/export_run.h"
#include "formats/native/export_to_native_file.h"
#include "store/value_rules.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace norva {
namespace {

using namespace test;

TEST(NativeExport, BytesOfASmallFile) {
    CTemporaryFolder folder;
    StoreSample sample;
    sample.lines = {{"A", 3}, {"B", 1}};
    CPackedValues numbers;
    numbers.Add<std::int16_t>(-32767).Add<std::int16_t>(-32766).Add<std::int16_t>(7).Add(kNoDataShort);
    CPackedValues texts;
    texts.Text("abc", 4).Text("x", 4).Text("", 4).Text("abcd", 4);
    sample.channels = {{{"Raw", "", DataType::kShort, 0, 0, 1, 0, 2, -1, 0}, numbers.bytes},
                       {{"Name", "u", DataType::kText, 1, 0, 4, 0, 0, -1, 0}, texts.bytes}};
    ASSERT_TRUE(WriteStore(folder / "s.nvt", sample, {{0, 2}}));

    PlayRun const run = Export(folder, "out.nvt", R"({"double": 4005, "row": 1}, {"double": 4005, "row": 0},
        {"double": 4001, "row": 1}, {"double": 4001, "row": 0}, {"click": 1})");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.store, folder / "out.nvt");
    EXPECT_FALSE(run.Control("dialog", 0, 4046)["enabled"].get<bool>());
    CPackedValues values;
    values.Text("abcd", 4).Text("abc", 4).Text("x", 4).Add(kNoDataShort).Add(kNoDataShort).Add<std::int16_t>(-32766);
    EXPECT_EQ(ReadWholeFile(folder / "out.nvt"),
              "PROFILES START\nB,1\nA,2\nPROFILES END\nCHANNELS START\nName,u,1,4,4,0,0,-1\nRaw,,0,1,5,0,2,-1\n"
              "CHANNELS END\nDATA START\n" +
                  values.bytes + "DATA END\n");
    for (auto const& [value, written] : {std::pair{40000, 32767}, {-32767, 32767}, {-32766, -32766}, {32766, 32766}}) {
        EXPECT_EQ(CExportToNativeFile::ClampShort(value), written) << value;
    }
}

/// A host's own store: it cannot give the third location of the first channel.
class CGappyStore : public CNorvaFileUtil {
public:
    int GetData(int index, int profile, long location, float& single, double& number, int& integer, long& longInteger,
                std::string& text, int& dataType) override {
        if (index == 0 && profile == 0 && location == 2) return 0;
        return CNorvaFileUtil::GetData(index, profile, location, single, number, integer, longInteger, text, dataType);
    }
};

TEST(NativeExport, AsksAHostsStoreValueByValue) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    CGappyStore store;
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    ASSERT_EQ(ExportStore(store, folder, "gappy.nvt"), 1);
    ASSERT_EQ(Export(folder, "whole.nvt").value, 1);
    std::string expected = ReadWholeFile(folder / "whole.nvt");
    std::string const start = "DATA START\n";
    expected.erase(expected.find(start) + start.size() + 2 * sizeof(double), sizeof(double));
    EXPECT_EQ(ReadWholeFile(folder / "gappy.nvt"), expected);
}

TEST(NativeExport, OpensAsTheSameStoreLessItsDeletedLocations) {
    EXPECT_TRUE(rc::check([](bool ontoItself) {
        StoreSample sample;
        StoreSample expected;
        std::vector<std::pair<int, long>> deleted;
        std::vector<bool> isKept;
        for (int line = 0, lines = *rc::gen::inRange(1, 4); line < lines; ++line) {
            std::string const name = "L" + std::to_string(line);
            sample.lines.push_back({name, *rc::gen::inRange(1, 6)});
            expected.lines.push_back({name, 1});
            isKept.push_back(true);
            for (long j = 1; j < sample.lines.back().locations; ++j) {
                isKept.push_back(*rc::gen::inRange(0, 4) > 0);
                if (!isKept.back()) deleted.emplace_back(line, j);
                if (isKept.back()) ++expected.lines.back().locations;
            }
        }
        for (int c = 0, channels = *rc::gen::inRange(1, 5); c < channels; ++c) {
            int const type = *rc::gen::inRange(0, 6);
            int const size = type == DataType::kText ? *rc::gen::inRange(1, 9) : 1;
            std::size_t const width = ValueWidth(type) * static_cast<std::size_t>(size);
            NorvaChannelStruct const description = {
                "C" + std::to_string(c), "u", type, type == 4, 0, size, 0, 2, -1, 0};
            sample.channels.push_back({description, {}});
            expected.channels.push_back({description, {}});
            for (bool const kept : isKept) {
                auto const bytes = *rc::gen::container<std::string>(width, rc::gen::inRange<char>(33, 120));
                sample.channels.back().values += bytes;
                if (kept) expected.channels.back().values += bytes;
            }
        }
        CTemporaryFolder folder;
        RC_ASSERT(WriteStore(folder / "s.nvt", sample, deleted));
        char const* const output = ontoItself ? "s.nvt" : "out.nvt";
        RC_ASSERT(Export(folder, output).value == 1);
        CNorvaFileUtil copy;
        RC_ASSERT(copy.SetFileName(folder / output, kReopenStore, nullptr) != 0);
        RC_ASSERT(ReadSample(copy) == expected);
    }));
}

}  // namespace
}  // namespace norva
