# A router of which the app can change nothing: it answers good documents with 0 and leaves all as it is.
include dual-band-router.profile

/zentrolinks/configurable = 0
/zentrolinks/fwupgrade = 0
/sys/modelnumber = RO-2400
/uplink/configurable = 0
/lan/wireless2.4:1/configurable = 0
/lan/wireless5:1/configurable = 0
