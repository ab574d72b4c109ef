# The options of every target of this project. Qt's headers are system headers, without warnings.
find_package(Threads REQUIRED)

add_library(vl_options INTERFACE)
target_compile_options(vl_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor
    -Werror
    # qCDebug() is such a macro. GCC does not warn of macros in Qt's headers.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
    -fstack-protector-strong)
if(NOT VL_SANITIZE)
    # The sanitizers have their own checks for what _FORTIFY_SOURCE covers.
    target_compile_options(vl_options INTERFACE
        $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()
if(WIN32)
    # Keeps Windows' headers from declaring what is rarely used or takes common names ("min").
    target_compile_definitions(vl_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX)
endif()
if(MINGW)
    # MinGW has the stack protector in a library of its own.
    target_link_options(vl_options INTERFACE -fstack-protector-strong)
endif()
target_compile_definitions(vl_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DEPRECATED_WARNINGS
    # Keeps file and line in the log of release builds too.
    QT_MESSAGELOGCONTEXT)
if(VL_SANITIZE)
    target_compile_options(vl_options INTERFACE -fsanitize=${VL_SANITIZE} -fno-omit-frame-pointer -g)
    target_link_options(vl_options INTERFACE -fsanitize=${VL_SANITIZE})
    # Adds Qt's own assertions, which release builds leave out.
    target_compile_definitions(vl_options INTERFACE QT_FORCE_ASSERTS)
endif()
if(VL_FUZZ)
    # A fuzzer notices only what ends the process.
    target_compile_options(vl_options INTERFACE
        -fsanitize=fuzzer-no-link -fno-sanitize-recover=undefined)
endif()

# vl_plugins(<executable>): links the plugins of a static Qt that the program uses, and the
# platform plugin that the tests use.
function(vl_plugins name)
    get_target_property(type Qt5::Core TYPE)
    if(type STREQUAL STATIC_LIBRARY)
        qt5_import_plugins(${name}
            INCLUDE Qt5::QOffscreenIntegrationPlugin
            INCLUDE_BY_TYPE sqldrivers Qt5::QSQLiteDriverPlugin
            INCLUDE_BY_TYPE imageformats Qt5::QGifPlugin Qt5::QICOPlugin Qt5::QJpegPlugin
            EXCLUDE_BY_TYPE bearer generic printsupport)
    endif()
endfunction()

# vl_library(<folder> SOURCES ... LINK ...): adds the library of one folder. LINK names the Qt modules
# and the libraries of folders that it needs; an include from any other folder fails the build.
function(vl_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    set(sees ${name})
    foreach(below IN LISTS ARG_LINK)
        if(below MATCHES "^vl::(.+)$")
            get_property(seen_there GLOBAL PROPERTY VL_SEEN_BY_${CMAKE_MATCH_1})
            list(APPEND sees ${seen_there})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES sees)
    set_property(GLOBAL PROPERTY VL_SEEN_BY_${name} ${sees})
    list(JOIN sees "," sees)
    # Also those of the other system.
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
    set(checked ${CMAKE_CURRENT_BINARY_DIR}/includes.checked)
    add_custom_command(OUTPUT ${checked}
        COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${PROJECT_SOURCE_DIR} -DFOLDER=${name} -DSEES=${sees}
            -DSTAMP=${checked} -P ${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake
        DEPENDS ${sources} ${PROJECT_SOURCE_DIR}/cmake/CheckIncludes.cmake
        COMMENT "Checking which folders ${name} includes"
        VERBATIM)

    add_library(vl_${name} STATIC ${ARG_SOURCES} ${checked})
    add_library(vl::${name} ALIAS vl_${name})
    target_include_directories(vl_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(vl_${name} PUBLIC ${ARG_LINK} PRIVATE vl_options)
endfunction()
