vl_test(tst_widgets LINK vl::widgets)
vl_test(tst_userguide SCREEN LINK vl::widgets)
