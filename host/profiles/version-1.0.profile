# An older router, on a DSL circuit, whose settings documents are of version 1.0.
include dual-band-router.profile
without /zentrolinks/easyroaminginfo
without /lan/wireless2.4:1/accesscontrol
without /lan/wireless5:1/accesscontrol

/zentrolinks/specversion/minor = 0
/zentrolinks/apcloning = 0
/zentrolinks/easyroaming = 0
/sys/modelnumber = OR-1000
# In version 1.0 the app's hardware type is not stored.
/uplink/hardwaresupport = DSL,Ethernet
/uplink/hardwaretype = DSL
/uplink/conntype = PPPoE
/uplink/loginusername = line-42
/uplink/loginpassword = line-secret
/uplink/dsl/vpi = 8
/uplink/dsl/vci = 35
/uplink/dsl/encapsulationmode = LLC
# Version 1.0 knows no other encryption type.
/lan/wireless2.4:1/encryptiontype = AUTO
/lan/wireless5:1/encryptiontype = AUTO
/fwupgradeinfo/devicemac = 02:00:5E:10:00:06
/fwupgradeinfo/currfwfilename = OR1000_FW1.0.2_0101.bin
