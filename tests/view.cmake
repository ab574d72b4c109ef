vl_test(tst_contactmodel LINK vl::view)
vl_test(tst_contactview SCREEN LINK vl::view)

# Skipped where the readings are lacking or of another version.
add_test(NAME pinyin_table
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/make-pinyin.py --check)
set_tests_properties(pinyin_table PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 60)
