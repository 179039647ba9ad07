# Compiles translations/*.ts into the core library, as resources below :/aveldoran/translations.

include(AveldoranLayout)

find_program(LUPDATE NAMES lupdate REQUIRED HINTS /usr/lib/qt5/bin)
find_program(LRELEASE NAMES lrelease REQUIRED HINTS /usr/lib/qt5/bin)
mark_as_advanced(LUPDATE LRELEASE)

set(directory ${PROJECT_BINARY_DIR}/translations)
file(MAKE_DIRECTORY ${directory})
set(entries "")
set(compiled "")
set(AVELDORAN_LANGUAGES de)
foreach(language IN LISTS AVELDORAN_LANGUAGES)
    set(source ${PROJECT_SOURCE_DIR}/translations/aveldoran_${language}.ts)
    set(result ${directory}/aveldoran_${language}.qm)
    add_custom_command(OUTPUT ${result} COMMAND ${LRELEASE} -silent ${source} -qm ${result} DEPENDS ${source})
    list(APPEND compiled ${result})
    string(APPEND entries "        <file>aveldoran_${language}.qm</file>\n")
endforeach()
file(CONFIGURE OUTPUT ${directory}/translations.qrc CONTENT
"<RCC>
    <qresource prefix=\"/aveldoran/translations\">
${entries}    </qresource>
</RCC>
")
set(resources ${directory}/qrc_translations.cpp)
add_custom_command(OUTPUT ${resources}
    COMMAND Qt5::rcc --name aveldoran_translations --output ${resources} ${directory}/translations.qrc
    DEPENDS ${compiled} ${directory}/translations.qrc)
set_source_files_properties(${resources} PROPERTIES SKIP_AUTOGEN ON)
target_sources(aveldoran PRIVATE ${resources})

list(TRANSFORM AVELDORAN_LANGUAGES REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/translations/aveldoran_\\1.ts" OUTPUT_VARIABLE sources)
set(AVELDORAN_LUPDATE ${LUPDATE} -silent -no-obsolete -locations none -source-language en ${AVELDORAN_FOLDERS} examples/gallery -ts)
set(AVELDORAN_LUPDATE ${AVELDORAN_LUPDATE} PARENT_SCOPE) # for the test that all texts are translated
add_custom_target(update_translations COMMAND ${AVELDORAN_LUPDATE} ${sources} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
