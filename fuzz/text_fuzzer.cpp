#include "formats/column_text/column_text_format.h"
#include "formats/column_text/set_channels_template.h"
#include "harness.h"
#include "norva/import_export.h"

#include <iterator>

using namespace norva;

/// The last byte chooses what the first column is made and whether the text is comma-separated or a gravity meter's;
/// a line feed chooses the defaults. Whatever the text, the rows that are counted are those that are written, so that
/// nothing but the fixed refusals ends an import.
NORVA_FUZZ_TARGET(text) {
    using namespace ids::SetChannels;
    static constexpr int kButtons[] = {0,     kText, kFloat,      kDouble,     kShort,    kLong,
                                       kDate, kTime, kGeographic, kSkipColumn, kLineLabel};
    if (bytes.empty()) return;
    unsigned const choice = static_cast<unsigned char>(bytes.back()) ^ 10U;
    if (choice != 0) bytes.remove_suffix(1);
    std::vector<ScriptAction> actions;
    if (int const button = kButtons[choice / 2 % std::size(kButtons)]; button != 0) {
        actions = {fuzz::SelectColumn(kPreview, 0), fuzz::Click(button)};
    }
    actions.push_back(fuzz::Click(kButtonOk));
    fuzz::ImportTry const what = {.format = kAsciiXyzFormat,
                                  .fileName = choice % 2 == 0 ? "in.xyz" : "in.csv",
                                  .answers = {fuzz::DialogAnswer(4003, actions)},
                                  .gravityMeterMode = choice / 22 % 2 == 0 ? 0 : 1};
    if (fuzz::Import(what, bytes)) return fuzz::CleanUp({fuzz::kStoreName});
    std::string const reason = GetLastErrorText();
    bool const isRefused = reason.empty() || reason.starts_with("There ") || reason.starts_with("Couldn't read the ");
    if (!isRefused) fuzz::Broken(reason);
}
