#pragma once

#include "platform/files.h"
#include "store/store_checksum.h"
#include "store/store_layout.h"
#include "store/store_structure.h"

#include <cstddef>
#include <string>

namespace norva {

/// A store file being written, section after section: Open, Begin, all columns, all elements of arrays, Finish.
/// It takes its name in Finish; until then an older file of that name stays, and destroying this leaves nothing.
class CStoreOutput {
public:
    bool Open(std::string const& path);
    /// The text sections. `structure` is arranged.
    bool Begin(CStoreStructure const& structure);
    bool WriteColumns(void const* data, std::size_t size);
    bool WriteElements(void const* data, std::size_t size);
    /// Closes the sections, writes through to the disk and renames. The checksums are those of the bytes written, or
    /// the ones of `copied` when these bytes were copied from a store that has them.
    bool Finish(CStoreStructure const& structure, StoreTrailer const* copied = nullptr);

    /// A name beside the file for a temporary file of the writer's own.
    std::string SiblingPath(char const* suffix) const { return m_file.TemporaryPath() + suffix; }
    /// The system's reason for the failure.
    std::string Reason() const;

private:
    bool EndColumns();

    CReplacementFile m_file;
    CStoreChecksum m_structure;
    CStoreChecksum m_columns;
    CStoreChecksum m_elements;
    std::uint64_t m_elementBytes = 0;
    bool m_columnsEnded = false;
    bool m_isDevice = false;
};

}  // namespace norva
