#include "export/export_to_native_file.h"
#include "export_run.h"

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
    CNorvaFileUtil store;
    ASSERT_TRUE(WriteSample(store, folder / "s.nvt", sample));
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    store.MarkLocToDelete(0, 2, 1);
    ASSERT_NE(store.CloseCurFile(), 0);

    PlayRun const run = Export(folder, "out.nvt", R"({"double": 4005, "row": 1}, {"double": 4005, "row": 0},
        {"double": 4001, "row": 1}, {"double": 4001, "row": 0}, {"click": 1})");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.store, folder / "out.nvt");
    EXPECT_FALSE(run.Control("dialog", 0, 4046)["enabled"].get<bool>());
    std::string const values = CPackedValues()
                                   .Text("abcd", 4)
                                   .Text("abc", 4)
                                   .Text("x", 4)
                                   .Add(kNoDataShort)
                                   .Add(kNoDataShort)
                                   .Add<std::int16_t>(-32766)
                                   .bytes;
    EXPECT_EQ(ReadWholeFile(folder / "out.nvt"),
              "PROFILES START\nB,1\nA,2\nPROFILES END\nCHANNELS START\nName,u,1,4,4,0,0,-1\nRaw,,0,1,5,0,2,-1\n"
              "CHANNELS END\nDATA START\n" +
                  values + "DATA END\n");
}

TEST(NativeExport, OpensAsTheSameStoreLessItsDeletedLocations) {
    EXPECT_TRUE(rc::check([] {
        StoreSample sample;
        std::vector<std::vector<bool>> deleted;
        int const lines = *rc::gen::inRange(1, 4);
        for (int i = 0; i < lines; ++i) {
            sample.lines.push_back({"L" + std::to_string(i), *rc::gen::inRange(1, 6)});
            deleted.emplace_back();
            for (long j = 0; j < sample.lines.back().locations; ++j)
                deleted.back().push_back(*rc::gen::inRange(0, 4) == 0);
            deleted.back()[0] = false;
        }
        std::size_t total = 0;
        for (auto const& line : sample.lines) total += static_cast<std::size_t>(line.locations);
        StoreSample expected;
        int const channels = *rc::gen::inRange(1, 5);
        for (int c = 0; c < channels; ++c) {
            int const type = *rc::gen::elementOf(std::vector{0, 1, 2, 3, 4, 5});
            int const size = type == DataType::kText ? *rc::gen::inRange(1, 9) : 1;
            std::size_t const width = type == DataType::kText ? static_cast<std::size_t>(size)
                                      : type == 1             ? 8
                                      : type == 5             ? 2
                                                              : 4;
            SampleChannel channel;
            channel.description = {"C" + std::to_string(c), "u", type, type == 4 ? 1 : 0, 0, size, 0, 2, -1, 0};
            std::string kept;
            for (std::size_t line = 0; line < sample.lines.size(); ++line) {
                for (long j = 0; j < sample.lines[line].locations; ++j) {
                    auto bytes = *rc::gen::container<std::string>(width, rc::gen::inRange<char>(33, 120));
                    channel.values += bytes;
                    if (!deleted[line][static_cast<std::size_t>(j)]) kept += bytes;
                }
            }
            RC_ASSERT(channel.values.size() == total * width);
            expected.channels.push_back({channel.description, kept});
            sample.channels.push_back(std::move(channel));
        }
        CTemporaryFolder folder;
        CNorvaFileUtil store;
        RC_ASSERT(WriteSample(store, folder / "s.nvt", sample));
        RC_ASSERT(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr) != 0);
        for (int line = 0; line < lines; ++line) {
            auto const& marks = deleted[static_cast<std::size_t>(line)];
            long left = 0;
            for (std::size_t j = 0; j < marks.size(); ++j) {
                if (marks[j]) store.MarkLocToDelete(line, static_cast<long>(j), 1);
                if (!marks[j]) ++left;
            }
            expected.lines.push_back({"L" + std::to_string(line), left});
        }
        RC_ASSERT(store.CloseCurFile() != 0);
        RC_ASSERT(Export(folder, "out.nvt").value == 1);
        CNorvaFileUtil copy;
        RC_ASSERT(copy.SetFileName(folder / "out.nvt", kReopenStore, nullptr) != 0);
        RC_ASSERT(ReadSample(copy) == expected);
    }));
}

TEST(NativeExport, ShortsAreClamped) {
    struct Case {
        int value;
        int written;
    };
    for (Case const& one : {Case{40000, 32767}, Case{-32767, 32767}, Case{-32768, 32767}, Case{-32766, -32766},
                            Case{32766, 32766}, Case{32767, 32767}, Case{0, 0}}) {
        EXPECT_EQ(CExportToNativeFile::ClampShort(one.value), one.written) << one.value;
    }
}

}  // namespace
}  // namespace norva
