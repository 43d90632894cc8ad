// Store nodes of the firmware room.
#ifndef KIO_FIRMWARE_NODES_H
#define KIO_FIRMWARE_NODES_H

namespace kio::firmware {

inline constexpr const char* kDeviceMacNode = "/fwupgradeinfo/devicemac";
inline constexpr const char* kCurrentFileNode = "/fwupgradeinfo/currfwfilename";
// What a search found.
inline constexpr const char* kFoundNode = "/fwupgradeinfo/newfw";
inline constexpr const char* kFileUrlNode = "/fwupgradeinfo/newfw/fileurl";
inline constexpr const char* kNotesUrlNode = "/fwupgradeinfo/newfw/notesurl";

}  // namespace kio::firmware

#endif
