# Builds for 64-bit Windows on another system, with the compiler's libraries linked statically. Qt and
# SQLite come from the folder that the environment variable VL_WINDOWS_LIBRARIES names;
# scripts/windows.sh makes this folder.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(target x86_64-w64-mingw32)
# The variant without POSIX threads has no std::mutex.
set(CMAKE_C_COMPILER ${target}-gcc-posix)
set(CMAKE_CXX_COMPILER ${target}-g++-posix)
set(CMAKE_RC_COMPILER ${target}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_EXE_LINKER_FLAGS_RELEASE_INIT "-s")

# Programs come from this system, everything else from the target.
set(CMAKE_FIND_ROOT_PATH /usr/${target} $ENV{VL_WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# SQLite is used where it was built; it is not installed.
set(SQLite3_INCLUDE_DIR $ENV{VL_WINDOWS_LIBRARIES}/sqlite CACHE PATH "")
set(SQLite3_LIBRARY $ENV{VL_WINDOWS_LIBRARIES}/sqlite/libsqlite3.a CACHE FILEPATH "")

# Tests run under Wine where it is installed.
find_program(wine wine)
if(wine)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${wine})
endif()
