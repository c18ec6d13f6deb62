#include "exchange/progress_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& Progress4053() {
    using namespace ids::Progress;
    static DialogTemplate const dialog{
        .number = 4053,
        .title = "Import Progress",
        .root = Column({
            Row({Static(kFileLabel, "File:"), Static(kFileText, "")}),
            Progress(kFileBar, ""),
            Row({Static(kChannelLabel, "Channel:"), Static(kChannelText, "")}),
            Progress(kChannelBar, ""),
        }),
    };
    return dialog;
}

}  // namespace norva::templates
