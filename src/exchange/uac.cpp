#include "exchange/exception_guard.h"
#include "norva/converters.h"
#include "norva/toolkit.h"
#include "platform/temporary_folder.h"

namespace norva {

bool CUAC::IsVistaOrLater() {
    return true;
}

int CUAC::GetUserNorvaToolTempDirectory(std::string& directory) {
    return Conclude(PrivateTemporaryFolder(directory).Silent());
}

int CUAC::BrowseFileToSaveGetExt(unsigned flags, std::string const& filter, std::string& path,
                                 std::string const& initialName, std::string& extension) {
    FileRequest const request{.title = "Save As", .filter = filter, .flags = flags, .initial = initialName};
    std::string chosen;
    std::string reported;
    if (!CurrentToolkit().ChooseFileToSave(request, chosen, reported)) {
        return 0;
    }
    path = chosen;
    extension = reported;
    return 1;
}

}  // namespace norva
