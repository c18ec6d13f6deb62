#include "exchange/import_format.h"

#include "platform/text.h"

namespace norva {

namespace {

bool IsUtf16(std::string_view bytes) {
    if (bytes.size() < 4) return false;
    return (bytes.starts_with("\xFF\xFE") && bytes[3] == '\0') || (bytes.starts_with("\xFE\xFF") && bytes[2] == '\0');
}

}  // namespace

bool FileStart::IsBinary() const {
    return Contains(bytes, std::string_view("\0", 1)) && !IsUtf16(bytes);
}

}  // namespace norva
