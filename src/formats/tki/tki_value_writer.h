#pragma once

#include "exchange/value_tally.h"
#include "formats/tki/tki_column_reader.h"
#include "norva/file_util.h"
#include "norva/tki_file_read.h"

#include <vector>

namespace norva {

class CProgressReporter;

/// Hands the values of a TKI file's channels to a store: M locations for every record but the last of a profile,
/// which has one.
class CTkiValueWriter {
public:
    /// `locations` is M, at least the count of every channel of samples and a multiple of it.
    CTkiValueWriter(CNorvaFileUtil& store, CProgressReporter& progress, int locations);

    /// Writes one channel, which `reader` stands before, and tells what became of its values. `profiles` holds the
    /// number of records of each. False when the records end early or the store refuses a value.
    bool Write(TkiChannelDesc const& channel, CTkiColumnReader& reader, std::vector<std::uint64_t> const& profiles,
               ReportChannel& report);

private:
    class CSamples;
    class CArray;
    class CText;

    template <typename Values>
    bool WriteProfiles(Values values, CTkiColumnReader& reader, std::vector<std::uint64_t> const& profiles);
    void PassProfiles(std::vector<std::uint64_t> const& profiles);
    /// Tells that a location of a record is due.
    void Tell(int location);

    CNorvaFileUtil& m_store;
    CProgressReporter& m_progress;
    int m_locations;
    ValueTally m_tally;
    std::vector<signed char> m_percents;  ///< of each location of a record
};

}  // namespace norva
