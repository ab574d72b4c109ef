vl_test(tst_widgets LINK vl::widgets)
vl_test(tst_userguide LINK vl::widgets)
