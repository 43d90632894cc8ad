// Files that cannot be read or written.
#include "platform/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "sandbox.h"

namespace kio::test {
namespace {

class FileTest : public SandboxTest {
 protected:
  [[nodiscard]] std::string Path() const { return directory_.File("file"); }

  TemporaryDirectory directory_;
};

TEST_F(FileTest, MissingFileIsNotOpened) {
  const platform::FileDescriptor file(platform::OpenFile(Path().c_str(), O_RDONLY));
  EXPECT_FALSE(file.ok());
}

TEST_F(FileTest, FailedReadGivesNothing) {
  const platform::FileDescriptor file(platform::OpenFile(Path().c_str(), O_WRONLY | O_CREAT));
  ASSERT_TRUE(file.ok());
  char data[] = "before";
  EXPECT_EQ(platform::ReadSome(file, data, sizeof(data)), 0U);
  EXPECT_EQ(errno, EBADF);
  EXPECT_STREQ(data, "before");
}

TEST_F(FileTest, FailedWriteEndsIt) {
  const platform::FileDescriptor file(platform::OpenFile(Path().c_str(), O_RDONLY | O_CREAT));
  ASSERT_TRUE(file.ok());
  errno = 0;
  platform::WriteAll(file, "text", 4);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(ReadFile(Path()), "");
}

TEST_F(FileTest, WriteThatMovesNothingEndsIt) {
  const platform::FileDescriptor file(platform::OpenFile(Path().c_str(), O_WRONLY | O_CREAT));
  ASSERT_TRUE(file.ok());
  sandbox_.writes_nothing = true;
  errno = EINTR;
  platform::WriteAll(file, "text", 4);
  sandbox_.writes_nothing = false;
  EXPECT_EQ(ReadFile(Path()), "");
  platform::WriteAll(file, "text", 4);
  EXPECT_EQ(ReadFile(Path()), "text");
}

}  // namespace
}  // namespace kio::test
