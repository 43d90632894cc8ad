// How often the host waits for the disk, and when.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"
#include "preload.h"

namespace {

class DiskWaitsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    host_.UseScript("uplink.sh", "#!/bin/sh\n");
    host_.UseScript("device_resync.sh", "#!/bin/sh\n");
    WriteFile(file_, "");
    const Preload preload(KIO_COUNT_SYNCS, "KIO_TEST_SYNCS", file_);
    ASSERT_TRUE(host_.Start());
  }

  void Rename(const std::string& name, const std::string& path = "/settings") const {
    EXPECT_EQ(Post(host_.port(), path, With(FactoryDocument(), "DeviceName", name)).status, 200);
  }

  // Changes the store and waits until the host, which nobody asks for anything, brings its log into
  // the store's file and begins a new one.
  void LetTheHostRest() {
    for (int attempt = 0; attempt < 3; ++attempt) {
      const std::string name = "Before " + std::to_string(++names_);
      Rename(name);
      const std::string before = Log();
      if (WaitFor([this, &before] { return Log() != before; })) {
        Rename(name);  // it is answered when the host has waited for the beginning of the log
        return;
      }
    }
    FAIL() << "the host does not bring its log into the file";
  }

  // The waits for the disk while `act` runs: "l" for one of the log, "f" for one of the file.
  // Once more when the host found the time for a rest meanwhile.
  template <typename Act>
  std::string WaitsOf(Act act) {
    std::string waits = "f";
    for (int attempt = 0; attempt < 5 && waits.find('f') != std::string::npos; ++attempt) {
      LetTheHostRest();
      if (HasFatalFailure()) {
        return "";
      }
      const size_t before = ReadFile(file_).size();
      act();
      waits = ReadFile(file_).substr(before);
    }
    return waits;
  }

  HostProcess host_;
  const std::string file_ = host_.dir().File("syncs");
  int names_ = 0;

 private:
  // What is another in each log.
  std::string Log() const { return ReadFile(host_.dir().File("store.db-wal")).substr(0, 24); }
};

TEST_F(DiskWaitsTest, AChangingExchangeWaitsOnce) {
  // The first one is the first in its log. Each but the first waits for the commit before it.
  const auto act = [this] {
    for (int i = 0; i < 5; ++i) {
      Rename("Name " + std::to_string(++names_));
    }
    EXPECT_EQ(Post(host_.port(), "/settings", With(FactoryDocument(), "minor", "0")).status, 200);
  };
  EXPECT_EQ(WaitsOf(act), "lllll");
}

TEST_F(DiskWaitsTest, WhatChangesNothingDoesNotWait) {
  const auto act = [this] {
    Rename("Before " + std::to_string(names_));
    Rename(std::string(33, 'x'));
    EXPECT_EQ(Post(host_.port(), "/vars", "rss_DeviceName=Attic").status, 200);
    EXPECT_EQ(host_.Node("/sys/factorydefault"), "0");
  };
  EXPECT_EQ(WaitsOf(act), "");
}

TEST_F(DiskWaitsTest, AQueryDoesNotWait) {
  const auto act = [this] {
    const Preload preload(KIO_COUNT_SYNCS, "KIO_TEST_SYNCS", file_);
    EXPECT_EQ(host_.Node("/sys/factorydefault"), "0");
  };
  EXPECT_EQ(WaitsOf(act), "");
}

TEST_F(DiskWaitsTest, AStopLeavesEverythingInTheFile) {
  Rename("Attic");
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_FALSE(std::filesystem::exists(host_.dir().File("store.db-wal")));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Attic");
}

}  // namespace
