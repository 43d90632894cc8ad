// A stream that goes slowly, or breaks off.
#ifndef HOST_FAULTY_STREAM_H
#define HOST_FAULTY_STREAM_H

#include <cstdint>
#include <memory>
#include <utility>

#include "body_stream.h"

namespace kiohost {

class FaultyStream : public BodyStream {
 public:
  // So many bytes a second when it drips, so many in all otherwise.
  FaultyStream(std::shared_ptr<BodyStream> stream, int64_t amount, bool drips)
      : stream_(std::move(stream)), amount_(amount), left_(amount), drips_(drips) {}

  State Look(Clock::time_point now) override;
  size_t Take(char* bytes, size_t size) override;
  bool IsOver() const override { return stream_->IsOver(); }
  bool IsBroken() const override { return !drips_ && left_ == 0; }
  void End() override { stream_->End(); }

 private:
  std::shared_ptr<BodyStream> stream_;
  int64_t amount_;
  int64_t left_;  // of this second, or of all
  bool drips_;
  Clock::time_point second_ = Clock::now();  // when it began
};

}  // namespace kiohost

#endif  // HOST_FAULTY_STREAM_H
