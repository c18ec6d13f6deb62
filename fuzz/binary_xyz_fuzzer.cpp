#include "formats/records/binary_import_template.h"
#include "formats/records/records_format.h"
#include "harness.h"

using namespace norva;

/// The last bytes are a layout: how many channels, the formats of each, records and points a line (0: as the dialog
/// has them), whether fiducials are added.
NORVA_FUZZ_TARGET(binary_xyz) {
    using namespace ids::BinaryImport;
    static constexpr std::size_t kSettings = 12;
    static constexpr int kMostChannels = 8;
    static constexpr int kRead[] = {kReadInt32, kReadInt16, kReadFloat64, kReadFloat32};
    static constexpr int kWrite[] = {kWriteFloat, kWriteDouble, kWriteShort, kWriteLong};
    if (bytes.size() < kSettings) return;
    std::string_view const tail = bytes.substr(bytes.size() - kSettings);
    auto const setting = [tail](int at) { return static_cast<unsigned char>(tail[static_cast<std::size_t>(at)]); };
    int const channels = 1 + setting(0) % kMostChannels;
    std::vector<ScriptAction> actions = {fuzz::Set(kChannelCount, std::to_string(channels)), fuzz::Click(kSetCount)};
    for (int row = 0; row < channels; ++row) {
        actions.push_back(fuzz::SelectRow(kChannels, row));
        for (int const button : {kRead[setting(1 + row) % 4], kWrite[setting(1 + row) / 4 % 4], kSetForSelected}) {
            actions.push_back(fuzz::Click(button));
        }
    }
    int const records = setting(9) - 100;
    if (setting(9) != 0) actions.push_back(fuzz::Set(kTotalRecords, std::to_string(records)));
    if (setting(10) != 0) actions.push_back(fuzz::Set(kPointsPerLine, std::to_string(setting(10))));
    bool const clicksFiducial = setting(11) % 2 != 0;
    if (clicksFiducial) actions.push_back(fuzz::Click(kAddFiducial));
    actions.push_back(fuzz::Click(kButtonOk));
    bytes.remove_suffix(kSettings);
    if (!fuzz::Import(
            {.format = kBinaryRecordsFormat, .fileName = "in.bin", .answers = {fuzz::DialogAnswer(4004, actions)}},
            bytes)) {
        return;
    }
    CNorvaFileUtil store;
    if (store.SetFileName(fuzz::kStoreName, kReopenStore, nullptr) == 0) fuzz::Broken("the store does not open");
    long locations = 0;
    for (int line = 0; line < store.ProfileCount; ++line) locations += store.GetProfileLocationNum(line, 0);
    if (store.ChannelCount != channels + (clicksFiducial ? 0 : 1)) fuzz::Broken("channels lost");
    if (records > 0 && locations != records) fuzz::Broken("records lost");
    store.CloseCurFile();
    fuzz::CleanUp({fuzz::kStoreName});
}
