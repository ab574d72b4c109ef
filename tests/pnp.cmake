vl_test(tst_pnprequest LINK vl::net SOURCES PnPSubscribe.h)
vl_test(tst_pnpserver LINK vl::net SOURCES PnPSubscribe.h)
# The server's ports are fixed.
set_property(TEST tst_pnpserver PROPERTY RESOURCE_LOCK pnp_ports)
