#include "formats/cg3/cg3_format.h"

#include "platform/text.h"

namespace norva {

namespace {

bool Sniff(FileStart const& start) {
    bool dashes = false;
    for (std::string const& line : start.lines) {
        if (Contains(line, "-------")) dashes = true;
        if (dashes && Contains(line, "LINE:") && Contains(line, "DATE:")) return true;
    }
    return false;
}

}  // namespace

ImportFormat const kCG3Format = {
    .code = ImportFormatCode::CG3,
    .label = "Scintrex CG3",
    .filter = "Scintrex CG3 dump (*.dmp; *.raw)|*.dmp;*.raw||",
    .settings = SettingsKind::Cg3,
    .sniff = Sniff,
    .signs = "it holds block headers with LINE: and DATE:",
    .import = ImportCG3File,
    .describe = DescribeCG3File,
    .propose = ProposeCg3Settings,
};

}  // namespace norva
