vl_test(tst_csvparser LINK vl::import)
vl_test(tst_csvimport LINK vl::storage SOURCES DataSide.h RawDatabase.h TestDevices.h)
