#include "layers.h"

#include "norva/exchange.h"

#include <cpl_conv.h>
#include <gdal_priv.h>

#include <cstring>
#include <exception>
#include <filesystem>
#include <new>

#include <unistd.h>

namespace norva::gdal {

namespace {

constexpr char const* kPrefix = "NORVA:";
constexpr char const* kFirstLine = "PROFILES START\n";

class CSurveyDataset final : public GDALDataset {
public:
    explicit CSurveyDataset(std::shared_ptr<Survey const> const& survey) {
        m_layers.push_back(std::make_unique<CLocationsLayer>(survey));
        m_layers.push_back(std::make_unique<CLinesLayer>(survey));
    }

    int GetLayerCount() override { return static_cast<int>(m_layers.size()); }
    OGRLayer* GetLayer(int number) override {
        bool const isThere = number >= 0 && number < GetLayerCount();
        return isThere ? m_layers[static_cast<std::size_t>(number)].get() : nullptr;
    }
    int TestCapability(char const* /*capability*/) override { return FALSE; }

private:
    std::vector<std::unique_ptr<OGRLayer>> m_layers;
};

bool HasPrefix(char const* name) {
    return STARTS_WITH_CI(name, kPrefix);
}

int Identify(GDALOpenInfo* info) {
    if (HasPrefix(info->pszFilename)) return TRUE;
    std::size_t const length = std::strlen(kFirstLine);
    bool const isStore = static_cast<std::size_t>(info->nHeaderBytes) >= length &&
                         std::memcmp(info->pabyHeader, kFirstLine, length) == 0;
    return isStore ? TRUE : FALSE;
}

std::string OptionOf(GDALOpenInfo const& info, char const* name) {
    return CSLFetchNameValueDef(info.papszOpenOptions, name, "");
}

/// A folder of its own for a store that nobody keeps.
class CScratchStore {
public:
    CScratchStore() {
        std::string name = CPLGenerateTempFilename("norva_XXXXXX");
        if (std::size_t const at = name.find("XXXXXX"); at != std::string::npos) name.resize(at);
        name += "XXXXXX";
        if (mkdtemp(name.data()) != nullptr) m_folder = name;
    }
    CScratchStore(CScratchStore const&) = delete;
    CScratchStore& operator=(CScratchStore const&) = delete;
    ~CScratchStore() {
        std::error_code ignored;
        if (!m_folder.empty()) std::filesystem::remove_all(m_folder, ignored);
    }
    /// Empty when there is no place for one.
    std::string Path() const { return m_folder.empty() ? std::string() : m_folder + "/imported.nvt"; }

private:
    std::string m_folder;
};

/// Opens a store, or imports a file of another format into one that lasts as long as it is open.
bool OpenOrImport(std::string const& path, CSurveyStore& store, std::string& reason) {
    std::string const head(kFirstLine);
    std::string first(head.size(), '\0');
    if (VSILFILE* const file = VSIFOpenL(path.c_str(), "rb")) {
        first.resize(VSIFReadL(first.data(), 1, first.size(), file));
        VSIFCloseL(file);
    }
    if (first == head) return store.Open(path, reason);
    CScratchStore const scratch;
    ImportRequest request;
    request.inputPath = path;
    request.storePath = scratch.Path();
    ImportResult result;
    Status status = ProposeSettings(path, {}, request.settings);
    if (status) status = ImportFile(request, result);
    if (!status) {
        reason = status.IsCancelled()
                     ? "Couldn't import the file : " + path + "\nits format needs choices; import it with norva first"
                     : status.Text();
        return false;
    }
    return store.Open(request.storePath, reason);
}

GDALDataset* OpenSurvey(GDALOpenInfo* info) {
    if (info->eAccess == GA_Update) {
        CPLError(CE_Failure, CPLE_NotSupported, "Stores are only read: %s", info->pszFilename);
        return nullptr;
    }
    bool const hasPrefix = HasPrefix(info->pszFilename);
    std::string const path = info->pszFilename + (hasPrefix ? std::strlen(kPrefix) : 0);
    auto survey = std::make_shared<Survey>();
    std::string reason;
    bool const isOpen = hasPrefix ? OpenOrImport(path, survey->store, reason) : survey->store.Open(path, reason);
    if (!isOpen) {
        CPLError(CE_Failure, CPLE_OpenFailed, "%s", reason.c_str());
        return nullptr;
    }
    PositionOptions const options = {OptionOf(*info, "X"), OptionOf(*info, "Y"), OptionOf(*info, "Z"),
                                     OptionOf(*info, "CRS")};
    if (!survey->positions.Choose(survey->store, options, reason)) {
        CPLError(CE_Failure, CPLE_OpenFailed, "%s: %s", path.c_str(), reason.c_str());
        return nullptr;
    }
    auto dataset = std::make_unique<CSurveyDataset>(std::move(survey));
    dataset->SetDescription(info->pszFilename);
    return dataset.release();
}

GDALDataset* Open(GDALOpenInfo* info) {
    if (Identify(info) == FALSE) return nullptr;
    try {
        return OpenSurvey(info);
    } catch (std::bad_alloc const&) {
        CPLError(CE_Failure, CPLE_OutOfMemory, "%s: not enough memory", info->pszFilename);
    } catch (std::exception const& failure) {
        CPLError(CE_Failure, CPLE_AppDefined, "%s: %s", info->pszFilename, failure.what());
    }
    return nullptr;
}

}  // namespace

}  // namespace norva::gdal

/// What GDAL looks for in a plugin of this name.
extern "C" __attribute__((visibility("default"))) void GDALRegister_NORVA() {
    if (GDALGetDriverByName("NORVA") != nullptr) return;
    auto driver = std::make_unique<GDALDriver>();
    driver->SetDescription("NORVA");
    driver->SetMetadataItem(GDAL_DCAP_VECTOR, "YES");
    driver->SetMetadataItem(GDAL_DMD_LONGNAME, "Norva survey store");
    driver->SetMetadataItem(GDAL_DMD_EXTENSIONS, "nvt");
    driver->SetMetadataItem(GDAL_DMD_CONNECTION_PREFIX, norva::gdal::kPrefix);
    driver->SetMetadataItem(
        GDAL_DMD_OPENOPTIONLIST,
        "<OpenOptionList>"
        "<Option name='X' type='string' description='Channel with the easting or longitude'/>"
        "<Option name='Y' type='string' description='Channel with the northing or latitude'/>"
        "<Option name='Z' type='string' description='Channel with the height of points'/>"
        "<Option name='CRS' type='string' description='Reference system of the positions, as EPSG:32618'/>"
        "</OpenOptionList>");
    driver->pfnIdentify = norva::gdal::Identify;
    driver->pfnOpen = norva::gdal::Open;
    GetGDALDriverManager()->RegisterDriver(driver.release());
}
