"""The GDAL driver, through GDAL's own programs and its Python module."""

import datetime
import json
import math
import os
import pathlib
import subprocess

import pytest

gdal = pytest.importorskip("osgeo.gdal")
ogr = pytest.importorskip("osgeo.ogr")
gdal.UseExceptions()

NORVA = os.environ["NORVA"]
SAMPLES = pathlib.Path(os.environ["NORVA_SAMPLES"])
DELETED = {2, 3, 59, 295}  # of all locations, from 0


def run(*command):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True).stdout


def rows_of(store):
    """Every location as (line name, values), None for no-data."""
    names = [line["name"] for line in json.loads(run(NORVA, "info", store, "--json"))["lines"]]
    for text in run(NORVA, "show", store, "--json").splitlines():
        row = json.loads(text)
        yield names[row["line"]], row["deleted"], row["values"]


@pytest.fixture(scope="module")
def store(tmp_path_factory):
    path = tmp_path_factory.mktemp("gdal") / "survey.nvt"
    run(NORVA, "import", SAMPLES / "survey.csv", "-o", path, "--header-line", "1", "--label-column", "Line")
    run(NORVA, "mark", path, "--line", "L1000", "--rows", "2,3,59", "--delete")
    run(NORVA, "mark", path, "--line", "L1040", "--rows", "59", "--delete")
    return path


def open_store(path, *options, **more):
    return gdal.OpenEx(str(path), gdal.OF_VECTOR, open_options=list(options), **more)


def layer_of(name, path, *options):
    data = open_store(path, *options)
    layer = data.GetLayerByName(name)
    layer.data = data  # GDAL's module lets go of a layer's dataset otherwise
    return layer


def value_of(feature, field, title):
    if feature.IsFieldNull(field):
        return None
    kind = feature.GetFieldDefnRef(field).GetType()
    if kind == ogr.OFTDate:
        year, month, day = feature.GetFieldAsDateTime(field)[:3]
        return year + datetime.date(year, month, day).timetuple().tm_yday / (366 if year % 4 == 0 else 365)
    if kind == ogr.OFTTime:
        hour, minute, second = feature.GetFieldAsDateTime(field)[3:6]
        return hour + minute / 60 + second / 3600
    return feature.GetField(field)


def assert_same(layer, store):
    rows = [row for at, row in enumerate(rows_of(store)) if at not in DELETED]
    features = list(layer)
    assert len(features) == len(rows) == 296 - len(DELETED)
    titles = [layer.GetLayerDefn().GetFieldDefn(at).GetName() for at in range(layer.GetLayerDefn().GetFieldCount())]
    assert titles == ["line", "Line_2", "X", "Y", "Lat", "Lon", "Date", "Time", "Mag", "Alt", "Quality", "Remark"]
    for feature, (line, _, values) in zip(features, rows):
        assert feature.GetField(0) == line
        for field, expected in enumerate(values, 1):
            found = value_of(feature, field, titles[field])
            if isinstance(expected, float) and titles[field] != "Remark":
                # Texts of single floats are shorter than what they are as doubles; times go to thousandths of a second.
                accuracy = 1 / 3.6e6 if titles[field] == "Time" else abs(expected) * 1e-6 + 1e-12
                assert math.isclose(found, expected, rel_tol=0, abs_tol=accuracy), (feature.GetFID(), titles[field])
            else:
                assert found == expected, (feature.GetFID(), titles[field])
        point = feature.GetGeometryRef()
        lat, lon = values[3], values[4]
        assert (point is None) == (lat is None or lon is None)
        if point is not None:
            assert (point.GetX(), point.GetY()) == pytest.approx((lon, lat), abs=1e-12)


def test_locations_have_every_value(store):
    data = open_store(store)
    assert data.GetDriver().ShortName == "NORVA" and data.GetLayerCount() == 2
    layer = data.GetLayerByName("locations")
    assert layer.GetSpatialRef().GetAuthorityCode(None) == "4326"
    kinds = [layer.GetLayerDefn().GetFieldDefn(at).GetTypeName() for at in range(12)]
    assert kinds == ["String", "String"] + 4 * ["Real"] + ["Date", "Time", "Real", "Real", "Integer", "String"]
    assert_same(layer, store)


def test_geopackage_has_the_same(store, tmp_path):
    package = tmp_path / "survey.gpkg"
    run("ogr2ogr", "-preserve_fid", "-f", "GPKG", package, store)
    data = open_store(package)
    assert {data.GetLayer(at).GetName() for at in range(2)} == {"locations", "lines"}
    layer = data.GetLayerByName("locations")
    direct = layer_of("locations", store)
    for copied, original in zip(layer, direct):
        assert copied.GetFID() == original.GetFID()
        assert copied.GetGeometryRef().Equals(original.GetGeometryRef())
        for field in range(original.GetFieldCount()):
            assert copied.GetFieldAsString(field) == original.GetFieldAsString(field)
    assert layer.GetFeatureCount() == direct.GetFeatureCount()


def test_counts_extent_and_numbers_fit(store):
    layer = layer_of("locations", store)
    for ability in (ogr.OLCFastFeatureCount, ogr.OLCFastGetExtent, ogr.OLCRandomRead, ogr.OLCIgnoreFields):
        assert layer.TestCapability(ability)
    assert not layer.TestCapability(ogr.OLCSequentialWrite)
    features = list(layer)
    assert layer.GetFeatureCount() == len(features)
    points = [feature.GetGeometryRef() for feature in features]
    xs, ys = [point.GetX() for point in points], [point.GetY() for point in points]
    assert layer.GetExtent() == (min(xs), max(xs), min(ys), max(ys))
    for feature in features[::17]:
        assert layer.GetFeature(feature.GetFID()).Equal(feature)
    for number in (3, 0, -1, 297, 2**62):  # the first is deleted
        assert layer.GetFeature(number) is None


def test_filters(store):
    layer = layer_of("locations", store)
    layer.SetAttributeFilter("line = 'L1010' AND Quality >= 95")
    named = [feature for feature in layer]
    assert named and all(feature.GetField("line") == "L1010" and feature.GetField("Quality") >= 95 for feature in named)
    assert layer.GetFeatureCount() == len(named) and not layer.TestCapability(ogr.OLCFastFeatureCount)
    layer.SetAttributeFilter(None)
    west, east, south, north = layer.GetExtent()
    layer.SetSpatialFilterRect(west, south, (west + east) / 2, north)
    inside = {feature.GetFID() for feature in layer}
    layer.SetSpatialFilter(None)
    expected = {feature.GetFID() for feature in layer if feature.GetGeometryRef().GetX() <= (west + east) / 2}
    assert inside == expected and 0 < len(inside) < 292
    layer.SetIgnoredFields(["Mag", "OGR_GEOMETRY"])
    layer.ResetReading()
    feature = layer.GetNextFeature()
    assert feature.GetGeometryRef() is None and not feature.IsFieldSet("Mag") and feature.IsFieldSet("Alt")


def test_lines(store):
    layer = layer_of("lines", store)
    lines = list(layer)
    assert [(line.GetField("line"), line.GetField("locations"), line.GetField("deleted")) for line in lines] == [
        ("L1000", 57, 3), ("L1010", 60, 0), ("L1020", 56, 0), ("L1030", 60, 0), ("L1040", 59, 1)]
    assert [line.GetGeometryRef().GetPointCount() for line in lines] == [57, 60, 56, 60, 59]
    planar = layer_of("lines", store, "X=X", "Y=y", "CRS=EPSG:32618")
    assert planar.GetSpatialRef().GetAuthorityCode(None) == "32618"
    for geographic, projected in zip(lines, planar):
        assert projected.GetField("length") == pytest.approx(projected.GetGeometryRef().Length())
        # The sample's coordinates are rounded to thousandths of a second.
        assert geographic.GetField("length") == pytest.approx(projected.GetField("length"), rel=0.02)
    assert layer.GetFeature(2).GetField("line") == "L1010" and layer.GetFeatureCount() == 5


def test_positions_by_option(store):
    layer = layer_of("locations", store, "X=X", "Y=Y", "Z=Alt")
    assert layer.GetSpatialRef() is None and layer.GetGeomType() == ogr.wkbPoint25D
    feature = layer.GetNextFeature()
    point = feature.GetGeometryRef()
    assert (point.GetX(), point.GetY(), point.GetZ()) == tuple(feature.GetField(name) for name in ("X", "Y", "Alt"))
    for options, reason in [(["X=X"], "go together"), (["X=None", "Y=Y"], 'called "None"'),
                            (["X=Remark", "Y=Y"], "channel of numbers"), (["CRS=EPSG:0"], "no reference system")]:
        with pytest.raises(RuntimeError, match=reason):
            open_store(store, *options)
    with pytest.raises(RuntimeError, match="only read"):
        gdal.OpenEx(str(store), gdal.OF_VECTOR | gdal.OF_UPDATE, allowed_drivers=["NORVA"])


def test_damaged_stores_are_errors(store, tmp_path):
    good = store.read_bytes()
    path = tmp_path / "damaged.nvt"
    refused = 0
    for size in list(range(0, len(good), 997)) + [-step for step in range(1, len(good), 1499)]:
        at = -size
        path.write_bytes(good[:size] if size >= 0 else good[:at] + bytes([good[at] ^ 0x81]) + good[at + 1:])
        try:
            data = open_store(path)
            for layer in map(data.GetLayer, range(data.GetLayerCount())):
                layer.GetExtent()
                for _ in layer:
                    pass
        except RuntimeError as error:
            assert str(error)
            refused += 1
    assert refused > 5
    for prefix in ("NORVA:", ""):
        with pytest.raises(RuntimeError):
            open_store(f"{prefix}{tmp_path / 'missing.nvt'}")


def test_prefix_opens_what_norva_imports(store, tmp_path):
    layer = layer_of("locations", f"NORVA:{store}")
    assert_same(layer, store)
    flown = layer_of("locations", f"NORVA:{SAMPLES / 'airborne.p01'}", "X=x", "Y=y", "CRS=EPSG:32618")
    assert flown.GetFeatureCount() == 182 == sum(feature.GetGeometryRef() is not None for feature in flown)
    (tmp_path / "empty.xyz").write_bytes(b"")
    with pytest.raises(RuntimeError):
        open_store(f"NORVA:{tmp_path / 'empty.xyz'}")


@pytest.mark.parametrize("seed", sorted((SAMPLES.parent / "fuzz/corpus/store").iterdir()), ids=lambda seed: seed.name)
def test_any_store_opens_or_is_refused(seed):
    try:
        data = open_store(seed)
    except RuntimeError:
        return
    for layer in map(data.GetLayer, range(data.GetLayerCount())):
        assert sum(1 for _ in layer) == layer.GetFeatureCount()


def test_ogrinfo_knows_the_driver(store):
    assert "NORVA -vector- (ro): Norva survey store" in run("ogrinfo", "--formats")
    told = run("ogrinfo", "-so", store, "locations")
    assert "Feature Count: 292" in told and "Mag: Real (" in told and "Alt: Real(Float32)" in told
