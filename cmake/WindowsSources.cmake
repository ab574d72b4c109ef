# Compiles the sources for Windows on other systems too, so that a fault in them shows at once. The
# headers are those of this system's Qt, whose declarations depend on the compiler. Nothing is linked,
# so no Windows libraries are needed. Without the cross compiler, nothing is checked.
find_program(VL_WINDOWS_COMPILER x86_64-w64-mingw32-g++-posix)
if(NOT VL_WINDOWS_COMPILER)
    message(STATUS "No cross compiler: the sources for Windows are not checked")
    return()
endif()

set(includes $<TARGET_PROPERTY:Qt5::Widgets,INTERFACE_INCLUDE_DIRECTORIES>
    $<TARGET_PROPERTY:Qt5::Network,INTERFACE_INCLUDE_DIRECTORIES>)

file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/*/*_win.cpp)
set(stamps "")
foreach(source IN LISTS sources)
    string(REPLACE / _ name ${source})
    set(stamp ${CMAKE_BINARY_DIR}/windows_sources/${name}.checked)
    add_custom_command(OUTPUT ${stamp}
        COMMAND ${VL_WINDOWS_COMPILER} -std=c++17 -fsyntax-only
            $<TARGET_PROPERTY:vl_options,INTERFACE_COMPILE_OPTIONS>
            "-D$<JOIN:$<TARGET_PROPERTY:vl_options,INTERFACE_COMPILE_DEFINITIONS>,;-D>"
            -DWIN32_LEAN_AND_MEAN -DNOMINMAX
            -I${PROJECT_SOURCE_DIR} "-isystem;$<JOIN:${includes},;-isystem;>"
            -MD -MF ${stamp}.d -MT ${stamp} ${PROJECT_SOURCE_DIR}/${source}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS ${source}
        DEPFILE ${stamp}.d
        COMMENT "Checking ${source} with the compiler for Windows"
        COMMAND_EXPAND_LISTS VERBATIM)
    list(APPEND stamps ${stamp})
endforeach()
add_custom_target(windows_sources ALL DEPENDS ${stamps})
