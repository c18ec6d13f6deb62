#include "formats/gbn/gbn_format.h"
#include "formats/gbn/gbn_import_template.h"
#include "harness.h"

#include <array>

using namespace norva;

/// The last byte chooses the data type of all channels, whether a line is left out, and whether fiducials are.
NORVA_FUZZ_TARGET(gbn) {
    using namespace ids::GbnImport;
    static constexpr std::array kRadios{kFloat, kShort, kDouble, kLong, kText};
    if (bytes.empty()) return;
    unsigned const choice = static_cast<unsigned char>(bytes.back());
    bytes.remove_suffix(1);
    std::vector<ScriptAction> actions;
    if ((choice & 8U) != 0) actions.push_back(fuzz::Click(kFiducial));
    if ((choice & 7U) < kRadios.size()) {
        actions.push_back(fuzz::SelectRow(kChannels, 0));
        actions.push_back(fuzz::SelectRow(kChannels, 1, DialogEvent::Modifier::Shift));
        actions.push_back(fuzz::Click(kRadios[choice & 7U]));
        actions.push_back(fuzz::Click(kSetForSelected));
    }
    if ((choice & 16U) != 0) {
        ScriptAction tick = fuzz::SelectRow(kLines, 0);
        tick.kind = ScriptAction::Kind::Tick;
        tick.on = false;
        actions.push_back(tick);
    }
    actions.push_back(fuzz::Click(kButtonOk));
    if (fuzz::Import({.format = kGbnFormat, .fileName = "in.gbn", .answers = {fuzz::DialogAnswer(4059, actions)}},
                     bytes)) {
        fuzz::CleanUp({fuzz::kStoreName});
    }
}
