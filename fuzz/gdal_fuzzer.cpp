#include "harness.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

using namespace norva;

extern "C" void GDALRegister_NORVA();

namespace {

void ReadLayer(OGRLayer& layer) {
    GIntBig const count = layer.GetFeatureCount();
    GIntBig read = 0;
    for (auto const& feature : layer) {
        ++read;
        std::unique_ptr<OGRFeature> const again(layer.GetFeature(feature->GetFID()));
        if (again == nullptr || again->Equal(feature.get()) == FALSE) fuzz::Broken("a feature is read by its number");
    }
    if (read != count) fuzz::Broken("the count is that of the features");
    OGREnvelope extent;
    if (layer.GetExtent(&extent, TRUE) != OGRERR_NONE) return;
    layer.SetSpatialFilterRect(extent.MinX, extent.MinY, extent.MaxX, extent.MaxY);
    GIntBig inside = 0;
    for (auto const& feature : layer) inside += feature->GetGeometryRef() != nullptr ? 1 : 0;
    if (inside > count) fuzz::Broken("a filter adds nothing");
    layer.SetSpatialFilter(nullptr);
    layer.SetAttributeFilter("line = 'L1'");
    if (layer.GetFeatureCount() > count) fuzz::Broken("a filter adds nothing");
}

}  // namespace

/// Opens any bytes as a store through GDAL and reads both layers.
NORVA_FUZZ_TARGET(gdal) {
    static bool const isRegistered = [] {
        CPLSetErrorHandler(CPLQuietErrorHandler);
        GDALRegister_NORVA();
        return true;
    }();
    std::string const path = fuzz::Folder() / "in.nvt";
    test::WriteWholeFile(path, bytes);
    CPLErrorReset();
    GDALDatasetUniquePtr const data(isRegistered ? GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR) : nullptr);
    if (data != nullptr) {
        for (OGRLayer* const layer : data->GetLayers()) ReadLayer(*layer);
    } else if (bytes.starts_with("PROFILES START\n") && CPLGetLastErrorMsg()[0] == '\0') {
        fuzz::Broken("a refusal says why");
    }
    fuzz::CleanUp({"in.nvt"});
}
