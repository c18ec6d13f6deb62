#include "layers.h"

#include "norva/converters.h"

#include <cpl_string.h>

#include <algorithm>
#include <cmath>

namespace norva::gdal {

namespace {

constexpr int kLineField = 0;
constexpr int kFirstChannelField = 1;

/// Whether all values of a channel lie within limits, where it has any.
bool IsWithin(SurveyChannel const& channel, std::int64_t locations, double first, double last) {
    for (std::int64_t at = 0; at < locations; ++at) {
        double const value = channel.Number(at);
        if (value < first || value > last) return false;
    }
    return true;
}

}  // namespace

CSurveyLayer::CSurveyLayer(std::shared_ptr<Survey const> survey, char const* name, OGRwkbGeometryType geometry)
    : m_survey(std::move(survey)), m_definition(new OGRFeatureDefn(name)) {
    m_definition->Reference();
    bool const hasPositions = m_survey->positions.HasAny();
    m_definition->SetGeomType(hasPositions ? geometry : wkbNone);
    if (hasPositions) m_definition->GetGeomFieldDefn(0)->SetSpatialRef(m_survey->positions.Reference());
    SetDescription(name);
}

CSurveyLayer::~CSurveyLayer() {
    m_definition->Release();
}

int CSurveyLayer::TestCapability(char const* capability) {
    if (EQUAL(capability, OLCFastFeatureCount)) return IsUnfiltered() ? TRUE : FALSE;
    for (char const* const given : {OLCRandomRead, OLCFastGetExtent, OLCIgnoreFields, OLCStringsAsUTF8}) {
        if (EQUAL(capability, given)) return TRUE;
    }
    return FALSE;
}

OGRErr CSurveyLayer::GetExtent(OGREnvelope* extent, int /*force*/) {
    if (!m_survey->positions.HasAny()) return OGRERR_FAILURE;
    if (!m_isExtentKnown) {
        double x = 0;
        double y = 0;
        for (std::int64_t at = 0; at < m_survey->store.Locations(); ++at) {
            if (!m_survey->store.IsDeleted(at) && m_survey->positions.At(at, x, y)) m_extent.Merge(x, y);
        }
        m_isExtentKnown = true;
    }
    *extent = m_extent;
    return m_extent.IsInit() != 0 ? OGRERR_NONE : OGRERR_FAILURE;
}

void CSurveyLayer::AddField(std::string name, OGRFieldType type, OGRFieldSubType subtype, int width) {
    if (CPLIsUTF8(name.c_str(), static_cast<int>(name.size())) == 0) {
        char* const recoded = CPLRecode(name.c_str(), CPL_ENC_ISO8859_1, CPL_ENC_UTF8);
        name = recoded;
        CPLFree(recoded);
    }
    if (name.empty()) name = "channel_" + std::to_string(m_definition->GetFieldCount());
    std::string unique = name;
    for (int next = 2; m_definition->GetFieldIndex(unique.c_str()) >= 0; ++next) {
        unique = name + "_" + std::to_string(next);
    }
    OGRFieldDefn field(unique.c_str(), type);
    field.SetSubType(subtype);
    field.SetWidth(width);
    m_definition->AddFieldDefn(&field);
}

void CSurveyLayer::SetText(OGRFeature& feature, int field, std::string_view text) const {
    std::string const bytes(text);
    if (CPLIsUTF8(bytes.c_str(), static_cast<int>(bytes.size())) != 0) {
        feature.SetField(field, bytes.c_str());
        return;
    }
    char* const recoded = CPLRecode(bytes.c_str(), CPL_ENC_ISO8859_1, CPL_ENC_UTF8);
    feature.SetField(field, recoded);
    CPLFree(recoded);
}

CLocationsLayer::CLocationsLayer(std::shared_ptr<Survey const> survey)
    : CSurveyLayer(survey, "locations", survey->positions.HasZ() ? wkbPoint25D : wkbPoint) {
    AddField("line", OFTString);
    for (SurveyChannel const& channel : m_survey->store.Channels()) AddChannel(channel);
}

void CLocationsLayer::AddChannel(SurveyChannel const& channel) {
    constexpr double kLastYear = 9999;
    constexpr double kLastHour = 24;
    std::int64_t const locations = m_survey->store.Locations();
    Kind kind = channel.IsFloating() ? Kind::Real : Kind::Whole;
    if (channel.IsText()) {
        kind = Kind::Text;
    } else if (channel.isArray) {
        kind = channel.IsFloating() ? Kind::Reals : Kind::Wholes;
    } else if (channel.IsFloating() && channel.displayFormat == DisplayFormat::kDate &&
               IsWithin(channel, locations, 1, kLastYear)) {
        kind = Kind::Date;
    } else if (channel.IsFloating() && channel.displayFormat == DisplayFormat::kTime &&
               IsWithin(channel, locations, 0, std::nextafter(kLastHour, 0))) {
        // Times of GDAL are times of a day; others stay hours.
        kind = Kind::Time;
    }
    m_kinds.push_back(kind);

    OGRFieldSubType const real = channel.dataType == DataType::kFloat ? OFSTFloat32 : OFSTNone;
    OGRFieldSubType const whole = channel.dataType == DataType::kShort ? OFSTInt16 : OFSTNone;
    switch (kind) {
        case Kind::Whole:
            return AddField(channel.name, OFTInteger, whole);
        case Kind::Real:
            return AddField(channel.name, OFTReal, real);
        case Kind::Text:
            return AddField(channel.name, OFTString, OFSTNone, static_cast<int>(channel.elements));
        case Kind::Date:
            return AddField(channel.name, OFTDate);
        case Kind::Time:
            return AddField(channel.name, OFTTime);
        case Kind::Wholes:
            return AddField(channel.name, OFTIntegerList, whole);
        case Kind::Reals:
            return AddField(channel.name, OFTRealList, real);
    }
}

/// Spares making a feature that the spatial filter would leave out.
bool CLocationsLayer::IsOutside(std::int64_t location) const {
    if (m_poFilterGeom == nullptr || !m_survey->positions.HasAny()) return false;
    double x = 0;
    double y = 0;
    if (!m_survey->positions.At(location, x, y)) return true;
    return x < m_sFilterEnvelope.MinX || x > m_sFilterEnvelope.MaxX || y < m_sFilterEnvelope.MinY ||
           y > m_sFilterEnvelope.MaxY;
}

OGRFeature* CLocationsLayer::GetNextRawFeature() {
    while (m_next < m_survey->store.Locations()) {
        std::int64_t const location = m_next++;
        if (!m_survey->store.IsDeleted(location) && !IsOutside(location)) return FeatureOf(location);
    }
    return nullptr;
}

OGRFeature* CLocationsLayer::GetFeature(GIntBig number) {
    bool const isThere = number >= 1 && number <= m_survey->store.Locations();
    return isThere && !m_survey->store.IsDeleted(number - 1) ? FeatureOf(number - 1) : nullptr;
}

GIntBig CLocationsLayer::GetFeatureCount(int force) {
    return IsUnfiltered() ? m_survey->store.Kept() : OGRLayer::GetFeatureCount(force);
}

OGRFeature* CLocationsLayer::FeatureOf(std::int64_t location) {
    auto feature = std::make_unique<OGRFeature>(m_definition);
    feature->SetFID(location + 1);
    if (!IsIgnored(kLineField)) SetText(*feature, kLineField, m_survey->store.LineOf(location).name);
    for (std::size_t channel = 0; channel < m_kinds.size(); ++channel) {
        int const field = kFirstChannelField + static_cast<int>(channel);
        if (!IsIgnored(field)) SetValue(*feature, field, channel, location);
    }
    CPositions const& positions = m_survey->positions;
    double x = 0;
    double y = 0;
    if (positions.HasAny() && m_definition->IsGeometryIgnored() == 0 && positions.At(location, x, y)) {
        double const height = positions.HasZ() ? positions.Height(location) : 0;
        // Where the height is not known the point has none.
        auto point = positions.HasZ() && height == height ? std::make_unique<OGRPoint>(x, y, height)
                                                          : std::make_unique<OGRPoint>(x, y);
        point->assignSpatialReference(positions.Reference());
        feature->SetGeometryDirectly(point.release());
    }
    return feature.release();
}

void CLocationsLayer::SetValue(OGRFeature& feature, int field, std::size_t number, std::int64_t location) const {
    SurveyChannel const& channel = m_survey->store.Channels()[number];
    Kind const kind = m_kinds[number];
    if (kind == Kind::Text) {
        std::string_view text;
        if (channel.Text(location, text)) {
            SetText(feature, field, text);
        } else {
            feature.SetFieldNull(field);
        }
        return;
    }
    if (kind == Kind::Wholes || kind == Kind::Reals) {
        // A list has no place for null: an element without data is the no-data value of its type, as in the store.
        bool const isReal = kind == Kind::Reals;
        std::vector<double> elements(channel.elements);
        for (std::size_t at = 0; at < elements.size(); ++at) {
            elements[at] = channel.Number(location, at);
            if (elements[at] == elements[at]) continue;
            elements[at] = isReal ? kNoDataDouble : channel.dataType == DataType::kShort ? kNoDataShort : kNoDataLong;
        }
        feature.SetField(field, static_cast<int>(elements.size()), elements.data());
        return;
    }
    double const value = channel.Number(location);
    int year = 0;
    int month = 0;
    int day = 0;
    if (value != value) {
        feature.SetFieldNull(field);
    } else if (kind == Kind::Whole) {
        feature.SetField(field, static_cast<int>(value));
    } else if (kind == Kind::Real) {
        feature.SetField(field, value);
    } else if (kind == Kind::Time) {
        // Thousandths of a second are what GDAL keeps; rounding must not reach the next day.
        auto const thousandths = std::min<std::int64_t>(std::llround(value * 3.6e6), 86'399'999);
        feature.SetField(field, 0, 0, 0, static_cast<int>(thousandths / 3'600'000),
                         static_cast<int>(thousandths / 60'000 % 60),
                         static_cast<float>(static_cast<double>(thousandths % 60'000) / 1000), 0);
    } else if (CNorvaDateTime().GetDateParts(value, year, month, day) == 1) {
        feature.SetField(field, year, month, day);
    }
}

CLinesLayer::CLinesLayer(std::shared_ptr<Survey const> survey) : CSurveyLayer(survey, "lines", wkbLineString) {
    AddField("line", OFTString);
    AddField("locations", OFTInteger64);
    AddField("deleted", OFTInteger64);
    AddField("length", OFTReal);
    AddField("shown", OFTInteger, OFSTBoolean);
}

OGRFeature* CLinesLayer::GetNextRawFeature() {
    return GetFeature(++m_next);
}

OGRFeature* CLinesLayer::GetFeature(GIntBig number) {
    auto const& lines = m_survey->store.Lines();
    if (number < 1 || number > static_cast<GIntBig>(lines.size())) return nullptr;
    SurveyLine const& line = lines[static_cast<std::size_t>(number - 1)];
    auto feature = std::make_unique<OGRFeature>(m_definition);
    feature->SetFID(number);
    SetText(*feature, 0, line.name);
    feature->SetField(1, static_cast<GIntBig>(line.kept));
    feature->SetField(2, static_cast<GIntBig>(line.count - line.kept));
    feature->SetField(4, line.isShown ? 1 : 0);
    CPositions const& positions = m_survey->positions;
    if (!positions.HasAny()) return feature.release();

    auto string = std::make_unique<OGRLineString>();
    double length = 0;
    double x = 0;
    double y = 0;
    double fromX = 0;
    double fromY = 0;
    for (std::int64_t at = line.first; at < line.first + line.count; ++at) {
        if (m_survey->store.IsDeleted(at) || !positions.At(at, x, y)) continue;
        if (string->getNumPoints() > 0) length += positions.Step(fromX, fromY, x, y);
        string->addPoint(x, y);
        fromX = x;
        fromY = y;
    }
    feature->SetField(3, length);
    // A line string of one point is none.
    if (string->getNumPoints() > 1 && m_definition->IsGeometryIgnored() == 0) {
        string->assignSpatialReference(positions.Reference());
        feature->SetGeometryDirectly(string.release());
    }
    return feature.release();
}

GIntBig CLinesLayer::GetFeatureCount(int force) {
    return IsUnfiltered() ? static_cast<GIntBig>(m_survey->store.Lines().size()) : OGRLayer::GetFeatureCount(force);
}

}  // namespace norva::gdal
