#include "host_clock.h"

#include <sys/eventfd.h>
#include <sys/sysinfo.h>

#include <algorithm>
#include <csignal>

namespace kiohost {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

long SystemUptime() {
  struct sysinfo info = {};
  sysinfo(&info);
  return info.uptime;
}

}  // namespace

HostClock::Time HostClock::Now() const {
  if (!is_own_) {
    return std::chrono::steady_clock::now();
  }
  const std::lock_guard lock(mutex_);
  return NowLocked();
}

HostClock::Time HostClock::NowLocked() const {
  if (rate_ == 0) {
    return own_base_;
  }
  const nanoseconds passed = std::chrono::steady_clock::now() - system_base_;
  return own_base_ + nanoseconds(static_cast<int64_t>(static_cast<double>(passed.count()) * rate_));
}

long HostClock::Uptime() const {
  if (!is_own_) {
    return SystemUptime();
  }
  const std::lock_guard lock(mutex_);
  return (std::chrono::floor<seconds>(NowLocked() - boot_) + uptime_shift_).count();
}

long HostClock::SteadySeconds() const {
  if (!is_own_) {
    return SystemUptime();
  }
  const std::lock_guard lock(mutex_);
  return std::chrono::floor<seconds>(NowLocked() - boot_).count();
}

HostClock::Time HostClock::MomentOf(long steady_seconds) const {
  const std::lock_guard lock(mutex_);
  return boot_ + seconds(steady_seconds);
}

bool HostClock::Own() {
  news_ = FileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!news_.valid()) {
    return false;
  }
  const long uptime = SystemUptime();
  const std::lock_guard lock(mutex_);
  system_base_ = std::chrono::steady_clock::now();
  own_base_ = system_base_;
  wanted_ = system_base_;
  boot_ = own_base_ - seconds(uptime);
  is_own_ = true;
  return true;
}

double HostClock::rate() const {
  const std::lock_guard lock(mutex_);
  return rate_;
}

void HostClock::SetRate(double rate) {
  const std::lock_guard lock(mutex_);
  own_base_ = NowLocked();
  system_base_ = std::chrono::steady_clock::now();
  rate_ = rate;
  Tell();
}

void HostClock::MoveTo(Time time) {
  const std::lock_guard lock(mutex_);
  own_base_ = std::max(NowLocked(), time);
  system_base_ = std::chrono::steady_clock::now();
  Tell();
}

void HostClock::SetUptime(long uptime) {
  const std::lock_guard lock(mutex_);
  uptime_shift_ = seconds(uptime) - std::chrono::floor<seconds>(NowLocked() - boot_);
  Tell();
}

void HostClock::Want(nanoseconds more) {
  const std::lock_guard lock(mutex_);
  wanted_ = std::max(wanted_, NowLocked()) + more;
  Tell();
}

HostClock::Time HostClock::wanted() const {
  const std::lock_guard lock(mutex_);
  return std::max(wanted_, NowLocked());
}

std::optional<milliseconds> HostClock::RealTimeUntil(Time time) const {
  const nanoseconds left = time - Now();
  if (left.count() <= 0) {
    return milliseconds(0);
  }
  const double rate = is_own_ ? this->rate() : 1;
  if (rate == 0) {
    return std::nullopt;
  }
  return std::chrono::ceil<milliseconds>(
      nanoseconds(static_cast<int64_t>(static_cast<double>(left.count()) / rate)));
}

long HostClock::MillisecondsUntil(Time time, long limit) const {
  const std::optional<milliseconds> left = RealTimeUntil(time);
  return left ? std::min(static_cast<long>(left->count()), limit) : limit;
}

void HostClock::Tell() { eventfd_write(news_.get(), 1); }

void HostClock::TakeNews() {
  eventfd_t count = 0;
  eventfd_read(news_.get(), &count);
}

unsigned int HostClock::SetAlarm(unsigned int seconds_to_go) {
  const std::lock_guard lock(mutex_);
  const Time now = NowLocked();
  const auto left = alarm_ ? std::chrono::ceil<seconds>(*alarm_ - now).count() : 0;
  alarm_ = seconds_to_go == 0 ? std::nullopt : std::optional(now + seconds(seconds_to_go));
  return static_cast<unsigned int>(std::max<decltype(left)>(left, 0));
}

std::optional<HostClock::Time> HostClock::alarm() const {
  const std::lock_guard lock(mutex_);
  return alarm_;
}

void HostClock::RingWhenDue() {
  const std::lock_guard lock(mutex_);
  if (alarm_ && *alarm_ <= NowLocked()) {
    alarm_.reset();
    raise(SIGALRM);
  }
}

HostClock::Stop::Stop(HostClock* clock, Time time) : clock_(clock) {
  const std::lock_guard lock(clock_->mutex_);
  place_ = clock_->stops_.emplace(time, 0);
}

HostClock::Stop::~Stop() {
  const std::lock_guard lock(clock_->mutex_);
  clock_->stops_.erase(place_);
}

std::optional<HostClock::Time> HostClock::NextStop() const {
  const std::lock_guard lock(mutex_);
  const auto next = stops_.upper_bound(NowLocked());
  std::optional<Time> first = alarm_;
  if (next != stops_.end() && (!first || next->first < *first)) {
    first = next->first;
  }
  return first;
}

HostClock& TheClock() {
  static HostClock clock;
  return clock;
}

}  // namespace kiohost
