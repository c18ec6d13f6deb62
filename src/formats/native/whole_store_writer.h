#pragma once

#include "exchange/export_type.h"
#include "norva/file_util.h"
#include "norva/status.h"
#include "norva/values.h"
#include "store/store_structure.h"
#include "store/store_writer.h"

#include <string>
#include <vector>

namespace norva {

NorvaChannelStruct DescribedChannel(CNorvaFileUtil& store, int index);

/// Writes a store anew with everything that it holds, the lines and channels in the order of an export's choice.
class CWholeStoreWriter {
public:
    explicit CWholeStoreWriter(CNorvaFileUtil& store) : m_store(store) {}

    /// A failure is silent.
    Status Open(std::string const& path);
    /// Lines that `offered`, in ascending order, does not list could not be chosen; they follow the others.
    Status Write(ExportJob& job, std::vector<int> const& offered);

private:
    Status Describe(ExportJob const& job);
    bool WriteLine(int index, int profile, long locations);
    Status Refused(std::string reason) const;
    Status Failed() const;

    CNorvaFileUtil& m_store;
    std::string m_path;
    std::vector<int> m_lines;
    CStoreStructure m_structure;
    CStoreWriter m_writer;
    std::vector<char> m_block;
    Status m_unread;
};

}  // namespace norva
