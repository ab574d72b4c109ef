vl_test(tst_ipline LINK vl::dialogs)
vl_test(tst_contactdialog SCREEN LINK vl::dialogs SOURCES FormFixture.h)
vl_test(tst_contactsdialog SCREEN LINK vl::dialogs SOURCES FormFixture.h)
