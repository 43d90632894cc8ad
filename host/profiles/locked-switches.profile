# A router whose switches are locked: a document must hold them as they are.
include dual-band-router.profile

/sys/modelnumber = LS-2400
/sys/routerenbl = 3
# A radio is locked by 3; with 2 it would not be there.
/lan/wireless2.4:1/wlenbl = 3
/lan/wireless2.4:1/wlschedule = 2
/lan/wireless2.4:1/accesscontrol/wlacenbl = 2
/lan/wireless5:1/wlenbl = 3
/lan/wireless5:1/wlschedule = 2
/lan/wireless5:1/accesscontrol/wlacenbl = 2
