#pragma once

#include "exchange/column_files.h"
#include "exchange/import_format.h"
#include "exchange/progress_dlg.h"
#include "platform/line_reader.h"

#include <string>
#include <vector>

/// From columns of text to a store: the steps that the importers of rows share. A failure that has a message box was
/// shown when it is returned.
namespace norva {

/// Opens the job's store for writing.
Status CreateStore(ImportJob& job);
/// Describes the channels to the store, after its profiles, and makes it ready for their values.
Status StartWriting(CProgressWindow& window, std::string const& path, std::vector<NorvaChannelStruct>& columns,
                    CNorvaFileUtil& store);
/// Temporary files for that many columns of the text at `path`.
Status CreateColumnFiles(CColumnFiles& files, std::string const& path, std::size_t count);
/// Whether all of the text was read, and every value written.
Status PassStatus(CLineReader const& file, CColumnFiles const& files, std::string const& path);
/// Hands the columns over one by one and completes the store.
Status HandOverColumns(CProgressWindow& window, CColumnFiles& files, std::vector<NorvaChannelStruct> const& columns,
                       CNorvaFileUtil& store);

}  // namespace norva
