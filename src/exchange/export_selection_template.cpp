#include "exchange/export_selection_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& Export4000() {
    using namespace ids::Export;
    static DialogTemplate const dialog{
        .number = 4000,
        .title = "Export",
        .root = Column({
            Group(kLinesGroup, "Lines",
                  {
                      Row({
                          List(kExistingLines, "Existing Lines:", true),
                          Column({
                              Button(kLinesAddAll, ">>"),
                              Button(kLinesAdd, ">"),
                              Button(kLinesRemove, "<"),
                              Button(kLinesRemoveAll, "<<"),
                          }),
                          List(kExportLines, "Lines to Export:", true),
                      }),
                      Radio(kLabelAsChannel, "Export Line Label as a Channel", true),
                      Radio(kLabelAsLine, "Export Line Label in a Separate Line"),
                      Check(kPointId, "Export Point ID as a Channel"),
                  }),
            Group(kColumnsGroup, "Columns:",
                  {
                      Row({
                          List(kExistingColumns, "Existing Columns:", true),
                          Column({
                              Button(kColumnsAddAll, ">>"),
                              Button(kColumnsAdd, ">"),
                              Button(kColumnsRemove, "<"),
                              Button(kColumnsRemoveAll, "<<"),
                          }),
                          List(kExportColumns, "Columnls to Export:", true),
                      }),
                      Check(kUnits, "Export Column Units"),
                  }),
            Row({
                Button(kButtonOk, "Export"),
                Button(kButtonCancel, "Cancel"),
                Button(kHelp, "Help"),
            }),
        }),
    };
    return dialog;
}

}  // namespace norva::templates
