#include "formats/column_text/column_store.h"

#include "exchange/exception_guard.h"
#include "norva/import_export.h"
#include "platform/paths.h"
#include "platform/temporary_folder.h"

#include <utility>

namespace norva {

namespace {

/// A store, or what works for it, refused without a message; it may have left its reason.
Status Refused() {
    return Status::Failure(GetLastErrorText()).Silent();
}

}  // namespace

Status CreateStore(ImportJob& job) {
    return job.store->SetFileName(job.storePath, kCreateStore, job.owner) != 0 ? Status() : Refused();
}

Status StartWriting(CProgressWindow& window, std::string const& path, std::vector<NorvaChannelStruct>& columns,
                    CNorvaFileUtil& store) {
    for (NorvaChannelStruct& column : columns) {
        if (column.dataType == DataType::kSkipped) continue;
        if (column.dataType == DataType::kText) {
            column.recordType = 1;
        } else {
            column.arraySize = 1;
        }
        store.AddChannelToStructure(column);
    }
    window.StartStep("Import", path);
    bool const isReady =
        store.SaveProfileStructure() != 0 && store.SaveChannelStructure() != 0 && store.StartWriteData() != 0;
    return isReady ? Status() : Refused();
}

Status CreateColumnFiles(CColumnFiles& files, std::string const& path, std::size_t count) {
    std::string base;
    if (Status status = PrivateTemporaryFolder(base); !status) return std::move(status).Silent();
    base += FileNameOf(WithoutExtension(path));
    return files.Create(base, static_cast<int>(count), path) ? Status() : Refused();
}

Status PassStatus(CLineReader const& file, CColumnFiles const& files, std::string const& path) {
    if (file.Error() != 0) return Shown(Status::FileFailure("read", path, file.Error()));
    return files.Failed() ? Shown(Status::Failure(GetLastErrorText())) : Status();
}

Status HandOverColumns(CProgressWindow& window, CColumnFiles& files, std::vector<NorvaChannelStruct> const& columns,
                       CNorvaFileUtil& store) {
    window.StartStep("Writting down data to file");
    int const count = static_cast<int>(columns.size());
    for (int i = 0; i < count; ++i) {
        window.Reporter().ChannelPercent(i * 100LL / count);
        if (columns[static_cast<std::size_t>(i)].dataType == DataType::kSkipped) {
            files.Remove(i);
        } else if (!files.HandOver(i, store)) {
            std::string const reason = GetLastErrorText();
            return Shown(reason.empty() ? Status::Failure("Couldn't write the file", store.GetNorvaFileName())
                                        : Status::Failure(reason));
        }
    }
    if (store.EndWriteData() == 0) return Refused();
    store.CloseCurFile();
    return {};
}

}  // namespace norva
