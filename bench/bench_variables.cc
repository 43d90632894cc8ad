// Variables: reading and setting one, a batch of them.
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "figures.h"
#include "kioapp/kioapp.h"
#include "memory_store.h"

namespace kio::bench {
namespace {

constexpr int kBatchSize = 40;

void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "variables: cannot %s\n", what);
    std::exit(1);
  }
}

// Reads single nodes of the sample device from an SQLite table, by a prepared statement. The table
// is kept in memory: a file would only be slower.
class PointRead {
 public:
  PointRead() {
    Require(sqlite3_open(":memory:", &database_) == SQLITE_OK, "open a database");
    Execute("CREATE TABLE node(path TEXT PRIMARY KEY, text TEXT NOT NULL) WITHOUT ROWID; BEGIN");
    Prepare("INSERT INTO node VALUES(?1, ?2)");
    for (const auto& [path, text] : MemoryStore::Get().nodes) {
      Bind(1, path);
      Bind(2, text);
      Require(sqlite3_step(statement_) == SQLITE_DONE, "fill a table");
      sqlite3_reset(statement_);
    }
    sqlite3_finalize(statement_);
    Execute("COMMIT");
    Prepare("SELECT text FROM node WHERE path = ?1");
  }
  ~PointRead() {
    sqlite3_finalize(statement_);
    sqlite3_close(database_);
  }
  PointRead(const PointRead&) = delete;
  PointRead& operator=(const PointRead&) = delete;

  // Copies the text of a node into `value`, as a read of a variable does.
  void Run(const std::string& path, char* value) {
    Bind(1, path);
    value[0] = '\0';
    if (sqlite3_step(statement_) == SQLITE_ROW) {
      const int length = sqlite3_column_bytes(statement_, 0);
      std::memcpy(value, sqlite3_column_text(statement_, 0), static_cast<std::size_t>(length) + 1);
    }
    sqlite3_reset(statement_);
  }

 private:
  void Execute(const char* sql) {
    Require(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) == SQLITE_OK,
            "run a statement");
  }
  void Prepare(const char* sql) {
    Require(sqlite3_prepare_v3(database_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_,
                               nullptr) == SQLITE_OK,
            "prepare a statement");
  }
  void Bind(int index, const std::string& text) {
    sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  }

  sqlite3* database_ = nullptr;
  sqlite3_stmt* statement_ = nullptr;
};

struct Sample {
  const char* name;
  const char* node;
};

// One for each depth of names. The last takes the most steps to its value.
constexpr Sample kSamples[] = {
    {"rss_DeviceName", "/sys/friendlyname"},
    {"rss_Wl2_Channel", "/lan/wireless2.4:1/channel"},
    {"rss_Upl_Ets_EncryptionKey", "/uplink/extendersite/encryptionkey"},
    {"rss_Wl5_Acl_WlAcMode", "/lan/wireless5:1/accesscontrol/wlacmode"},
};

void BeginSeries() {
  StoreFactoryDevice();
  init_RssVar();
}

void ReadOne(benchmark::State& state, const Sample& sample) {
  BeginSeries();
  PointRead point_read;
  const std::string node = sample.node;
  char value[KIOAPP_VAR_SIZE];
  char stored[4096];
  point_read.Run(node, stored);
  Require(get_RssVar(sample.name, value, 0) == 0 && std::strcmp(value, stored) == 0,
          "read the same value");
  const Pair pair = MeasurePair(
      state,
      [&] {
        get_RssVar(sample.name, value, 0);
        benchmark::DoNotOptimize(value);
      },
      [&] {
        point_read.Run(node, stored);
        benchmark::DoNotOptimize(stored);
      });
  const std::string prefix = std::string("variables: reading ") + sample.name;
  AddFigure({prefix, pair.first, "ns"});
  AddFigure({prefix + " / SQLite point read", pair.ratio, "x time", Bound::kAtMost, 0.1});
}

void SetOne(benchmark::State& state) {
  BeginSeries();
  char names[2][KIOAPP_VAR_SIZE] = {"Living room", "Home router"};
  Require(set_RssVar("rss_DeviceName", names[0]) == 0, "set a variable");
  int count = 0;
  char value[KIOAPP_VAR_SIZE];
  const Pair pair = MeasurePair(
      state, [&] { set_RssVar("rss_DeviceName", names[++count % 2]); },
      [&] { get_RssVar("rss_DeviceName", value, 0); });
  AddFigure({"variables: setting rss_DeviceName, with its rule", pair.first, "ns"});
}

// 40 variables of the access control of both radios: clients send rules in large numbers.
std::string BatchOf40() {
  std::string batch;
  for (const char* radio : {"Wl2", "Wl5"}) {
    const std::string prefix = "rss_" + std::string(radio);
    batch.append(prefix).append("_Acl_WlAcEnbl=1&");
    batch.append(prefix).append("_Acl_AcRuleNo=18&");
    for (int rule = 0; rule < 18; ++rule) {
      char pair[64];
      std::snprintf(pair, sizeof(pair), "_Acl_R%02d_MAC=02:00:5E:00:00:%02X&", rule,
                    static_cast<unsigned int>(rule));
      batch.append(prefix).append(pair);
    }
  }
  return batch;
}

void SetBatch(benchmark::State& state) {
  BeginSeries();
  const std::string batch = BatchOf40();
  Require(std::count(batch.begin(), batch.end(), '=') == kBatchSize, "count the pairs");
  std::string buffer = batch;
  char fault[KIOAPP_VAR_SIZE] = "";
  if (do_RssVar_Parser(buffer.data(), '&', fault, 0) != 0) {
    std::fprintf(stderr, "the batch is refused: %d %s\n", rssXmlData.setResult, fault);
    std::exit(1);
  }
  char name[KIOAPP_VAR_SIZE] = "Home router";
  const Pair pair = MeasurePair(
      state,
      [&] {
        buffer = batch;
        do_RssVar_Parser(buffer.data(), '&', fault, 0);
      },
      [&] { set_RssVar("rss_DeviceName", name); });
  AddFigure({"variables: a batch of 40, verified, the commands left out", pair.first, "ns"});
}

}  // namespace

void RegisterVariables() {
  for (const Sample& sample : kSamples) {
    RegisterPaired(std::string("variables/reading ") + sample.name,
                   [&sample](benchmark::State& state) { ReadOne(state, sample); });
  }
  RegisterPaired("variables/setting", SetOne);
  RegisterPaired("variables/batch", SetBatch);
}

}  // namespace kio::bench
