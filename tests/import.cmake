vl_test(tst_csvparser LINK vl::import SOURCES TestDevices.h)
vl_test(tst_csvimport LINK vl::storage SOURCES DataSide.h RawDatabase.h TestDevices.h User.h)
