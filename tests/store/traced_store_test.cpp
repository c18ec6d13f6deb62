#include "norva/traced_store.h"

#include "norva/window.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace norva {
namespace {

TEST(TracedStore, EveryCallThatWritesIsOneEventWithItsArguments) {
    test::CTemporaryFolder folder;
    std::string const path = folder / "a.nvt";
    std::string trace;
    CTrace recorder([&](std::string_view line) { trace += line; }, true);
    CWindow owner;
    CTracedStore traced;
    CNorvaFileUtil& store = traced;
    store.SetFileName(folder / "untraced.nvt", kCreateStore, &owner);
    traced.SetTrace(&recorder);
    store.SetFileName(path, kCreateStore, &owner);
    store.AddProfileToStructure("L,1", 1);
    store.AddChannelToStructure({"Mag", "nT", DataType::kText, 1, 0, 2, DisplayFormat::kFixed, 2, -1, 0});
    store.AddChannelToStructure("F", "", DataType::kFloat, 0, 1, 0, -1, -2, -3);
    store.AddChannelToStructure("S", "", DataType::kShort, 0, 1, 0, -1, -1, -1);
    store.AddChannelToStructure("L", "", DataType::kLong, 0, 1, 0, -1, -1, -1);
    store.AddChannelToStructure("D", "", DataType::kDouble, 0, 1, 0, -1, -1, -1);
    store.SaveProfileStructure();
    store.SaveChannelStructure();
    store.StartWriteData();
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
    store.CloseCurFile();
    store.SetFileName(path, kReopenStore, &owner);
    store.SortByChannel(&owner, 0, 1, -1, 1, -1);

    std::string expected;
    auto const expect = [&](std::string const& call, std::string const& arguments, int result,
                            std::string const& more = "") {
        expected += R"({"event":"store","call":")" + call + R"(","args":[)" + arguments + "]" + more + R"(,"result":)" +
                    std::to_string(result) + "}\n";
    };
    expect("SetFileName", '"' + path + "\",1", 1);
    expect("AddProfileToStructure", R"("L,1",1)", 1);
    expect("AddChannelToStructure", R"("Mag","nT",4,1,0,2,0,2,-1,0)", 1);
    expect("AddChannelToStructure", R"("F","",0,0,1,0,-1,-2,-3)", 1);
    expect("AddChannelToStructure", R"("S","",5,0,1,0,-1,-1,-1)", 1);
    expect("AddChannelToStructure", R"("L","",3,0,1,0,-1,-1,-1)", 1);
    expect("AddChannelToStructure", R"("D","",1,0,1,0,-1,-1,-1)", 1);
    for (char const* call : {"SaveProfileStructure", "SaveChannelStructure", "StartWriteData"}) expect(call, "", 1);
    expect("WriteHuge", "2", 1, R"(,"bytes":2,"hex":"6162")");
    expect("SaveData", "0,0.5", 1);
    expect("SaveData", "5,-3", 1);
    expect("SaveData", "3,70000", 1);
    expect("SaveData", "1,0.1", 1);
    expect("SaveData", R"(4,"x")", 0);
    expect("EndWriteData", "", 0);
    expect("CloseCurFile", "", 1);
    expect("SetFileName", '"' + path + "\",0", 0);
    expect("SortByChannel", "0,1,-1,1,-1", 0);
    EXPECT_EQ(trace, expected);
}

}  // namespace
}  // namespace norva
