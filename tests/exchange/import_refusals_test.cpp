#include "formats/gbn/gbn_bytes.h"
#include "norva/exchange.h"
#include "platform/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>

namespace norva::test {
namespace {

RecordSettings BaseRecords() {
    using Format = RecordChannel::Format;
    return {.channels = {{"Time", "", Format::Double, DataType::kDouble},
                         {"Mag", "nT", Format::Float, DataType::kFloat},
                         {"Q", "", Format::Int16, DataType::kShort}}};
}

struct Source {
    char const* sample;
    ImportSettings settings;
};

std::vector<Source> Sources() {
    return {{"base.bin", BaseRecords()}, {"cg3.dmp", {}}, {"survey.gbn", {}}, {"airborne.p01", {}}};
}

/// Imports a sample that was copied into the folder, into "out.nvt" there.
Status Import(CTemporaryFolder const& folder, Source const& source, ImportResult& result,
              CNorvaFileUtil* store = nullptr) {
    ImportRequest request;
    request.inputPath = folder / source.sample;
    request.storePath = folder / "out.nvt";
    request.settings = source.settings;
    request.replace = true;
    request.store = store;
    return ImportFile(request, result);
}

void CopySample(CTemporaryFolder const& folder, char const* sample) {
    std::filesystem::copy_file(std::string(NORVA_SAMPLES "/") + sample, folder / sample);
}

/// Makes a folder the current one for a while.
class CCurrentFolder {
public:
    explicit CCurrentFolder(std::string const& folder) : m_before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~CCurrentFolder() { std::filesystem::current_path(m_before); }

private:
    std::filesystem::path m_before;
};

TEST(ImportRefusals, NoFileOfAUserIsTakenForATemporaryOne) {
    for (Source const& source : Sources()) {
        CTemporaryFolder const folder;
        CCurrentFolder const current(folder.Path());
        CopySample(folder, source.sample);
        std::string const base = std::filesystem::path(source.sample).stem();
        std::set<std::string> const names{"fiducial", base + ".0", base + ".1", base + ".2"};
        for (std::string const& name : names) WriteWholeFile(folder / name, "kept: " + name);
        std::filesystem::permissions(folder / (base + ".1"), std::filesystem::perms::owner_read);
        std::string const input = ReadWholeFile(folder / source.sample);
        ImportResult result;
        Status const status = Import(folder, source, result);
        EXPECT_TRUE(status) << source.sample << ": " << status.Text();
        for (std::string const& name : names) {
            EXPECT_EQ(ReadWholeFile(folder / name), "kept: " + name) << source.sample;
        }
        EXPECT_TRUE(ReadWholeFile(folder / source.sample) == input) << source.sample;
        EXPECT_EQ(folder.Count(), names.size() + 2) << source.sample;
    }
}

TEST(ImportRefusals, TemporaryFilesFindANameOrAFolder) {
    // Names as long as file systems take them leave no room for an ending.
    for (Source const& source : Sources()) {
        CTemporaryFolder const folder;
        CCurrentFolder const current(folder.Path());
        std::string const extension = std::filesystem::path(source.sample).extension();
        std::string const name = std::string(255 - extension.size(), 'n') + extension;
        std::filesystem::copy_file(std::string(NORVA_SAMPLES "/") + source.sample, folder / name);
        ImportResult result;
        Status const status = Import(folder, {name.c_str(), source.settings}, result);
        EXPECT_TRUE(status) << source.sample << ": " << status.Text();
        EXPECT_EQ(folder.Count(), 2U) << source.sample;
    }
    CTemporaryFolder const folder;
    CTemporaryFolder const closed;
    CCurrentFolder const current(closed.Path());
    CopySample(folder, "survey.gbn");
    bool isBeside = false;
    SetFaultHook([&](FaultPoint point, std::string const& path) {
        isBeside = isBeside || path == folder / "fiducial";
        return point == FaultPoint::Open && path == closed / "fiducial" ? EACCES : 0;
    });
    ImportResult result;
    Status const status = Import(folder, {"survey.gbn", {}}, result);
    SetFaultHook({});
    EXPECT_TRUE(status) << status.Text();
    EXPECT_TRUE(isBeside);
    EXPECT_EQ(folder.Count(), 2U);
}

/// Gives 0 from one of its operations.
class CRefusingStore : public CNorvaFileUtil {
public:
    enum class Operation { Profiles, Channels, Start, Write, End, Close, Reopen, Sort };

    explicit CRefusingStore(Operation refused) : m_refused(refused) {}

    int SetFileName(std::string const& path, EETFileMode mode, CWindow* owner) override {
        return mode == kReopenStore && Refuses(Operation::Reopen) ? 0 : CNorvaFileUtil::SetFileName(path, mode, owner);
    }
    int SaveProfileStructure() override {
        return Refuses(Operation::Profiles) ? 0 : CNorvaFileUtil::SaveProfileStructure();
    }
    int SaveChannelStructure() override {
        return Refuses(Operation::Channels) ? 0 : CNorvaFileUtil::SaveChannelStructure();
    }
    int StartWriteData() override { return Refuses(Operation::Start) ? 0 : CNorvaFileUtil::StartWriteData(); }
    int WriteHuge(void const* buffer, std::size_t count) override {
        return Refuses(Operation::Write) ? 0 : CNorvaFileUtil::WriteHuge(buffer, count);
    }
    int SaveData(int dataType, void const* value) override {
        return Refuses(Operation::Write) ? 0 : CNorvaFileUtil::SaveData(dataType, value);
    }
    int EndWriteData() override { return Refuses(Operation::End) ? 0 : CNorvaFileUtil::EndWriteData(); }
    int CloseCurFile() override {
        int const result = CNorvaFileUtil::CloseCurFile();
        return Refuses(Operation::Close) ? 0 : result;
    }
    int SortByChannel(CWindow* owner, int channel, int first, int second, int third, int fourth) override {
        return Refuses(Operation::Sort) ? 0
                                        : CNorvaFileUtil::SortByChannel(owner, channel, first, second, third, fourth);
    }

private:
    bool Refuses(Operation operation) const { return operation == m_refused; }

    Operation m_refused;
};

TEST(ImportRefusals, AStoreThatRefusesEndsEveryImport) {
    using Operation = CRefusingStore::Operation;
    for (Source const& source : Sources()) {
        for (Operation const refused : {Operation::Profiles, Operation::Channels, Operation::Start, Operation::Write,
                                        Operation::End, Operation::Close}) {
            std::string const what = source.sample + std::string(", operation ") + std::to_string(int(refused));
            CTemporaryFolder const folder;
            CCurrentFolder const current(folder.Path());
            CopySample(folder, source.sample);
            if (refused != Operation::Close) WriteWholeFile(folder / "out.nvt", "an older store");
            CRefusingStore store(refused);
            ImportResult result;
            Status const status = Import(folder, source, result, &store);
            EXPECT_FALSE(status) << what;
            EXPECT_EQ(status.Text(), "Couldn't write the file : " + folder / "out.nvt") << what;
            EXPECT_TRUE(result.report.unit.empty()) << what;
            EXPECT_EQ(folder.Count(), 2U) << what;
            if (refused != Operation::Close) {
                EXPECT_EQ(ReadWholeFile(folder / "out.nvt"), "an older store") << what;
            }
        }
    }
}

TEST(ImportRefusals, ADumpThatCannotBeSortedSaysSo) {
    using Operation = CRefusingStore::Operation;
    for (Operation const refused : {Operation::Reopen, Operation::Sort, Operation::Write}) {
        bool const isRefused = refused != Operation::Write;
        CTemporaryFolder const folder;
        CopySample(folder, "cg3.dmp");
        CRefusingStore store(refused);
        CNorvaFileUtil willing;
        ImportResult result;
        Status const status = Import(folder, {"cg3.dmp", {}}, result, isRefused ? &store : &willing);
        ASSERT_TRUE(status) << status.Text();
        ASSERT_EQ(result.messages.size(), isRefused ? 1U : 0U);
        if (isRefused) {
            EXPECT_TRUE(result.messages[0].starts_with("The lines were imported, but could not be sorted by time : " +
                                                       (folder / "out.nvt")))
                << result.messages[0];
        }
        ASSERT_EQ(result.report.settings.size(), 1U);
        EXPECT_EQ(result.report.settings[0].value, isRefused ? "no, it failed" : "yes");
    }
}

TEST(ImportRefusals, ASmallFileDoesNotFillTheDisk) {
    CTemporaryFolder const folder;
    CCurrentFolder const current(folder.Path());
    // One text of 2 million bytes in a line of 2 million locations.
    constexpr int kMany = 2'000'000;
    CGbnBytes file;
    file.Channel("T", -kMany).Channel("N", 0).Line(1).Block(1, 0, kMany);
    file.bytes.append(kMany, '\1');
    WriteWholeFile(folder / "in.gbn", file.End().bytes);
    ImportResult result;
    Status const status = Import(folder, {"in.gbn", {}}, result);
    EXPECT_FALSE(status);
    EXPECT_TRUE(status.Text().starts_with("Not enough free space on the disk : " + folder.Path() + "/\n"))
        << status.Text();
    EXPECT_EQ(folder.Count(), 1U);

    std::string titles = "STATION";
    for (int i = 0; i < 1000; ++i) titles += " TIME";
    WriteWholeFile(folder / "in.dmp", "-------\nLine: 1. Date: 94/08/22 Job: 1\n-------\n" + titles + "\n1 2\n");
    Status const wide = Import(folder, {"in.dmp", {}}, result);
    EXPECT_EQ(wide.Reason(), "Its line of column titles has 1001 columns; 1000 at most are possible.");
    EXPECT_EQ(folder.Count(), 2U);
}

}  // namespace
}  // namespace norva::test
