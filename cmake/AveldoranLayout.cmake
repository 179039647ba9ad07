# What lies where: the folders of both libraries and of libaveldorandata alone, and the headers in them that are not
# installed. The tests of the layout read it too, so it makes nothing.

set(AVELDORAN_DATA_FOLDERS
    datamanager channel marker geo bootlogo limit calibration views display desktop)
set(AVELDORAN_FOLDERS
    core ${AVELDORAN_DATA_FOLDERS})

# A header that says "Private to" stands in this list, every other one is public.
set(AVELDORAN_PRIVATE_HEADERS
    bootlogo/logobackground.h
    channel/achannelinfo_walk.h
    channel/channeldefinition.h
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
    datamanager/scanneddirectories.h
    geo/balloon.h
    geo/elementmaker.h
    geo/fixednumber.h
    geo/isotext.h
    geo/kmlpath.h
    geo/waypoint.h
    marker/aspectrummarkerlist_p.h
    views/editorlook.h
    views/filtertable.h
)

# The headers of a folder that are installed, as seen from the root.
function(aveldoran_public_headers folder result)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    list(REMOVE_ITEM headers ${AVELDORAN_PRIVATE_HEADERS})
    set(${result} ${headers} PARENT_SCOPE)
endfunction()
