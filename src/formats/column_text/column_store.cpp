#include "formats/column_text/column_store.h"

#include "exchange/exception_guard.h"
#include "exchange/store_call.h"
#include "platform/paths.h"
#include "platform/temporary_folder.h"
#include "ui/messages.h"

#include <utility>

namespace norva {

Status CreateStore(ImportJob& job) {
    return CallStore(*job.store, [&] { return job.store->SetFileName(job.storePath, kCreateStore, job.owner); });
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
    return CallStore(store, [&store] {
        bool const isSaved = store.SaveProfileStructure() != 0 && store.SaveChannelStructure() != 0;
        return isSaved ? store.StartWriteData() : 0;
    });
}

Status CreateColumnFiles(CColumnFiles& files, std::string const& path, std::size_t count) {
    std::string base;
    if (Status status = PrivateTemporaryFolder(base); !status) return std::move(status).Silent();
    base += FileNameOf(WithoutExtension(path));
    return files.Create(base, static_cast<int>(count), path).Silent();
}

Status PassStatus(CLineReader const& file, CColumnFiles const& files, std::string const& path) {
    if (file.Error() != 0) return Shown(Status::FileFailure("read", path, file.Error()));
    return Shown(files.Error());
}

Status HandOverColumns(CProgressWindow& window, CColumnFiles& files, std::vector<NorvaChannelStruct> const& columns,
                       CNorvaFileUtil& store) {
    window.StartStep("Writting down data to file");
    int const count = static_cast<int>(columns.size());
    for (int i = 0; i < count; ++i) {
        window.Reporter().ChannelPercent(i * 100LL / count);
        if (columns[static_cast<std::size_t>(i)].dataType == DataType::kSkipped) {
            files.Remove(i);
        } else if (Status status = files.HandOver(i, store); !status) {
            ShowMessage(status.Text());
            return status;
        }
    }
    return CallStore(store, [&store] { return store.EndWriteData() != 0 ? store.CloseCurFile() : 0; });
}

}  // namespace norva
