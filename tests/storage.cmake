vl_test(tst_sqlitedatabase LINK vl::storage SOURCES RawDatabase.h TestDevices.h)
vl_test(tst_datamgr LINK vl::storage SOURCES DataSide.h RawDatabase.h TestDevices.h)

add_executable(killed_saver killed_saver.cpp TestDevices.h)
target_link_libraries(killed_saver PRIVATE vl::storage vl_options)
vl_test(tst_killsafety LINK vl::storage SOURCES RawDatabase.h TestDevices.h)
target_compile_definitions(tst_killsafety PRIVATE VL_KILLED_SAVER="$<TARGET_FILE:killed_saver>")
add_dependencies(tst_killsafety killed_saver)
