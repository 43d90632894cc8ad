#include "ways.h"

#include <csignal>

namespace kio::proof {
namespace {

using How = Way::How;

constexpr int kExitStatus = 0x100;  // of a command that ends with 1

constexpr Way kWays[] = {
    {Call::kAccess, "EIO", EIO, How::kFails, Effect::kOnward},
    {Call::kAccess, "EACCES", EACCES, How::kFails, Effect::kOnward},
    {Call::kAccess, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kCalloc, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kClose, "EINTR", EINTR, How::kFails, Effect::kNone},
    {Call::kClose, "EIO", EIO, How::kFails, Effect::kNone},
    {Call::kClose, "ENOSPC", ENOSPC, How::kFails, Effect::kNone},
    {Call::kFstat, "EIO", EIO, How::kFails, Effect::kOnward},
    {Call::kFstat, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kFwrite, "EIO", EIO, How::kFails, Effect::kCall},
    {Call::kFwrite, "ENOSPC", ENOSPC, How::kFails, Effect::kCall},
    {Call::kIoctl, "EINTR", EINTR, How::kFails, Effect::kOnward},
    {Call::kIoctl, "EIO", EIO, How::kFails, Effect::kOnward},
    {Call::kIoctl, "ENODEV", ENODEV, How::kFails, Effect::kOnward},
    {Call::kMmap, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kMmap, "EAGAIN", EAGAIN, How::kFails, Effect::kOnward},
    {Call::kMmap, "ENODEV", ENODEV, How::kFails, Effect::kOnward},
    {Call::kMunmap, "ENOMEM", ENOMEM, How::kFails, Effect::kNone},
    {Call::kOpen, "EINTR", EINTR, How::kFails, Effect::kNone},
    {Call::kOpen, "EIO", EIO, How::kFails, Effect::kOnward},
    {Call::kOpen, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kOpen, "EMFILE", EMFILE, How::kFails, Effect::kOnward},
    {Call::kOpen, "ENOSPC", ENOSPC, How::kFails, Effect::kOnward},
    {Call::kPread, "EINTR", EINTR, How::kFails, Effect::kNone},
    {Call::kPread, "one byte", 0, How::kShort, Effect::kNone},
    {Call::kPread, "EIO", EIO, How::kFails, Effect::kOnward},
    {Call::kPread, "the end", 0, How::kEnd, Effect::kOnward},
    {Call::kRead, "EINTR", EINTR, How::kFails, Effect::kNone},
    {Call::kRead, "one byte", 0, How::kShort, Effect::kNone},
    {Call::kRead, "EIO", EIO, How::kFails, Effect::kOnward},
    {Call::kRead, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kRead, "the end", 0, How::kEnd, Effect::kOnward},
    {Call::kSignal, "EINVAL", EINVAL, How::kFails, Effect::kNone},
    {Call::kSnprintf, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kSocket, "EMFILE", EMFILE, How::kFails, Effect::kOnward},
    {Call::kSocket, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kStat, "EIO", EIO, How::kFails, Effect::kOnward},
    {Call::kStat, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kSysinfo, "EFAULT", EFAULT, How::kFails, Effect::kOnward},
    {Call::kSystem, "EAGAIN", EAGAIN, How::kFails, Effect::kOnward},
    {Call::kSystem, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kSystem, "no shell", 0x7F00, How::kStatus, Effect::kOnward},
    {Call::kSystem, "exit code 1", kExitStatus, How::kStatus, Effect::kOnward},
    {Call::kSystem, "killed", SIGKILL, How::kStatus, Effect::kOnward},
    {Call::kTime, "EFAULT", EFAULT, How::kFails, Effect::kOnward},
    {Call::kVprintf, "EIO", EIO, How::kFails, Effect::kCall},
    {Call::kVprintf, "ENOSPC", ENOSPC, How::kFails, Effect::kCall},
    {Call::kVsnprintf, "ENOMEM", ENOMEM, How::kFails, Effect::kOnward},
    {Call::kWrite, "EINTR", EINTR, How::kFails, Effect::kNone},
    {Call::kWrite, "one byte", 0, How::kShort, Effect::kNone},
    {Call::kWrite, "EIO", EIO, How::kFails, Effect::kCall},
    {Call::kWrite, "ENOSPC", ENOSPC, How::kFails, Effect::kCall},
    {Call::kWrite, "one byte, then ENOSPC", ENOSPC, How::kFull, Effect::kCall},
    {Call::kXdel, "-1", 0, How::kFails, Effect::kCall},
    {Call::kXgetInt, "-1", 0, How::kFails, Effect::kOnward},
    {Call::kXgetStr, "-1, the buffer left alone", 0, How::kUntouched, Effect::kOnward},
    {Call::kXgetStr, "-1, the buffer emptied", 0, How::kEmptied, Effect::kOnward},
    {Call::kXsetInt, "-1", 0, How::kFails, Effect::kCall},
    {Call::kXsetStr, "-1", 0, How::kFails, Effect::kCall},
};

}  // namespace

std::span<const Way> Ways() { return kWays; }

}  // namespace kio::proof
