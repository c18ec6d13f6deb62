#pragma once

#include "norva/file_description.h"
#include "norva/file_util.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// What an importer is given by the routing.
struct ImportJob {
    CNorvaFileUtil* store = nullptr;
    std::string inputPath;
    std::string storePath;
    CWindow* owner = nullptr;
    int gravityMeterMode = 0;
};

/// What a describer is given; it leaves the file's label to the caller.
struct DescribeJob {
    std::string const& inputPath;
    DescriptionSettings const& settings;
};

/// One row of the import format table. The codes are fixed; a row without `run` has no importer yet.
struct ImportFormat {
    int code = 0;
    std::string_view label;
    std::string_view filter;  ///< of the "Import file" dialog
    int lowestLevel = 0;      ///< format list level from which it is offered
    int (*run)(ImportJob const& job) = nullptr;
    /// 1, or 0 with the reason as last error.
    int (*describe)(DescribeJob const& job, FileDescription& description) = nullptr;
};

inline constexpr int kTkiFormat = 2;
inline constexpr int kGravityMeterFormat = 9;

/// In the order of the format list.
std::span<ImportFormat const> ImportFormats();
ImportFormat const* FindImportFormat(int code);
/// What the format list offers at a level, in its order.
std::vector<ImportFormat const*> OfferedImportFormats(int level);

// The importers' entries, each defined beside its importer.
int RunTextImport(ImportJob const& job);
int RunSeaSpyImport(ImportJob const& job);
int RunGpxImport(ImportJob const& job);
int RunIpr12Import(ImportJob const& job);
int RunCG3Import(ImportJob const& job);
int RunBinaryXyzImport(ImportJob const& job);
int RunGbnImport(ImportJob const& job);
int RunTkiImport(ImportJob const& job);
int DescribeTextFile(DescribeJob const& job, FileDescription& description);
int DescribeSeaSpyFile(DescribeJob const& job, FileDescription& description);
int DescribeGpxFile(DescribeJob const& job, FileDescription& description);
int DescribeIpr12File(DescribeJob const& job, FileDescription& description);
int DescribeCG3File(DescribeJob const& job, FileDescription& description);
int DescribeBinaryFile(DescribeJob const& job, FileDescription& description);
int DescribeGbnFile(DescribeJob const& job, FileDescription& description);
int DescribeTkiFile(DescribeJob const& job, FileDescription& description);

}  // namespace norva
