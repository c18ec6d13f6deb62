#include "entry/import_formats.h"

#include <algorithm>

namespace norva {

namespace {

constexpr ImportFormat kFormats[] = {
    {1, "ASCII XYZ", "ASCII Files (*.asc; *.xyz; *.dat; *.txt)|*.asc;*.xyz;*.dat;*.txt|All Files (*.*)|*.*||", 0,
     RunTextImport, DescribeTextFile},
    {8, "ASCII CSV", "CSV files (*.csv)|*.csv|All Files (*.*)|*.*||", 0, RunTextImport, DescribeTextFile},
    {12, "ASCII GEM", "ASCII Files (*.txt; *stn)|*.txt; *.stn|All Files (*.*)|*.*||", 0, RunTextImport,
     DescribeTextFile},
    {5, "Binary XYZ", "Binary XYZ Files (*.*)|*.*||", 0, RunBinaryXyzImport, DescribeBinaryFile},
    {4, "Geosoft GBN", "Geosoft GBN files (*.gbn)|*.gbn*||", 0, RunGbnImport, DescribeGbnFile},
    {6, "Scintrex CG3", "Scintrex CG3 dump (*.dmp; *.raw)|*.dmp;*.raw||", 0, RunCG3Import, DescribeCG3File},
    {kGravityMeterFormat, "Scintrex CG5", "Scintrex CG5 dump (*.dmp; *.raw)|*.dmp;*.raw||", 0, RunTextImport,
     DescribeTextFile},
    {10, "Scintrex IPR_12", "Scintrex IPR dump (*.dmp; *.raw; *.IGS)|*.dmp;*.raw;*.IGS||", 0, RunIpr12Import,
     DescribeIpr12File},
    {7, "SeaSPY(Marine Magnetics)", "SeaSPY Files (*.mag)|*.mag|All Files (*.*)|*.*||", 0, RunSeaSpyImport,
     DescribeSeaSpyFile},
    {kTkiFormat, "Tarko", "TKI files (*.p*)|*.p*|All Files (*.*)|*.*||", 1, RunTkiImport, DescribeTkiFile},
    {11, "GPS Exchange Format(GPX)", "GPX file(*.gpx)|*.gpx||", 0, RunGpxImport, DescribeGpxFile},
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
