#include "store_error.h"

#include "norva/import_export.h"

namespace norva::python {

void ThrowLastError(std::string const& path) {
    std::string const text = GetLastErrorText();
    // "Couldn't open the store : survey.nvt\nwhy"
    std::string const joint = " : " + path + "\n";
    std::size_t const at = text.find(joint);
    if (at == std::string::npos) throw CStoreError(text.empty() ? "The operation failed" : text, path, {}, {});
    throw CStoreError(text.substr(0, at), path, {}, text.substr(at + joint.size()));
}

}  // namespace norva::python
