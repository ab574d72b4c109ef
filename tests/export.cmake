vl_test(tst_provisioningxml LINK vl::export)
set_property(TEST tst_provisioningxml APPEND PROPERTY
    ENVIRONMENT "TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/tsan.supp")
