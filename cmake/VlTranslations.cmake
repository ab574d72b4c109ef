# The target `catalogues`: the translations that the program loads, in VL_CATALOGUE_DIR.
#
# Each language/*.ts makes a catalogue. Qt's own Chinese texts (dialog buttons, the file
# dialog) come from the installed Qt: its qt_zh_CN.qm only refers to catalogues of single Qt
# modules, and QTranslator loads it only when all of them are beside it.
set(VL_CATALOGUE_DIR ${CMAKE_BINARY_DIR}/catalogues)

# Catalogues are the same on every system, so a cross build uses the host's catalogues and tool.
find_program(VL_LRELEASE NAMES lrelease lrelease-qt5
    HINTS /usr/lib/qt5/bin ${Qt5_DIR}/../../../bin
    NO_CMAKE_FIND_ROOT_PATH REQUIRED)
find_file(VL_QT_CATALOGUE qt_zh_CN.qm
    HINTS ${Qt5_DIR}/../../../translations
          ${Qt5_DIR}/../../../share/qt5/translations
          ${Qt5_DIR}/../../../../share/qt5/translations
    PATHS /usr/share/qt5/translations
    NO_CMAKE_FIND_ROOT_PATH REQUIRED)

set(catalogues)
file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/language/*.ts)
foreach(source IN LISTS sources)
    get_filename_component(language ${source} NAME_WE)
    set(catalogue ${VL_CATALOGUE_DIR}/${language}.qm)
    add_custom_command(OUTPUT ${catalogue}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${VL_CATALOGUE_DIR}
        COMMAND ${VL_LRELEASE} -silent -nounfinished ${source} -qm ${catalogue}
        DEPENDS ${source}
        VERBATIM)
    list(APPEND catalogues ${catalogue})
endforeach()

# qt_zh_CN.qm refers to catalogues by their names in UTF-16, so each installed one is looked up by name.
get_filename_component(qtFolder ${VL_QT_CATALOGUE} DIRECTORY)
file(READ ${VL_QT_CATALOGUE} references HEX)
file(GLOB qtCatalogues ${qtFolder}/*_zh_CN.qm)
foreach(qtCatalogue IN LISTS qtCatalogues)
    get_filename_component(name ${qtCatalogue} NAME_WE)
    string(HEX ${name} nameBytes)
    string(REGEX REPLACE "(..)" "00\\1" nameBytes ${nameBytes})
    string(FIND ${references} ${nameBytes} place)
    if(qtCatalogue STREQUAL VL_QT_CATALOGUE OR NOT place EQUAL -1)
        set(catalogue ${VL_CATALOGUE_DIR}/${name}.qm)
        add_custom_command(OUTPUT ${catalogue}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${VL_CATALOGUE_DIR}
            COMMAND ${CMAKE_COMMAND} -E copy ${qtCatalogue} ${catalogue}
            DEPENDS ${qtCatalogue}
            VERBATIM)
        list(APPEND catalogues ${catalogue})
    endif()
endforeach()

add_custom_target(catalogues DEPENDS ${catalogues})
