#include "entry/import_format_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& ImportFormats4063() {
    using namespace ids::ImportFormats;
    static DialogTemplate const dialog{
        .number = 4063,
        .title = "Import Formats",
        .root = Column({
            List(kFormats, "Formats"),
            Row({
                Button(kButtonOk, "OK"),
                Button(kButtonCancel, "Cancel"),
            }),
        }),
    };
    return dialog;
}

}  // namespace norva::templates
