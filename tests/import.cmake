vl_test(tst_csvparser LINK vl::import)
vl_test(tst_csvimport LINK vl::storage SOURCES DataSide.h RawDatabase.h TestDevices.h)

set_property(TEST tst_csvparser tst_csvimport APPEND PROPERTY
    ENVIRONMENT
        "TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/tsan.supp"
        "LSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/lsan.supp:print_suppressions=0")
