vl_test(tst_pathpages LINK vl::app)
