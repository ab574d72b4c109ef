vl_test(tst_pnprequest LINK vl::net SOURCES PnPSubscribe.h)
