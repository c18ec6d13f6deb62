#include "formats/cg3/cg3_import_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& CG3Import4062() {
    using namespace ids::CG3Import;
    static DialogTemplate const dialog{
        .number = 4062,
        .title = "Scintrex CG3 Dump Import",
        .defaultButton = kImport,
        .root = Column({
            Row({
                List(kColumnsInFile, "Columns in File:", true),
                Column({
                    Button(kAdd, ">"),
                    Button(kRemove, "<"),
                }),
                List(kColumnsToImport, "Columns to Import:", true),
            }),
            Row({
                Combo(kDateFormat, "Date Format:"),
                Combo(kTimeFormat, "Time Format:"),
            }),
            Check(kSortByTime, "Sort All By Time Channel"),
            Row({
                Button(kImport, "Import"),
                Button(kButtonCancel, "Cancel"),
            }),
        }),
    };
    return dialog;
}

}  // namespace norva::templates
