#include "entry/import_formats.h"

#include <algorithm>

namespace norva {

namespace {

constexpr ImportFormat kFormats[] = {
    {1, "ASCII XYZ", "ASCII Files (*.asc; *.xyz; *.dat; *.txt)|*.asc;*.xyz;*.dat;*.txt|All Files (*.*)|*.*||", 0,
     RunTextImport},
    {8, "ASCII CSV", "CSV files (*.csv)|*.csv|All Files (*.*)|*.*||", 0, RunTextImport},
    {12, "ASCII GEM", "ASCII Files (*.txt; *stn)|*.txt; *.stn|All Files (*.*)|*.*||", 0, RunTextImport},
    {5, "Binary XYZ", "Binary XYZ Files (*.*)|*.*||", 0, RunBinaryXyzImport},
    {4, "Geosoft GBN", "Geosoft GBN files (*.gbn)|*.gbn*||", 0, RunGbnImport},
    {6, "Scintrex CG3", "Scintrex CG3 dump (*.dmp; *.raw)|*.dmp;*.raw||", 0, RunCG3Import},
    {kGravityMeterFormat, "Scintrex CG5", "Scintrex CG5 dump (*.dmp; *.raw)|*.dmp;*.raw||", 0, RunTextImport},
    {10, "Scintrex IPR_12", "Scintrex IPR dump (*.dmp; *.raw; *.IGS)|*.dmp;*.raw;*.IGS||", 0,
     RunIpr12Import},
    {7, "SeaSPY(Marine Magnetics)", "SeaSPY Files (*.mag)|*.mag|All Files (*.*)|*.*||", 0, RunSeaSpyImport},
    {kTkiFormat, "Tarko", "TKI files (*.p*)|*.p*|All Files (*.*)|*.*||", 1, RunTkiImport},
    {11, "GPS Exchange Format(GPX)", "GPX file(*.gpx)|*.gpx||", 0, RunGpxImport},
};

/// At this level the list begins with the GEM format.
constexpr int kGemLevel = 5;
constexpr int kGemFormat = 12;

}  // namespace

std::span<ImportFormat const> ImportFormats() {
    return kFormats;
}

ImportFormat const* FindImportFormat(int code) {
    auto const found = std::ranges::find(kFormats, code, &ImportFormat::code);
    return found == std::end(kFormats) ? nullptr : found;
}

std::vector<ImportFormat const*> OfferedImportFormats(int level) {
    std::vector<ImportFormat const*> offered;
    for (ImportFormat const& format : kFormats) {
        if (level < format.lowestLevel) continue;
        bool const isFirst = level == kGemLevel && format.code == kGemFormat;
        offered.insert(isFirst ? offered.begin() : offered.end(), &format);
    }
    return offered;
}

}  // namespace norva
