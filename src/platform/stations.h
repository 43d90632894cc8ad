// Wireless stations: the list of those associated, and the disconnecting of one.
#ifndef KIO_PLATFORM_STATIONS_H
#define KIO_PLATFORM_STATIONS_H

namespace kio::platform {

// Rebuilds the list of associated stations in the store. While the wireless manager of a radio is
// starting, the list is only emptied, and the result is false: leave the radios alone.
bool UpdateStations();

// Disconnects the station that the store names, unless the wireless manager is starting.
void DisconnectStation();

}  // namespace kio::platform

#endif
