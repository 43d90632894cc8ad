# A router with two radios on a mobile network, whose provider the app chooses by country and name.
include dual-band-router.profile

/sys/modelnumber = MR-2400
/sys/devicetype = Hotspot
/uplink/hardwaresupport = WWanAPN
/uplink/hardwaretype = WWanAPN
/uplink/apn/countryname = Sweden
/uplink/apn/ispname = Berg Mobile
/fwupgradeinfo/devicemac = 02:00:5E:10:00:04
/fwupgradeinfo/currfwfilename = MR2400_FW1.0.2_0101.bin
