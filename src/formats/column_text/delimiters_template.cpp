#include "formats/column_text/delimiters_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& Delimiters4060() {
    using namespace ids::Delimiters;
    static DialogTemplate const dialog{
        .number = 4060,
        .title = "Delimiters",
        .root = Column({
            Check(kTab, "Tab"),
            Check(kSpace, "Space"),
            Check(kSemicolon, "Semicolon"),
            Check(kComma, "Comma"),
            // The box belongs to the check box before it and has no label of its own.
            Row({Check(kOther, "Other:"), Edit(kOtherText, "", 1)}),
            Row({
                Button(kButtonOk, "Set"),
                Button(kButtonCancel, "Cancel"),
            }),
        }),
    };
    return dialog;
}

}  // namespace norva::templates
