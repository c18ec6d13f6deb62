#include "fuzz_folder.h"
#include "norva/tki_file_read.h"

#include <cstdlib>

using namespace norva;

namespace {

/// Counts values against what was described to it, and refuses when they become many.
class CCountingStore : public CNorvaFileUtil {
public:
    long long expected = 0;
    long long saved = 0;

    int AddProfileToStructure(std::string const& /*name*/, long locations) override {
        if (locations < 1) std::abort();
        m_locations += locations;
        return 1;
    }
    int AddChannelToStructure(std::string const& /*name*/, std::string const& /*units*/, int dataType, int recordType,
                              int arraySize, int /*reserved*/, int /*displayFormat*/, int /*decimals*/,
                              int /*templateFormat*/) override {
        if (dataType != DataType::kSkipped) expected += m_locations * (recordType == 1 ? arraySize : 1);
        return 1;
    }
    int SaveProfileStructure() override { return 1; }
    int SaveChannelStructure() override { return 1; }
    int StartWriteData() override { return 1; }
    int SaveData(int /*dataType*/, void const* /*value*/) override { return ++saved < 200'000 ? 1 : 0; }
    int EndWriteData() override { return 1; }
    int CloseCurFile() override { return 1; }

private:
    long long m_locations = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    test::CTemporaryFolder& folder = fuzz::Folder();
    test::WriteWholeFile(folder / "in.p01", fuzz::AsText(data, size));
    CCountingStore store;
    if (CTkiFileRead(folder / "in.p01", folder / "out.nvt").LoadFile(&store, nullptr) == 0) return 0;
    if (store.saved != store.expected) std::abort();
    return 0;
}
