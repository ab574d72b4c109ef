vl_test(tst_httprequest LINK vl::net)
vl_test(tst_httpdserver LINK vl::net SOURCES HttpPhone.h TestSocket.h)
vl_test(tst_httpdservice LINK vl::net SOURCES HttpPhone.h TestSocket.h)
vl_test(tst_netcarddialog LINK vl::net)
vl_test(tst_netcards POSIX LINK vl::net)

# The registry's source works on Qt's settings alone: on other systems these are plain files, and
# a tree of files plays the registry.
if(NOT WIN32)
    vl_test(tst_netcardregistry LINK vl::model
        SOURCES ${PROJECT_SOURCE_DIR}/net/PhysicalNetCard_win.cpp)
endif()

set(net_tests tst_httprequest tst_httpdserver tst_httpdservice tst_netcarddialog tst_netcards
    tst_netcardregistry)
foreach(test IN LISTS net_tests)
    if(TEST ${test})
        set_property(TEST ${test} APPEND PROPERTY
            ENVIRONMENT
                "TSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/tsan.supp"
                "LSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/lsan.supp:print_suppressions=0")
    endif()
endforeach()
