// A session without a fault.
#ifndef TESTS_PROOF_POWER_LOSS_RECORDING_H
#define TESTS_PROOF_POWER_LOSS_RECORDING_H

#include <cstddef>
#include <string>
#include <vector>

#include "disk.h"

// What it did to the disk, and what the store held before and after each step.
struct Recording {
  std::vector<DiskStep> steps;
  std::vector<size_t> ends;           // of the disk's steps, for each step of the session
  std::vector<std::string> contents;  // before the first, and after each
  std::vector<bool> waits;
  std::vector<std::string> names;
};

Recording Record();

// What SQLite says of a database; "ok" when nothing is wrong.
std::string IntegrityOf(const char* file);

// A loss of power at each step of the disk, with the choices of what was not synced; and each sync
// lost.
void CutEverywhere(const Recording& recording);
void LoseEachSync(const Recording& recording);

// Each call of SQLite to the disk fails once in each of its ways.
void FailEachCall(const Recording& recording);

#endif  // TESTS_PROOF_POWER_LOSS_RECORDING_H
