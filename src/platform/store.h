// The only way to the configuration store of the host.
#ifndef KIO_PLATFORM_STORE_H
#define KIO_PLATFORM_STORE_H

#include <cstddef>
#include <cstdint>

#include "platform/text.h"

namespace kio::platform {

// The text of a node, read when the object is made; empty when the node is absent.
//
// The host is not told how much room there is, and may leave the buffer as it is. So the scratch
// buffer is larger than any field and is emptied first. A host that writes beyond it is stopped,
// because the frames of its callers lie behind the buffer. Nothing else calls `xget_str`.
class StoreText {
 public:
  explicit StoreText(const char* path);
  StoreText(const StoreText&) = delete;
  StoreText& operator=(const StoreText&) = delete;

  [[nodiscard]] const char* c_str() const { return text_; }
  [[nodiscard]] TextView view() const { return text_; }
  [[nodiscard]] bool empty() const { return text_[0] == '\0'; }

  // Clears the text, for one that is a secret.
  void Clear();

 private:
  static constexpr std::size_t kScratchSize = 4096;
  // These bytes occur in no UTF-8 text, and none of them is a terminator.
  static constexpr std::uint32_t kUntouched = 0xC1F5FEFF;
  static_assert(kScratchSize % alignof(std::uint32_t) == 0, "nothing lies between");

  char text_[kScratchSize];
  volatile std::uint32_t behind_ = kUntouched;
};

// Reads the text of a node into a field, cut to the field's capacity and terminated.
void ReadStoreText(const char* path, char* field, std::size_t size);
template <std::size_t N>
void ReadStoreText(const char* path, char (&field)[N]) {
  ReadStoreText(path, field, N);
}

// The same for a text of which no copy may stay behind on the stack.
void ReadStoreSecret(const char* path, char* field, std::size_t size);
template <std::size_t N>
void ReadStoreSecret(const char* path, char (&field)[N]) {
  ReadStoreSecret(path, field, N);
}

// Negative when the node is absent.
int ReadStoreInt(const char* path);
// The same with a value of the caller's for a negative one.
inline int ReadStoreInt(const char* path, int absent) {
  const int value = ReadStoreInt(path);
  return value < 0 ? absent : value;
}

void WriteStoreText(const char* path, const char* value);
void WriteStoreInt(const char* path, int value);
void DeleteStoreNode(const char* path);

// A node path of at most 127 characters, grown below a base that stays.
//
//     StorePath radio("/lan/wireless", "2.4", ":1");
//     ReadStoreInt(radio.Node("/channel"));
class StorePath {
 public:
  template <typename... Pieces>
  explicit StorePath(Pieces... pieces) : buffer_(&text_[0], sizeof(text_)) {
    (buffer_.Append(pieces), ...);
    base_ = buffer_.size();
    selected_ = base_;
  }
  StorePath(const StorePath&) = delete;
  StorePath& operator=(const StorePath&) = delete;

  [[nodiscard]] const char* c_str() const { return text_; }

  // Selects an instance of the base, which must end with ':'. `Node` then starts from it.
  void SelectInstance(int number) {
    buffer_.Truncate(base_);
    buffer_.AppendNumber(number);
    selected_ = buffer_.size();
  }

  // The path of a node below the base or the selected instance, until the next call.
  const char* Node(TextView suffix) {
    buffer_.Truncate(selected_);
    buffer_.Append(suffix);
    return text_;
  }
  // The path of a node below instance `number` of `name`, as in "/acrule:3/mac".
  const char* Instance(TextView name, int number, TextView suffix = {}) {
    buffer_.Truncate(base_);
    buffer_.Append(name).Append(':').AppendNumber(number).Append(suffix);
    return text_;
  }

 private:
  char text_[128];
  TextBuffer buffer_;  // over the text, so declared after it
  std::size_t base_;
  std::size_t selected_;
};

}  // namespace kio::platform

#endif
