#!/usr/bin/env python3
"""Makes qgis.png: docs/screenshots/make_qgis.py STORE OUT.png

Needs python3-qgis and the GDAL driver on GDAL_DRIVER_PATH.
"""

import os
import sys

os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")

from qgis.core import (  # noqa: E402
    QgsApplication,
    QgsClassificationQuantile,
    QgsCoordinateReferenceSystem,
    QgsGradientColorRamp,
    QgsGraduatedSymbolRenderer,
    QgsMapRendererParallelJob,
    QgsMapSettings,
    QgsMarkerSymbol,
    QgsStyle,
    QgsVectorLayer,
)
from qgis.PyQt.QtCore import QSize  # noqa: E402
from qgis.PyQt.QtGui import QColor  # noqa: E402

store, out = sys.argv[1:]
application = QgsApplication([], False)
application.initQgis()
lines = QgsVectorLayer(f"{store}|layername=lines", "lines", "ogr")
locations = QgsVectorLayer(f"{store}|layername=locations", "locations", "ogr")
lines.renderer().symbol().setColor(QColor("#8a94a0"))
renderer = QgsGraduatedSymbolRenderer("Mag")
renderer.setClassificationMethod(QgsClassificationQuantile())
renderer.setSourceSymbol(QgsMarkerSymbol.createSimple({"name": "circle", "size": "2.4", "outline_style": "no"}))
ramp = QgsStyle.defaultStyle().colorRamp("Turbo") or QgsGradientColorRamp(QColor("#2c4bd8"), QColor("#d8372c"))
renderer.updateColorRamp(ramp)
renderer.updateClasses(locations, 12)
renderer.updateColorRamp(ramp)
locations.setRenderer(renderer)

settings = QgsMapSettings()
settings.setLayers([locations, lines])
settings.setDestinationCrs(QgsCoordinateReferenceSystem("EPSG:32618"))
settings.setBackgroundColor(QColor("white"))
settings.setOutputSize(QSize(1000, 420))
settings.setOutputDpi(110)
extent = settings.fullExtent()
extent.scale(1.08)
settings.setExtent(extent)
job = QgsMapRendererParallelJob(settings)
job.start()
job.waitForFinished()
job.renderedImage().save(out)
application.exitQgis()
