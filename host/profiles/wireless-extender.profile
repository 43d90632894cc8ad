# An extender of another router's wireless network, which a survey has found beside a second one.
include dual-band-router.profile

/zentrolinks/apcloning = 2
/sys/modelnumber = WE-2400
/sys/devicetype = Extender
# The extender is no router, and the app cannot make it one.
/sys/routerenbl = 2
/uplink/hardwaresupport = WWan802.11
/uplink/hardwaretype = WWan802.11
/uplink/extendersite/connrefsitebssid = 02:00:5E:77:24:01
/uplink/extendersite/wirelesstype = 2.4
/uplink/extendersite/wirelessname = Upstairs
/uplink/extendersite/encryptionkey = upstairs-key
/uplink/sxtendersite/connstatus = Connected
# The networks that the last survey found. The first one that the app is shown is instance 2.
/wirelesssitesurvey/site:2/wirelessname = Upstairs
/wirelesssitesurvey/site:2/bssid = 02:00:5E:77:24:01
/wirelesssitesurvey/site:2/encryptionmode = WPA2
/wirelesssitesurvey/site:2/wirelesstype = 2.4
/wirelesssitesurvey/site:2/wirelessstrength = 78
/wirelesssitesurvey/site:3/wirelessname = Neighbour
/wirelesssitesurvey/site:3/bssid = 02:00:5E:88:50:01
/wirelesssitesurvey/site:3/encryptionmode = WPAWPA2
/wirelesssitesurvey/site:3/wirelesstype = 5
/wirelesssitesurvey/site:3/wirelessstrength = 31
/fwupgradeinfo/devicemac = 02:00:5E:10:00:05
/fwupgradeinfo/currfwfilename = WE2400_FW1.0.2_0101.bin
