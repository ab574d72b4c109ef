vl_test(tst_widgets LINK vl::widgets)
