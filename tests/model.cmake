vl_test(tst_devicelist LINK vl::model)
set_property(TEST tst_devicelist APPEND PROPERTY
    ENVIRONMENT "TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/tsan.supp")
