# A home router with two radios, on Ethernet; the app may choose DSL, a mobile or a wireless uplink.
#
# path = text, one node a line; docs/profiles.md describes the format.
#
# Switches: 0 off, 1 on. For a switch of the device (routerenbl, wlenbl, wlschedule, wlacenbl) a
# stored 2 or 3 means that the app cannot change it. Nodes whose names end in _validate hold the
# rule that the app's text must keep: 0,MAXLEN,MINLEN,ANYCHAR,ALLOW,RANGES for a text and 1,MAX,MIN
# for a number.

# --- The app's back end -------------------------------------------------------------------------

# Version of the settings document. Minor version 0 selects the older dialect.
/zentrolinks/specversion/major = 1
/zentrolinks/specversion/minor = 1
# 0 makes the whole device read-only for the app.
/zentrolinks/configurable = 1
/zentrolinks/apcloning = 1
/zentrolinks/easyroaming = 1
/zentrolinks/easyroaminginfo = off
/zentrolinks/fwupgrade = 1
/zentrolinks/safetyvyr = 1
# Port on which the app reaches the router.
/zentrolinks/rsshttpport = 8080
# Directory of the result document and the log. Empty: one for the user alone below /tmp; --temp-dir
# overrides it.
/zentrolinks/tempdirecory =
# Directory of uplink.sh and device_resync.sh. Empty: the one beside the program; --script-dir
# overrides it.
/zentrolinks/scriptdirecory =

# --- Device -------------------------------------------------------------------------------------

/sys/modelnumber = DR-2400
/sys/devicetype = Router
/sys/factorydefault = 1
/sys/friendlyname = Home router
/sys/friendlyname_validate = 0,32,1
/sys/routerenbl = 1
/sys/user:1/password = change-me-soon
# 5 to 32 printable characters but the space.
/sys/user:1/password_validate = "0,32,5,0,0, "

# --- Uplink -------------------------------------------------------------------------------------

/uplink/configurable = 1
/uplink/hardwaresupport = Ethernet,WWanAPN,WWan802.11,DSL
/uplink/hardwaretype = Ethernet
/uplink/conntype = DHCP
/uplink/loginusername =
/uplink/loginusername_validate = 0,64,1
/uplink/loginpassword =
/uplink/loginpassword_validate = 0,64,1
/uplink/ip = 192.0.2.10
/uplink/netmask = 255.255.255.0
/uplink/gateway = 192.0.2.1
/uplink/dns = 192.0.2.1
/uplink/dsl/countryname =
/uplink/dsl/ispname =
/uplink/dsl/vpi = 0
/uplink/dsl/vci = 35
/uplink/dsl/encapsulationmode = LLC
/uplink/apn/countryname =
/uplink/apn/ispname =
/uplink/extendersite/survey = 0
/uplink/extendersite/connrefsitebssid =
/uplink/extendersite/wirelesstype = 2.4
/uplink/extendersite/wirelessname =
/uplink/extendersite/encryptionkey =

# --- Radios -------------------------------------------------------------------------------------

# wlenbl 0, 1 or 3: the radio exists. Channel 0 chooses automatically.
/lan/wireless2.4:1/configurable = 1
/lan/wireless2.4:1/wlenbl = 1
/lan/wireless2.4:1/wlschedule = 0
/lan/wireless2.4:1/wirelessbssid = 02:00:5E:10:24:01
/lan/wireless2.4:1/wirelessname = HomeNet
/lan/wireless2.4:1/wirelessname_validate = 0,32,1
/lan/wireless2.4:1/encryptionmode = WPA2
/lan/wireless2.4:1/encryptiontype = AES
/lan/wireless2.4:1/encryptionkey = correct-horse-24
/lan/wireless2.4:1/encryptionkey_validate = 0,64,0
/lan/wireless2.4:1/country = ALL
/lan/wireless2.4:1/channellist = 0,1,2,3,4,5,6,7,8,9,10,11,12,13
/lan/wireless2.4:1/channel = 0
/lan/wireless2.4:1/accesscontrol/wlacenbl = 0
/lan/wireless2.4:1/accesscontrol/wlacmode = 0

/lan/wireless5:1/configurable = 1
/lan/wireless5:1/wlenbl = 1
/lan/wireless5:1/wlschedule = 0
/lan/wireless5:1/wirelessbssid = 02:00:5E:10:50:01
/lan/wireless5:1/wirelessname = HomeNet-5G
/lan/wireless5:1/wirelessname_validate = 0,32,1
/lan/wireless5:1/encryptionmode = WPA2
/lan/wireless5:1/encryptiontype = AES
/lan/wireless5:1/encryptionkey = correct-horse-50
/lan/wireless5:1/encryptionkey_validate = 0,64,0
/lan/wireless5:1/country = ALL
/lan/wireless5:1/channellist = 0,36,40,44,48,52,56,60,64,100,104,108,112
/lan/wireless5:1/channel = 36
/lan/wireless5:1/accesscontrol/wlacenbl = 1
/lan/wireless5:1/accesscontrol/wlacmode = 0
/lan/wireless5:1/accesscontrol/acrule:1/active = 1
/lan/wireless5:1/accesscontrol/acrule:1/mac = 02:00:5E:AA:00:01

# --- Security service ---------------------------------------------------------------------------

/safetyvyr/safetyvyrenbl = 1
/safetyvyr/urldetectenbl = 1
/safetyvyr/safetynotifyenbl = 0
/safetyvyr/toolrecommendenbl = 0

# --- Firmware -----------------------------------------------------------------------------------

# By which the entries of the firmware list are chosen; the model stands before the first "_".
/fwupgradeinfo/devicemac = 02:00:5E:10:00:01
/fwupgradeinfo/currfwfilename = DR2400_FW1.0.2_0101.bin
# The file that an image is fetched into, and the command that fetches $url into $savefn. It gives
# up on a server that is silent for 10 seconds, and after 5 minutes in any case. --foreground keeps
# wget in the process group that is ended when the host stops. A progress check looks for the first
# 15 characters of the command in the list of processes.
/fwupgradeinfo/fwupgradefn = upld.bin
/fwupgradeinfo/urlgetcmd = timeout --foreground 300 wget -T 10 -t 1 -O "$savefn" "$url"

# --- State of the running device ----------------------------------------------------------------

/runtime/zentrolinks/lanip = 192.168.1.1
