#include "formats/records/binary_import_template.h"
#include "norva/dialog.h"
#include "ui/template_builders.h"

namespace norva::templates {

DialogTemplate const& BinaryImport4004() {
    using namespace ids::BinaryImport;
    static DialogTemplate const dialog{
        .number = 4004,
        .title = "Binary File Import   ",
        .root = Column({
            Static(kRecordsNote, "File should be organized as a sequence of fixed-length records of binary data."),
            Static(kFormatNote, "Set the number of channels in one record and specify the data format."),
            Row({
                Edit(kChannelCount, "Number of Channels in a record:"),
                Button(kSetCount, "Set"),
            }),
            Report(kChannels, "Channels:", {"N", "Name", "Units", "Data Format"}, false, {kNameColumn, kUnitsColumn}),
            Button(kSelectAll, "Select All Channels"),
            Row({
                Group(kReadFormat, "Read Format",
                      {
                          Radio(kReadInt32, "32-bit integer (signed)", true),
                          Radio(kReadInt16, "16-bit integer (signed)"),
                          Radio(kReadFloat64, "64-bit float"),
                          Radio(kReadFloat32, "32-bit float"),
                      }),
                Group(kWriteFormat, "Write Format",
                      {
                          Radio(kWriteFloat, "Float point (single precision)", true),
                          Radio(kWriteDouble, "Float point (double precision)"),
                          Radio(kWriteShort, "Short Integer (2 bytes)"),
                          Radio(kWriteLong, "Long Integer (4 bytes)"),
                      }),
            }),
            Button(kSetForSelected, "Set for Selected"),
            Row({
                Edit(kTotalRecords, "Total Records in File:"),
                Edit(kPointsPerLine, "Split into lines at (points)"),
            }),
            Row({
                Check(kAddFiducial, "Add Fiducial Channel"),
                Edit(kFrequency, "Sampling Frequency (Hz):"),
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
