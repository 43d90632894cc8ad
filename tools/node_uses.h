// What the library's code does with the store apart from its tables: nodes that stand in no table,
// and further uses of nodes that do.
#ifndef TOOLS_NODE_USES_H
#define TOOLS_NODE_USES_H

namespace kio::tools {

struct NodeUse {
  const char* path;
  const char* read = "";   // when; empty for never
  const char* write = "";  // for whom and when; empty for never
  bool is_own = false;     // written by the library alone
  // Of a node that is in no table.
  const char* value = "";
  const char* absent = "";
  const char* meaning = "";
};

inline constexpr NodeUse kNodeUses[] = {
    {.path = "/zentrolinks/tempdirecory",
     .read = "log, temporary documents and firmware, when they need it"},
    {.path = "/zentrolinks/scriptdirecory", .read = "each commit"},
    {.path = "/zentrolinks/rsshttpport",
     .read = "with the texts that hold `$rssport`",
     .value = "text, 63",
     .absent = "empty",
     .meaning = "Port on which the app reaches the router. It replaces `$rssport` in texts from "
                "the store."},
    {.path = "/runtime/zentrolinks/lanip",
     .read = "with the texts that hold `$lanip`",
     .value = "text, 63",
     .absent = "empty",
     .meaning = "The router's own address. It replaces `$lanip` in texts from the store."},

    {.path = "/sys/user:1/password", .read = "each login"},
    {.path = "/sys/factorydefault", .write = "library: 0 when applying changed anything"},

    {.path = "/uplink/extendersite/survey",
     .read = "request of a survey",
     .write = "app: 1 for a request"},

    {.path = "/lan/wireless{band}:1/configurable",
     .read = "snapshot, of a radio that exists",
     .value = "0, or anything else",
     .absent = "1",
     .meaning = "0 keeps the app from changing the radio: documents need not hold it, and one that "
                "is there is not read."},
    {.path = "/lan/wireless{band}:1/wlenbl", .read = "snapshot"},
    {.path = "/lan/wireless{band}:1/configurable/acrule#",
     .read = "full snapshot",
     .value = "integer",
     .absent = "-1: the variables show no rules, and access mode 0",
     .meaning = "Number of the rules that the variables show. Its place is odd on purpose; rule 1 "
                "of the store is shown as R01."},
    {.path = "/lan/wireless{band}:1/accesscontrol/acrule#",
     .read = "apply",
     .value = "integer",
     .absent = "0",
     .meaning = "Number of the stored rules, by which an apply deletes those that a document no "
                "longer has. Never more than there are."},
    {.path = "/lan/wireless{band}:1/accesscontrol/acrule:{n}",
     .write = "app: deleted when a document has fewer rules",
     .value = "a node above others",
     .absent = "no rule",
     .meaning = "A rule of the access control."},
    {.path = "/lan/wireless{band}:1/channel", .read = "channel watch"},
    {.path = "/lan/wireless{band}:1/channelusing", .read = "channel watch"},

    {.path = "/wirelesssitesurvey/site#", .read = "before a variable of a site"},

    {.path = "/runtime/apcloninginfo/extendersite",
     .write = "library: deleted by a request of a survey",
     .value = "a node above others",
     .absent = "none",
     .meaning = "The network that was copied last to a device with a wireless uplink."},
    {.path = "/runtime/apcloninginfo/extendersite/wirelesstype",
     .read = "request of a survey",
     .write = "library: cloning",
     .is_own = true,
     .value = "`2.4`, `5`",
     .absent = "nothing was copied",
     .meaning = "Band of that network."},

    {.path = "/runtime/easyroaming/connstainfo",
     .write = "library: deleted before a new list of stations",
     .value = "a node above others",
     .absent = "empty",
     .meaning = "The associated stations, as the action UpdateStaRssi listed them last."},
    {.path = "/runtime/easyroaming/connstainfo/sta:{n}/ifname",
     .write = "library: UpdateStaRssi",
     .value = "text, 15",
     .absent = "not read",
     .meaning = "Interface of a station, such as wl0.1."},
    {.path = "/runtime/easyroaming/connstainfo/sta:{n}/mac",
     .write = "library: UpdateStaRssi",
     .value = "text",
     .absent = "not read",
     .meaning = "Address of a station."},
    {.path = "/runtime/easyroaming/connstainfo/sta:{n}/rssi",
     .write = "library: UpdateStaRssi",
     .value = "integer",
     .absent = "not read",
     .meaning = "How strong a station is received."},
    {.path = "/runtime/easyroaming/deauthsta/ifname",
     .read = "DeauthSta",
     .value = "text, 15",
     .absent = "empty",
     .meaning = "Interface of the station that the action DeauthSta disconnects. It stands in a "
                "shell command as it is."},
    {.path = "/runtime/easyroaming/deauthsta/mac",
     .read = "DeauthSta",
     .value = "text, 19",
     .absent = "empty",
     .meaning = "Address of that station. It stands in a shell command as it is."},

    {.path = "/fwupgradeinfo/devicemac", .read = "firmware list"},
    {.path = "/fwupgradeinfo/currfwfilename", .read = "firmware search, firmware list"},
    {.path = "/fwupgradeinfo/isengfwserver",
     .read = "firmware search",
     .value = "anything",
     .absent = "makes no difference",
     .meaning = "Read and not looked at: the server is a constant of the build."},
    {.path = "/fwupgradeinfo/fwupgradefn",
     .read = "each step of an upgrade",
     .write = "library: upld.bin when it is empty",
     .value = "text, 255",
     .absent = "upld.bin",
     .meaning = "Name of the file below the temporary directory that an image is fetched into."},
    {.path = "/fwupgradeinfo/urlgetcmd",
     .read = "each download",
     .write = "library: the default when it is empty",
     .value = "text, 255",
     .absent = "`wget -O \"$savefn\" \"$url\"`",
     .meaning = "Shell command that fetches `$url` into `$savefn`."},
    {.path = "/fwupgradeinfo/newfw",
     .write = "library: deleted by the step '0'",
     .value = "a node above others",
     .absent = "none",
     .meaning = "What the last firmware search found."},
    {.path = "/fwupgradeinfo/newfw/fileurl",
     .read = "image download, status document",
     .write = "library: firmware list that fits",
     .is_own = true,
     .value = "text, 127",
     .absent = "empty",
     .meaning = "Address of the image."},
    {.path = "/fwupgradeinfo/newfw/notesurl",
     .read = "firmware search that found one",
     .write = "library: firmware list that fits",
     .is_own = true,
     .value = "text, 127",
     .absent = "empty",
     .meaning = "Address of its release notes."},
};

}  // namespace kio::tools

#endif  // TOOLS_NODE_USES_H
