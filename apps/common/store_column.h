#pragma once

#include "norva/file_util.h"

#include <vector>

namespace norva {

/// Reads `count` values of a number channel along a line from `first` on, NaN for no-data; of an array channel the
/// first elements. False, and nothing said of `values`, when the store does not give them.
bool ReadNumbers(CNorvaFileUtil& store, int channel, int line, long first, long count, double* values);

/// The same as a class that keeps its buffer, for those that read many pieces.
class CColumnReader {
public:
    explicit CColumnReader(CNorvaFileUtil& store) : m_store(store) {}
    bool Read(int channel, int line, long first, long count, double* values);

private:
    CNorvaFileUtil& m_store;
    std::vector<char> m_bytes;
};

}  // namespace norva
