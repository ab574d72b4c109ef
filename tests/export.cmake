vl_test(tst_provisioningxml LINK vl::export)
