"""A headless QGIS opens a store's layers and draws them."""

import os
import pathlib
import subprocess

import pytest

os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")
core = pytest.importorskip("qgis.core")

NORVA = os.environ["NORVA"]
SAMPLES = pathlib.Path(os.environ["NORVA_SAMPLES"])


@pytest.fixture(scope="module")
def application():
    made = core.QgsApplication([], False)
    made.initQgis()
    yield made
    made.exitQgis()


def test_layers_open_and_select(application, tmp_path):
    store = tmp_path / "survey.nvt"
    subprocess.run([NORVA, "import", SAMPLES / "survey.csv", "-o", store, "--header-line", "1", "--label-column",
                    "Line", "--quiet"], check=True)
    layers = {}
    for name in ("locations", "lines"):
        layers[name] = core.QgsVectorLayer(f"{store}|layername={name}", name, "ogr")
        assert layers[name].isValid(), name
        assert layers[name].crs().authid() == "EPSG:4326"
    assert layers["locations"].featureCount() == 296 and layers["lines"].featureCount() == 5
    request = core.QgsFeatureRequest().setFilterExpression("\"line\" = 'L1010' and \"Mag\" is not null")
    chosen = list(layers["locations"].getFeatures(request))
    assert 0 < len(chosen) <= 60 and all(feature["line"] == "L1010" for feature in chosen)
    assert not layers["locations"].isEditable() and not layers["locations"].startEditing()
    del layers
