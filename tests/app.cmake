vl_test(tst_singleapplication LINK vl::app)
vl_test(tst_mainwindow SCREEN LINK vl::app SOURCES WindowFixture.h)

vl_test(tst_accessibility SCREEN LINK vl::app SOURCES Geometry.h WindowFixture.h)
target_compile_definitions(tst_accessibility PRIVATE VL_CATALOGUE_DIR="${VL_CATALOGUE_DIR}")
target_include_directories(tst_accessibility SYSTEM PRIVATE ${Qt5Gui_PRIVATE_INCLUDE_DIRS})
add_dependencies(tst_accessibility catalogues)
# The scale is settled once for a process.
foreach(percent IN ITEMS 125 150 175 200)
    math(EXPR whole "${percent} / 100")
    math(EXPR hundredths "${percent} % 100")
    add_test(NAME tst_accessibility_${percent} COMMAND tst_accessibility everythingHasItsPlace
        boxesFitTheScreen)
    get_test_property(tst_accessibility ENVIRONMENT environment)
    set_tests_properties(tst_accessibility_${percent} PROPERTIES LABELS screen TIMEOUT 300
        ENVIRONMENT "${environment};QT_SCALE_FACTOR=${whole}.${hundredths}")
endforeach()

vl_test(tst_fulldisk POSIX LINK vl::app SOURCES SmallDisk.h TestDevices.h)
vl_test(tst_settings POSIX LINK vl::app SOURCES WindowFixture.h)
vl_test(tst_provisioning LINK vl::storage SOURCES DataSide.h HttpPhone.h)
vl_test(tst_writedocuments POSIX LINK vl::storage SOURCES DataSide.h HttpPhone.h)
if(TARGET tst_writedocuments)
    target_compile_definitions(tst_writedocuments PRIVATE VL_PROGRAM="$<TARGET_FILE:VlManager>")
    add_dependencies(tst_writedocuments VlManager)
endif()
