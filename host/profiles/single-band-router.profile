# A router with a 2.4 GHz radio alone, on Ethernet, without the security service and roaming.
include dual-band-router.profile
without /lan/wireless5:1
without /zentrolinks/easyroaminginfo
without /safetyvyr

/zentrolinks/apcloning = 0
/zentrolinks/easyroaming = 0
/zentrolinks/safetyvyr = 0
/sys/modelnumber = SB-1200
/uplink/hardwaresupport = Ethernet
/fwupgradeinfo/devicemac = 02:00:5E:10:00:02
/fwupgradeinfo/currfwfilename = SB1200_FW1.0.2_0101.bin
