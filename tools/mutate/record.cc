// What each test enters: linked into a test program whose library calls back at each function.
// After each test a line goes to the file that KIO_MUTATE_RECORD names: the test, whether it
// passed, its processor time in milliseconds and where the functions stand in the program.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
extern char __executable_start;
extern char etext;
void __cyg_profile_func_enter(void* function, void* caller);
void __cyg_profile_func_exit(void* function, void* caller);
}

namespace {

std::size_t g_size = 0;
// A byte for each byte of code, in a file: a test may start its program once more.
char* g_entered = nullptr;

const char* RecordName() {
  const char* const name = std::getenv("KIO_MUTATE_RECORD");
  if (name == nullptr) {
    std::abort();
  }
  return name;
}

char* Entered() {
  if (g_entered == nullptr) {
    g_size = static_cast<std::size_t>(&etext - &__executable_start);
    // Neither open() nor mmap(), which some tests replace.
    std::FILE* const file = std::fopen((std::string(RecordName()) + ".map").c_str(), "a+");
    if (file == nullptr || ftruncate(fileno(file), static_cast<off_t>(g_size)) != 0) {
      std::abort();
    }
    void* const pages =
        mmap64(nullptr, g_size, PROT_READ | PROT_WRITE, MAP_SHARED, fileno(file), 0);
    if (pages == MAP_FAILED) {
      std::abort();
    }
    std::fclose(file);
    g_entered = static_cast<char*>(pages);
  }
  return g_entered;
}

double Milliseconds() {
  double sum = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage = {};
    getrusage(who, &usage);
    for (const timeval& time : {usage.ru_utime, usage.ru_stime}) {
      sum += static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    }
  }
  return sum;
}

class Recorder : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& /*test*/) override { begin_ = Milliseconds(); }

  void OnTestEnd(const testing::TestInfo& test) override {
    const testing::TestResult& result = *test.result();
    Write(test.test_suite_name(), test.name(),
          result.Skipped() ? "skipped" : (result.Passed() ? "passed" : "failed"));
  }

  // What is entered outside of tests counts for all of them.
  void OnTestProgramEnd(const testing::UnitTest& /*all*/) override {
    begin_ = Milliseconds();
    Write("*", "*", "passed");
  }

 private:
  void Write(const char* suite, const char* name, const char* outcome) const {
    std::FILE* const file = std::fopen(RecordName(), "a");
    if (file == nullptr) {
      std::abort();
    }
    std::fprintf(file, "%s.%s\t%s\t%.3f\t", suite, name, outcome, Milliseconds() - begin_);
    const char* const end = Entered() + g_size;
    for (char* at = Entered(); at != nullptr && at < end;) {
      at = static_cast<char*>(std::memchr(at, 1, static_cast<std::size_t>(end - at)));
      if (at != nullptr) {
        std::fprintf(file, " %tx", at - Entered());
        *at++ = 0;
      }
    }
    std::fputc('\n', file);
    std::fclose(file);
  }

  double begin_ = 0;
};

const bool g_listens = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new Recorder);
  return true;
}();

}  // namespace

void __cyg_profile_func_enter(void* function, void* /*caller*/) {
  const auto offset = static_cast<char*>(function) - &__executable_start;
  if (offset >= 0 && offset < &etext - &__executable_start) {
    Entered()[offset] = 1;
  }
}
void __cyg_profile_func_exit(void* /*function*/, void* /*caller*/) {}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
