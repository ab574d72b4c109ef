vl_test(tst_devicelist LINK vl::model)
