vl_test(tst_httprequest LINK vl::net)
vl_test(tst_httpdserver LINK vl::net SOURCES HttpPhone.h TestDevices.h)
vl_test(tst_httpdservice LINK vl::net SOURCES HttpPhone.h)
vl_test(tst_netcarddialog LINK vl::net)
vl_test(tst_netcards POSIX LINK vl::net
    SOURCES ${PROJECT_SOURCE_DIR}/net/PhysicalNetCard_win.cpp)
