#include "formats/column_text/set_channels_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& SetChannels4003() {
    using namespace ids::SetChannels;
    static DialogTemplate const dialog{
        .number = 4003,
        .title = "Import: Set Channels",
        .root = Column({
            List(kFileHeader, "File Header"),
            Row({
                Combo(kSkipFirst, "Skip first"),
                Static(kRowsNote, "rows"),
                Button(kDelimiters, "Set Header Delimiters"),
            }),
            Grid(kPreview, "Data Preview"),
            Row({Edit(kName, "Name:"), Edit(kUnits, "Units:")}),
            Row({
                Column({
                    Row({Radio(kText, "General Text  ", true), Edit(kTextSize, "char.")}),
                    Radio(kFloat, "Float.point (single precision)"),
                    Radio(kDouble, "Float.point (double precision)"),
                    Radio(kShort, "Short Integer (2 bytes)"),
                    Radio(kLong, "Long Integer (4 bytes)"),
                }),
                // The combo boxes belong to the radio buttons before them and have no labels of their own.
                Column({
                    Row({Radio(kDate, "Date"), Combo(kDateTemplate, "")}),
                    Row({Radio(kTime, "Time"), Combo(kTimeTemplate, "")}),
                    Radio(kGeographic, "Geographic (dd.mm.ss.sss)"),
                    Radio(kSkipColumn, "Skip Column"),
                    Check(kLineLabel, "Use a Column as a Line Label"),
                }),
            }),
            Row({
                Button(kButtonOk, "Continue"),
                Button(kButtonCancel, "Cancel"),
                Button(kHelp, "Help"),
            }),
        }),
    };
    return dialog;
}

}  // namespace norva::templates
