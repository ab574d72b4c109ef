vl_test(tst_contactmodel LINK vl::view)
vl_test(tst_contactview LINK vl::view)
