// Storage of exported data, and the choice of where each of them lies. A room defines its data by
// hidden names of its own, since the exported ones may be bound elsewhere; a table of their places,
// which a constructor of priority 101 fills and nothing else writes; and what the exported names
// were bound to.
#ifndef KIO_PLATFORM_MARKED_DATA_H
#define KIO_PLATFORM_MARKED_DATA_H

namespace kio {

// What each of the data begins with until the library is loaded. A copy in the executable begins
// with it too: the loader has copied the library's bytes by then. Nothing of the host's does.
inline constexpr unsigned kMark = 0x91E36BB5;

// The storage of one of them.
template <typename Data>
union Marked {
  unsigned mark;
  Data data;
};

// Puts into `places` where the dynamic linker found the exported names (`bound`), unless that is
// something of the host's, and clears the mark of each.
void ChooseData(void** places, void* const* bound, int count);

}  // namespace kio

#endif
