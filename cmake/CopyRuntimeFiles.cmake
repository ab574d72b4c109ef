# Copies the files that the program reads at run time to the folder of the built executable:
#   cmake -DSOURCE_DIR=<project> -DBIN_DIR=<folder of the executable>
#         -DCATALOGUE_DIR=<build folder>/catalogues -P CopyRuntimeFiles.cmake
#
# resource/ becomes an exact copy, without the drawings from which its pictures are made. language/
# is copied too, with the catalogues made from its sources. The two settings files in it belong to the
# user who runs the program there: they are copied once and never overwritten.
cmake_minimum_required(VERSION 3.25)

foreach(name SOURCE_DIR BIN_DIR CATALOGUE_DIR)
    if(NOT ${name})
        message(FATAL_ERROR "CopyRuntimeFiles: ${name} is not set")
    endif()
endforeach()

set(settings options.xml config.xml)

function(copy_if_different from to)
    get_filename_component(folder ${to} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    file(COPY_FILE ${from} ${to} ONLY_IF_DIFFERENT)
endfunction()

file(GLOB_RECURSE wanted RELATIVE ${SOURCE_DIR}/resource ${SOURCE_DIR}/resource/*)
list(FILTER wanted EXCLUDE REGEX "^src/")
foreach(file IN LISTS wanted)
    copy_if_different(${SOURCE_DIR}/resource/${file} ${BIN_DIR}/resource/${file})
endforeach()

# A picture that was removed or renamed must not stay beside the executable.
file(GLOB_RECURSE present RELATIVE ${BIN_DIR}/resource ${BIN_DIR}/resource/*)
if(wanted)
    list(REMOVE_ITEM present ${wanted})
endif()
foreach(file IN LISTS present)
    file(REMOVE ${BIN_DIR}/resource/${file})
endforeach()

# Translation sources are compiled, not shipped.
file(GLOB languageFiles RELATIVE ${SOURCE_DIR}/language ${SOURCE_DIR}/language/*)
list(FILTER languageFiles EXCLUDE REGEX "\\.ts$")
foreach(file IN LISTS languageFiles)
    if(NOT (file IN_LIST settings AND EXISTS ${BIN_DIR}/language/${file}))
        copy_if_different(${SOURCE_DIR}/language/${file} ${BIN_DIR}/language/${file})
    endif()
endforeach()

file(GLOB catalogues RELATIVE ${CATALOGUE_DIR} ${CATALOGUE_DIR}/*.qm)
if(NOT catalogues)
    message(FATAL_ERROR "CopyRuntimeFiles: no translations in ${CATALOGUE_DIR}")
endif()
foreach(file IN LISTS catalogues)
    copy_if_different(${CATALOGUE_DIR}/${file} ${BIN_DIR}/language/${file})
endforeach()
