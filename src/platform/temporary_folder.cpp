#include "platform/temporary_folder.h"

#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/paths.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <sys/types.h>
#include <unistd.h>

namespace norva {

namespace {

class CTemporaryFolder {
public:
    ~CTemporaryFolder() {
        if (!m_path.empty() && m_creator == ::getpid()) {
            std::error_code ignored;
            std::filesystem::remove_all(m_path, ignored);
        }
    }

    Status Get(std::string& folder) {
        bool const stands = m_creator == ::getpid() && IsFolder(m_path);
        std::string made = stands ? m_path : Pattern();
        int error = InjectedFault(FaultPoint::Open, made);
        if (error == 0 && !stands && ::mkdtemp(made.data()) == nullptr) {
            error = errno;
        }
        if (error != 0) {
            return Status::Failure("Couldn't create the temporary folder", made, SystemErrorText(error));
        }
        m_path = std::move(made);
        m_creator = ::getpid();
        folder = m_path + "/";
        return {};
    }

private:
    static std::string Pattern() {
        char const* const named = std::getenv("TMPDIR");
        std::string const base = named != nullptr && *named != '\0' ? FullPath(named) : "/tmp";
        return base + (base.ends_with('/') ? "" : "/") + "norva-XXXXXX";
    }

    std::string m_path;
    pid_t m_creator = -1;
};

thread_local CTemporaryFolder temporaryFolder;

}  // namespace

Status PrivateTemporaryFolder(std::string& folder) {
    return temporaryFolder.Get(folder);
}

}  // namespace norva
