#include "entry/library_templates.h"

#include "entry/import_format_template.h"
#include "exchange/export_selection_template.h"
#include "exchange/progress_template.h"
#include "formats/cg3/cg3_import_template.h"
#include "formats/column_text/delimiters_template.h"
#include "formats/column_text/set_channels_template.h"
#include "formats/gbn/gbn_import_template.h"
#include "formats/records/binary_import_template.h"

namespace norva {

namespace {

constexpr TemplateEntry kLibraryTemplates[] = {
    {4000, templates::Export4000},    {4003, templates::SetChannels4003},   {4004, templates::BinaryImport4004},
    {4053, templates::Progress4053},  {4059, templates::GbnImport4059},     {4060, templates::Delimiters4060},
    {4062, templates::CG3Import4062}, {4063, templates::ImportFormats4063},
};

/// Makes the library's templates known when it is loaded, and no longer once it is unloaded.
CTemplateModule const g_libraryModule{kLibraryTemplates};

}  // namespace

std::span<TemplateEntry const> LibraryTemplates() {
    return kLibraryTemplates;
}

}  // namespace norva
