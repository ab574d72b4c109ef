vl_test(tst_ipline LINK vl::dialogs)
vl_test(tst_contactdialog LINK vl::dialogs)
vl_test(tst_contactsdialog LINK vl::dialogs)
