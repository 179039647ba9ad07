# What lies where: the folders of the libraries, and the headers in them that are not installed. The tests of the layout
# read it too, so it only sets variables.

set(AVELDORAN_FOLDERS
    core datamanager channel marker geo bootlogo limit calibration views display desktop)

# A header that says "Private to" stands in this list, every other one is public.
set(AVELDORAN_PRIVATE_HEADERS
    bootlogo/logobackground.h
    channel/achannelinfo_walk.h
    core/amdrdocument_p.h
    core/angles.h
    core/atomicfile.h
    core/boundeddom.h
    core/boundedxmlreader.h
    core/calibrationfile.h
    core/coretext.h
    core/crc32.h
    core/failure.h
    core/interpolation.h
    core/knownchips.h
    core/limitcurve.h
    core/mdrformat.h
    core/mdrlayout.h
    core/nmea.h
    core/nmearecords.h
    core/orientation.h
    core/peaksuppression.h
    core/recordeddevice.h
    core/regularfile.h
    core/xmldocument.h
    core/xmltagguard.h
    datamanager/adatamanager_p.h
    datamanager/filenames.h
    datamanager/oldcalibrationfile.h
    geo/elementmaker.h
    geo/kmlpath.h
    geo/waypoint.h
    datamanager/scanneddirectories.h
    marker/aspectrummarkerlist_p.h
    views/editorlook.h
    views/filtertable.h
)
