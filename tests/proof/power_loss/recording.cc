#include "recording.h"

#include <sqlite3.h>

#include <utility>

#include "report.h"
#include "session.h"

std::string IntegrityOf(const char* file) {
  sqlite3* database = nullptr;
  std::string said = "cannot be opened";
  if (sqlite3_open_v2(file, &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
    said.clear();
    const int code = sqlite3_exec(
        database, "PRAGMA integrity_check",
        [](void* context, int /*columns*/, char** texts, char** /*names*/) {
          *static_cast<std::string*>(context) += texts[0];
          return 0;
        },
        &said, nullptr);
    said = code == SQLITE_OK ? said : sqlite3_errmsg(database);
  }
  sqlite3_close(database);
  return said;
}

Recording Record() {
  Disk& disk = Disk::Get();
  disk.files.clear();
  disk.steps.clear();
  Recording recording;
  recording.contents.emplace_back();
  Session session;
  for (const Session::Step& step : session.steps()) {
    disk.notes = true;
    const bool done = step.run();
    disk.notes = false;
    if (!done) {
      Say(std::string("without a fault: ") + step.name + " failed");
    }
    recording.ends.push_back(disk.steps.size());
    const std::string content = session.Content();
    // What is closed is still there.
    recording.contents.push_back(session.store() == nullptr ? recording.contents.back() : content);
    recording.waits.push_back(step.waits);
    recording.names.emplace_back(step.name);
  }
  recording.steps = std::move(disk.steps);
  disk.steps.clear();
  return recording;
}
