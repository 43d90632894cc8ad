# A router whose texts are as long as the library takes them, each at its limit.
include dual-band-router.profile

/zentrolinks/easyroaminginfo = roam abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijk
/sys/modelnumber = Model abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghij
/sys/devicetype = Router abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghi
/sys/friendlyname = Router with a long name abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz012
# A rule of 127 characters, which admits all printable ones.
/sys/friendlyname_validate = 0,0000127,00001,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z
/sys/user:1/password = long-password-abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcde
/sys/user:1/password_validate = 0,0000127,00001,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z

/uplink/hardwaresupport = Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL,Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL,Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL,E
/uplink/hardwaretype = WWan802.11
/uplink/conntype = Static
/uplink/loginusername = line-abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmn
/uplink/loginusername_validate = 0,0000127,00001,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z
/uplink/loginpassword = line-secret-abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefg
/uplink/loginpassword_validate = 0,0000127,00001,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z
/uplink/ip = 192.168.100.200
/uplink/netmask = 255.255.255.255
/uplink/gateway = 192.168.100.201
/uplink/dns = 192.168.100.202
/uplink/dsl/countryname = Country abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefgh
/uplink/dsl/ispname = Provider abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefg
/uplink/apn/countryname = Country abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefgh
/uplink/apn/ispname = Mobile provider abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-
/uplink/extendersite/connrefsitebssid = 02:00:5E:77:24:01
/uplink/extendersite/wirelessname = Upstream-abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghij
# The longest key there is has 64 digits; of a document 17 characters are taken.
/uplink/extendersite/encryptionkey = 0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF
/uplink/sxtendersite/connstatus = Connected abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdef

/lan/wirelessconcurrent = Both abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijk

/lan/wireless2.4:1/wirelessname = Home-abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmn
/lan/wireless2.4:1/wirelessname_validate = 0,0000127,00001,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z
# The longest key there is: 64 digits. Of a document 31 characters are taken.
/lan/wireless2.4:1/encryptionkey = 0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF
/lan/wireless2.4:1/encryptionkey_validate = 0,0000127,00000,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z
/lan/wireless2.4:1/country = Country-abcdefghijklmnopqrstuvw
/lan/wireless2.4:1/channellist = 0,1,2,3,4,5,6,7,8,9,10,11,12,13,100,101,102,103,104,105,106,107,108,109,110,111,112,113,114,115,116,117,118,119,120,121,122,123
/lan/wireless2.4:1/channel = 13

/lan/wireless5:1/wirelessname = Home-5G-abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijk
/lan/wireless5:1/wirelessname_validate = 0,0000127,00001,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z
# The longest key of other characters. Of a document 31 characters are taken.
/lan/wireless5:1/encryptionkey = full-key-abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyzab
/lan/wireless5:1/encryptionkey_validate = 0,0000127,00000,0,1, -~,A-A,B-B,C-C,D-D,E-E,F-F,G-G,H-H,I-I,J-J,K-K,L-L,M-M,N-N,O-O,P-P,Q-Q,R-R,S-S,T-T,U-U,V-V,W-W,X-X,Y-Y,Z-Z
/lan/wireless5:1/country = Country-abcdefghijklmnopqrstuvw
/lan/wireless5:1/channellist = 0,36,40,44,48,100,104,108,112,116,120,124,128,132,136,140,144,148,152,156,160,164,168,172,176,180,184,188,192,196,200,204,208,9
/lan/wireless5:1/channel = 36
/lan/wireless2.4:1/channelusing = 36 abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklm
/lan/wireless5:1/channelusing = 36 abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklm

/fwupgradeinfo/accesskey = key-abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmno
/fwupgradeinfo/currfwfilename = FT2400_FW1.0.2_012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012345678901234567.bin
/fwupgradeinfo/currfwversion = 1.0.2 abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghij
/fwupgradeinfo/fwupgradeurl = http://$lanip:$rssport/firmware/firmware/firmware/firmware/firmware/firmware/firmware/firmware/firmware/firmware/firmware/firmw
/fwupgradeinfo/hwversion = A1 abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklm
/fwupgradeinfo/regioncode = EU abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklm
/fwupgradeinfo/vendor = Maker abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghijklmnopqrstuvwxyz0123456789-abcdefghij

# As many rules as there can be.
/lan/wireless5:1/accesscontrol/wlacenbl = 1
/lan/wireless5:1/accesscontrol/acrule:1/active = 1
/lan/wireless5:1/accesscontrol/acrule:1/mac = 02:00:5E:AA:00:01
/lan/wireless5:1/accesscontrol/acrule:2/active = 0
/lan/wireless5:1/accesscontrol/acrule:2/mac = 02:00:5E:AA:00:02
/lan/wireless5:1/accesscontrol/acrule:3/active = 1
/lan/wireless5:1/accesscontrol/acrule:3/mac = 02:00:5E:AA:00:03
/lan/wireless5:1/accesscontrol/acrule:4/active = 0
/lan/wireless5:1/accesscontrol/acrule:4/mac = 02:00:5E:AA:00:04
/lan/wireless5:1/accesscontrol/acrule:5/active = 1
/lan/wireless5:1/accesscontrol/acrule:5/mac = 02:00:5E:AA:00:05
/lan/wireless5:1/accesscontrol/acrule:6/active = 0
/lan/wireless5:1/accesscontrol/acrule:6/mac = 02:00:5E:AA:00:06
/lan/wireless5:1/accesscontrol/acrule:7/active = 1
/lan/wireless5:1/accesscontrol/acrule:7/mac = 02:00:5E:AA:00:07
/lan/wireless5:1/accesscontrol/acrule:8/active = 0
/lan/wireless5:1/accesscontrol/acrule:8/mac = 02:00:5E:AA:00:08
/lan/wireless5:1/accesscontrol/acrule:9/active = 1
/lan/wireless5:1/accesscontrol/acrule:9/mac = 02:00:5E:AA:00:09
/lan/wireless5:1/accesscontrol/acrule:10/active = 0
/lan/wireless5:1/accesscontrol/acrule:10/mac = 02:00:5E:AA:00:0A
/lan/wireless5:1/accesscontrol/acrule:11/active = 1
/lan/wireless5:1/accesscontrol/acrule:11/mac = 02:00:5E:AA:00:0B
/lan/wireless5:1/accesscontrol/acrule:12/active = 0
/lan/wireless5:1/accesscontrol/acrule:12/mac = 02:00:5E:AA:00:0C
/lan/wireless5:1/accesscontrol/acrule:13/active = 1
/lan/wireless5:1/accesscontrol/acrule:13/mac = 02:00:5E:AA:00:0D
/lan/wireless5:1/accesscontrol/acrule:14/active = 0
/lan/wireless5:1/accesscontrol/acrule:14/mac = 02:00:5E:AA:00:0E
/lan/wireless5:1/accesscontrol/acrule:15/active = 1
/lan/wireless5:1/accesscontrol/acrule:15/mac = 02:00:5E:AA:00:0F
/lan/wireless5:1/accesscontrol/acrule:16/active = 0
/lan/wireless5:1/accesscontrol/acrule:16/mac = 02:00:5E:AA:00:10
/lan/wireless5:1/accesscontrol/acrule:17/active = 1
/lan/wireless5:1/accesscontrol/acrule:17/mac = 02:00:5E:AA:00:11
/lan/wireless5:1/accesscontrol/acrule:18/active = 0
/lan/wireless5:1/accesscontrol/acrule:18/mac = 02:00:5E:AA:00:12
/lan/wireless5:1/accesscontrol/acrule:19/active = 1
/lan/wireless5:1/accesscontrol/acrule:19/mac = 02:00:5E:AA:00:13
/lan/wireless5:1/accesscontrol/acrule:20/active = 0
/lan/wireless5:1/accesscontrol/acrule:20/mac = 02:00:5E:AA:00:14
/lan/wireless5:1/accesscontrol/acrule:21/active = 1
/lan/wireless5:1/accesscontrol/acrule:21/mac = 02:00:5E:AA:00:15
/lan/wireless5:1/accesscontrol/acrule:22/active = 0
/lan/wireless5:1/accesscontrol/acrule:22/mac = 02:00:5E:AA:00:16
/lan/wireless5:1/accesscontrol/acrule:23/active = 1
/lan/wireless5:1/accesscontrol/acrule:23/mac = 02:00:5E:AA:00:17
/lan/wireless5:1/accesscontrol/acrule:24/active = 0
/lan/wireless5:1/accesscontrol/acrule:24/mac = 02:00:5E:AA:00:18
/lan/wireless5:1/accesscontrol/acrule:25/active = 1
/lan/wireless5:1/accesscontrol/acrule:25/mac = 02:00:5E:AA:00:19
/lan/wireless5:1/accesscontrol/acrule:26/active = 0
/lan/wireless5:1/accesscontrol/acrule:26/mac = 02:00:5E:AA:00:1A
/lan/wireless5:1/accesscontrol/acrule:27/active = 1
/lan/wireless5:1/accesscontrol/acrule:27/mac = 02:00:5E:AA:00:1B
/lan/wireless5:1/accesscontrol/acrule:28/active = 0
/lan/wireless5:1/accesscontrol/acrule:28/mac = 02:00:5E:AA:00:1C
/lan/wireless5:1/accesscontrol/acrule:29/active = 1
/lan/wireless5:1/accesscontrol/acrule:29/mac = 02:00:5E:AA:00:1D
/lan/wireless5:1/accesscontrol/acrule:30/active = 0
/lan/wireless5:1/accesscontrol/acrule:30/mac = 02:00:5E:AA:00:1E
/lan/wireless5:1/accesscontrol/acrule:31/active = 1
/lan/wireless5:1/accesscontrol/acrule:31/mac = 02:00:5E:AA:00:1F
/lan/wireless5:1/accesscontrol/acrule:32/active = 0
/lan/wireless5:1/accesscontrol/acrule:32/mac = 02:00:5E:AA:00:20
/lan/wireless5:1/accesscontrol/acrule:33/active = 1
/lan/wireless5:1/accesscontrol/acrule:33/mac = 02:00:5E:AA:00:21
/lan/wireless5:1/accesscontrol/acrule:34/active = 0
/lan/wireless5:1/accesscontrol/acrule:34/mac = 02:00:5E:AA:00:22
/lan/wireless5:1/accesscontrol/acrule:35/active = 1
/lan/wireless5:1/accesscontrol/acrule:35/mac = 02:00:5E:AA:00:23
/lan/wireless5:1/accesscontrol/acrule:36/active = 0
/lan/wireless5:1/accesscontrol/acrule:36/mac = 02:00:5E:AA:00:24
/lan/wireless5:1/accesscontrol/acrule:37/active = 1
/lan/wireless5:1/accesscontrol/acrule:37/mac = 02:00:5E:AA:00:25
/lan/wireless5:1/accesscontrol/acrule:38/active = 0
/lan/wireless5:1/accesscontrol/acrule:38/mac = 02:00:5E:AA:00:26
/lan/wireless5:1/accesscontrol/acrule:39/active = 1
/lan/wireless5:1/accesscontrol/acrule:39/mac = 02:00:5E:AA:00:27
/lan/wireless5:1/accesscontrol/acrule:40/active = 0
/lan/wireless5:1/accesscontrol/acrule:40/mac = 02:00:5E:AA:00:28
