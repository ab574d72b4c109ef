vl_test(tst_csvparser LINK vl::import)
