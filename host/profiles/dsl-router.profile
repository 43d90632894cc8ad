# A router with two radios on VDSL or ADSL, which logs in at its provider by PPPoE.
include dual-band-router.profile

/sys/modelnumber = DS-2400
/uplink/hardwaresupport = VDSL,ADSL
/uplink/hardwaretype = VDSL
/uplink/conntype = PPPoE
/uplink/loginusername = line-42@provider.example
/uplink/loginpassword = line-secret
/uplink/dsl/countryname = Norway
/uplink/dsl/ispname = Fjord DSL
/fwupgradeinfo/devicemac = 02:00:5E:10:00:03
/fwupgradeinfo/currfwfilename = DS2400_FW1.0.2_0101.bin
