#include "entry/converted_import.h"

#include "norva/converters.h"
#include "platform/files.h"
#include "store/report_draft.h"

namespace norva {

namespace {

/// Deletes a file at the end of its scope.
class CFileRemover {
public:
    explicit CFileRemover(std::string const& path) : m_path(path) {}
    CFileRemover(CFileRemover const&) = delete;
    CFileRemover& operator=(CFileRemover const&) = delete;
    ~CFileRemover() { RemoveFile(m_path); }

private:
    std::string const& m_path;
};

}  // namespace

int RunConvertedImport(ImportJob const& job, std::string_view temporaryName, ConvertToText const& convert) {
    ImportJob textJob = job;
    textJob.gravityMeterMode = 0;
    if (CUAC::IsVistaOrLater()) {
        if (CUAC::GetUserNorvaToolTempDirectory(textJob.inputPath) == 0) return 0;
        textJob.inputPath += temporaryName;
    } else {
        textJob.inputPath = job.inputPath.substr(0, job.inputPath.rfind('.')) + "_temp.xyz";
    }
    if (convert(job.inputPath, textJob.inputPath) == 0) return 0;
    CFileRemover const remover(textJob.inputPath);
    int const result = RunTextImport(textJob);
    // Its places would be those of a text that the user has never seen.
    ForgetReport();
    return result;
}

}  // namespace norva
