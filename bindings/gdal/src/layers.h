#pragma once

#include "positions.h"
#include "survey_store.h"

#include <ogrsf_frmts.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace norva::gdal {

/// What both layers show; they keep it together.
struct Survey {
    CSurveyStore store;
    CPositions positions;
};

/// What both layers have in common. Features are numbered from 1.
class CSurveyLayer : public OGRLayer {
public:
    CSurveyLayer(std::shared_ptr<Survey const> survey, char const* name, OGRwkbGeometryType geometry);
    CSurveyLayer(CSurveyLayer const&) = delete;
    CSurveyLayer& operator=(CSurveyLayer const&) = delete;
    ~CSurveyLayer() override;

    OGRFeatureDefn* GetLayerDefn() override { return m_definition; }
    void ResetReading() override { m_next = 0; }
    int TestCapability(char const* capability) override;
    using OGRLayer::GetExtent;
    OGRErr GetExtent(OGREnvelope* extent, int force) override;

protected:
    /// Adds a field under a name that no other has, without regard to case.
    void AddField(std::string name, OGRFieldType type, OGRFieldSubType subtype = OFSTNone, int width = 0);
    bool IsIgnored(int field) const { return m_definition->GetFieldDefn(field)->IsIgnored() != 0; }
    bool IsUnfiltered() const { return m_poFilterGeom == nullptr && m_poAttrQuery == nullptr; }
    void SetText(OGRFeature& feature, int field, std::string_view text) const;

    std::shared_ptr<Survey const> m_survey;
    OGRFeatureDefn* m_definition;  ///< counts its users
    std::int64_t m_next = 0;

private:
    OGREnvelope m_extent;
    bool m_isExtentKnown = false;
};

/// A point per location that is not deleted; its number is the location's place among all locations, from 1.
class CLocationsLayer final : public CSurveyLayer, public OGRGetNextFeatureThroughRaw<CLocationsLayer> {
    DEFINE_GET_NEXT_FEATURE_THROUGH_RAW(CLocationsLayer)

public:
    explicit CLocationsLayer(std::shared_ptr<Survey const> survey);

    OGRFeature* GetNextRawFeature();
    OGRFeature* GetFeature(GIntBig number) override;
    GIntBig GetFeatureCount(int force) override;

private:
    enum class Kind { Whole, Real, Text, Date, Time, Wholes, Reals };

    void AddChannel(SurveyChannel const& channel);
    bool IsOutside(std::int64_t location) const;
    OGRFeature* FeatureOf(std::int64_t location);
    void SetValue(OGRFeature& feature, int field, std::size_t channel, std::int64_t location) const;

    std::vector<Kind> m_kinds;  ///< of the channels
};

/// A line string per line of the survey, in the order of the store.
class CLinesLayer final : public CSurveyLayer, public OGRGetNextFeatureThroughRaw<CLinesLayer> {
    DEFINE_GET_NEXT_FEATURE_THROUGH_RAW(CLinesLayer)

public:
    explicit CLinesLayer(std::shared_ptr<Survey const> survey);

    OGRFeature* GetNextRawFeature();
    OGRFeature* GetFeature(GIntBig number) override;
    GIntBig GetFeatureCount(int force) override;
};

}  // namespace norva::gdal
