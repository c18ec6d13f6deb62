#include "norva/traced_store.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace norva {
namespace {

TEST(TracedStore, ShowsValuesOfEveryTypeAndWhatFailed) {
    test::CTemporaryFolder folder;
    std::string trace;
    CTrace recorder([&](std::string_view line) { trace += line; }, true);
    CTracedStore store;
    store.SetFileName(folder / "a.nvt", kCreateStore, nullptr);
    store.AddProfileToStructure("L", 1);
    for (int const type : {DataType::kText, DataType::kFloat, DataType::kShort, DataType::kLong, DataType::kDouble}) {
        store.AddChannelToStructure("C", "", type, 0, type == DataType::kText ? 2 : 1, 0, 0, 0, 0);
    }
    store.SaveProfileStructure();
    store.SaveChannelStructure();
    store.StartWriteData();
    store.SetTrace(&recorder);
    store.WriteHuge("ab", 2);
    float const single = 0.5F;
    std::int16_t const small = -3;
    std::int32_t const large = 70'000;
    double const number = 0.1;
    store.SaveData(DataType::kFloat, &single);
    store.SaveData(DataType::kShort, &small);
    store.SaveData(DataType::kLong, &large);
    store.SaveData(DataType::kDouble, &number);
    store.SaveData(DataType::kText, "x");
    store.EndWriteData();
    std::string const start = R"({"event":"store","call":")";
    std::string expected = start + R"(WriteHuge","args":[2],"bytes":2,"hex":"6162","result":1})" + "\n";
    for (char const* const saved : {"0,0.5", "5,-3", "3,70000", "1,0.1"}) {
        expected += start + R"(SaveData","args":[)" + saved + "],\"result\":1}\n";
    }
    expected += start + R"(SaveData","args":[4,"x"],"result":0})" + "\n";
    EXPECT_EQ(trace, expected + start + R"(EndWriteData","args":[],"result":0})" + "\n");
}

}  // namespace
}  // namespace norva
