#pragma once

#include "norva/tki_file_read.h"

namespace norva::test {

/// What is protected is open.
class CTkiProbe : public CTkiFileRead {
public:
    using CTkiFileRead::ConvertByteToFloat, CTkiFileRead::ConvertByteToDouble, CTkiFileRead::ConvertByte,
        CTkiFileRead::ConvertByteToInt, CTkiFileRead::ConvertByteToLong, CTkiFileRead::GetCharacter,
        CTkiFileRead::Channels, CTkiFileRead::GetMaxInterpRecords, CTkiFileRead::GetProfiles,
        CTkiFileRead::GetTkiDataChannels;
    using CTkiFileRead::CTkiFileRead;
};

}  // namespace norva::test
