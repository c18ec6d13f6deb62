#include "norva/converters.h"
#include "norva/toolkit.h"
#include "platform/last_error.h"

#include <unistd.h>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <mutex>

namespace norva {

namespace {

/// The private folder of this process; removed at its exit, but not at that of a forked child.
class CProcessFolder {
public:
    ~CProcessFolder() {
        if (m_path.empty() || m_owner != getpid()) return;
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }

    bool Get(std::string& path) {
        std::lock_guard const lock(m_mutex);
        if (m_path.empty() || m_owner != getpid()) Create();
        path = m_path;
        return !m_path.empty();
    }

private:
    void Create() {
        char const* const base = std::getenv("TMPDIR");
        std::string name = std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/norva-XXXXXX";
        m_path.clear();
        m_owner = getpid();
        if (mkdtemp(name.data()) == nullptr) {
            SetLastErrorText("Couldn't create the temporary folder : " + name + "\n" + SystemErrorText(errno));
            return;
        }
        m_path = name + "/";
    }

    std::mutex m_mutex;
    std::string m_path;
    pid_t m_owner = 0;
};

}  // namespace

bool CUAC::IsVistaOrLater() {
    return true;  // every system this runs on gives each user a temporary folder
}

int CUAC::GetUserNorvaToolTempDirectory(std::string& directory) {
    static CProcessFolder folder;
    return folder.Get(directory) ? 1 : 0;
}

int CUAC::BrowseFileToSaveGetExt(unsigned flags, std::string const& filter, std::string& path,
                                 std::string const& initialName, std::string& extension) {
    FileRequest request;
    request.title = "Save As";
    request.filter = filter;
    request.flags = flags;
    request.initial = initialName;
    std::string chosen;
    std::string reported;
    if (!CurrentToolkit().ChooseFileToSave(request, chosen, reported)) return 0;
    path = chosen;
    extension = reported;
    return 1;
}

}  // namespace norva
