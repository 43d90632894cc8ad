// The store of the host over a disk in memory: store_cuts --cuts loses power at each step that the
// disk takes, store_cuts --failures has each call of SQLite to the disk fail.
#include <cstdio>
#include <string>

#include "disk.h"
#include "recording.h"
#include "report.h"

int main(int argc, char** argv) {
  const std::string what = argc == 2 ? argv[1] : "";
  if (what != "--cuts" && what != "--failures") {
    std::puts("store_cuts --cuts|--failures");
    return 2;
  }
  Disk::Install();
  const Recording recording = Record();
  if (what == "--cuts") {
    CutEverywhere(recording);
    LoseEachSync(recording);
  } else {
    FailEachCall(recording);
  }
  return g_wrong == 0 ? 0 : 1;
}
