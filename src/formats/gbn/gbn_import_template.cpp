#include "formats/gbn/gbn_import_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& GbnImport4059() {
    using namespace ids::GbnImport;
    static DialogTemplate const dialog{
        .number = 4059,
        .title = "GBN File Import",
        .root = Column({
            Row({
                ReadOnlyEdit(kLineCount, "Number of Lines:"),
                ReadOnlyEdit(kChannelCount, "Number of channels in a record:"),
            }),
            Report(kChannels, "Channels:", {"Exp", "N", "Name", "Units", "Data Format"}, true,
                   {kNameColumn, kUnitsColumn}),
            Report(kLines, "Lines:", {"Exp", "N", "Name", "NumLoc"}, true, {kLineNameColumn}),
            Row({
                Button(kCheckSelection, "Check Selection"),
                Button(kUncheckSelection, "Unheck Selection"),
            }),
            Group(kOutputFormat, "Output Data Format",
                  {
                      Radio(kFloat, "Float point (single precision)", true),
                      Radio(kShort, "Short Integer (2 bytes)"),
                      Radio(kDouble, "Float point (double precision)"),
                      Radio(kLong, "Long Integer (4 bytes)"),
                      Radio(kText, "General Text"),
                      Button(kSetForSelected, "Set for Selected"),
                  }),
            Check(kFiducial, "Import Fiducial as a separate channel"),
            Row({
                Button(kButtonOk, "Continue"),
                Button(kButtonCancel, "Cancel"),
            }),
        }),
    };
    return dialog;
}

}  // namespace norva::templates
