#include "file_lock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "temp_dir.h"

namespace kiohost {
namespace {

using ::testing::HasSubstr;

// A process that holds a lock until it is killed.
class Holder {
 public:
  explicit Holder(const std::string& file) {
    int ready[2] = {};
    EXPECT_EQ(pipe(ready), 0);
    pid_ = fork();
    if (pid_ == 0) {
      FileLock lock;
      const bool taken = lock.Take(file, "it").ok();
      _exit(write(ready[1], &taken, 1) == 1 && pause() == 0 ? 0 : 1);
    }
    EXPECT_EQ(read(ready[0], &taken_, 1), 1);
    close(ready[0]);
    close(ready[1]);
  }
  ~Holder() { Kill(); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  void Kill() {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
      pid_ = -1;
    }
  }

  pid_t pid() const { return pid_; }
  bool taken() const { return taken_; }

 private:
  pid_t pid_ = -1;
  bool taken_ = false;
};

TEST(FileLockTest, IsHeldByOneProcessWhichIsNamed) {
  const TempDir dir;
  Holder holder(dir.File("lock"));
  ASSERT_TRUE(holder.taken());
  const pid_t pid = holder.pid();
  FileLock lock;
  const Status status = lock.Take(dir.File("lock"), "the store s.db");
  EXPECT_EQ(status.code(), ExitCode::kDirectory);
  EXPECT_EQ(status.reason(), "the store s.db is in use by process " + std::to_string(pid));
  EXPECT_TRUE(lock.Take(dir.File("other"), "it").ok());
  holder.Kill();
  FileLock late;
  EXPECT_TRUE(late.Take(dir.File("lock"), "it").ok()) << "the lock outlives its process";
  EXPECT_FALSE(Holder(dir.File("lock")).taken());
}

TEST(FileLockTest, EndsWithItsOwner) {
  const TempDir dir;
  { EXPECT_TRUE(FileLock().Take(dir.File("lock"), "it").ok()); }
  EXPECT_TRUE(Holder(dir.File("lock")).taken());
}

TEST(FileLockTest, FollowsNoLink) {
  const TempDir dir;
  std::filesystem::create_symlink(dir.File("target"), dir.File("lock"));
  const Status status = FileLock().Take(dir.File("lock"), "the store s.db");
  EXPECT_EQ(status.code(), ExitCode::kDirectory);
  EXPECT_THAT(status.reason(), HasSubstr("cannot lock the store s.db: " + dir.File("lock")));
  EXPECT_FALSE(std::filesystem::exists(dir.File("target")));
}

}  // namespace
}  // namespace kiohost
