vl_test(tst_pnprequest LINK vl::net SOURCES PnPSubscribe.h)
vl_test(tst_pnpserver LINK vl::net SOURCES PnPSubscribe.h)
# The server's ports are fixed.
set_property(TEST tst_pnpserver PROPERTY RESOURCE_LOCK pnp_ports)

# The services and phones on hosts of their own. Skipped, and saying so, where network namespaces
# cannot be made.
if(CMAKE_SYSTEM_NAME STREQUAL Linux)
    add_executable(provisioning_host provisioning_host.cpp)
    target_link_libraries(provisioning_host PRIVATE vl::storage vl_options)
    add_test(NAME network
        COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/network/run.py
            $<TARGET_FILE:provisioning_host>)
    set_tests_properties(network PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 300 RUN_SERIAL ON)
endif()
