// The command that fetches a file.
#ifndef KIO_FIRMWARE_DOWNLOAD_H
#define KIO_FIRMWARE_DOWNLOAD_H

#include <cstddef>

#include "platform/text.h"

namespace kio::firmware {

// Room for a download command.
inline constexpr std::size_t kDownloadSize = 4096;

struct Download {
  const char* file;
  const char* address;
  bool in_background;
};

// Builds the command from its template. Returns false when it does not fit; it must not be run
// then.
bool BuildDownloadCommand(const char* command_template, const Download& download,
                          char (&command)[kDownloadSize]);

// The first 15 characters of the command, without its quotes and with the texts as they are, as the
// list of processes shows them.
void ReadDownloadTag(const char* command_template, const Download& download, char (&tag)[16]);

}  // namespace kio::firmware

#endif
