vl_test(tst_sqlitedatabase LINK vl::storage SOURCES RawDatabase.h TestDevices.h)
vl_test(tst_datamgr LINK vl::storage SOURCES DataSide.h RawDatabase.h TestDevices.h User.h)
vl_test(tst_killsafety LINK vl::storage SOURCES DataSide.h RawDatabase.h TestDevices.h User.h)
