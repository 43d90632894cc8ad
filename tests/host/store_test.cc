#include "store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "temp_dir.h"

namespace kiohost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Optional;

class StoreTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(store_.Open(file_, Store::Mode::kCreate).ok()); }

  std::vector<std::string> Paths() {
    std::vector<std::string> paths;
    for (const Node& node : store_.List()) {
      paths.push_back(node.path);
    }
    return paths;
  }

  void Fill(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
      ASSERT_TRUE(store_.Set(path, "x")) << path;
    }
  }

  TempDir dir_;
  std::string file_ = dir_.File("store.db");
  Store store_;
};

TEST_F(StoreTest, AnAbsentNodeHasNoTextAndAnEmptyOneHas) {
  EXPECT_EQ(store_.Get("/sys/a"), std::nullopt);
  EXPECT_TRUE(store_.Set("/sys/a", ""));
  EXPECT_THAT(store_.Get("/sys/a"), Optional(std::string()));
  EXPECT_TRUE(store_.Set("/sys/a", "text"));
  EXPECT_THAT(store_.Get("/sys/a"), Optional(std::string("text")));
}

TEST_F(StoreTest, PathsCompareWithoutRegardToCase) {
  Fill({"/sys/FactoryDefault"});
  EXPECT_TRUE(store_.Set("/SYS/factorydefault", "0"));
  EXPECT_THAT(store_.Get("/sys/FACTORYDEFAULT"), Optional(std::string("0")));
  EXPECT_THAT(Paths(), ElementsAre("/sys/FactoryDefault"));
  EXPECT_TRUE(store_.Set("/sys/below/Node", "1"));
  EXPECT_TRUE(store_.Delete("/Sys/BELOW"));
  EXPECT_THAT(Paths(), ElementsAre("/sys/FactoryDefault"));
}

TEST_F(StoreTest, TextsKeepTheirCaseAndBytes) {
  const std::string text = " Wi-Fi \xC3\xA9\xFF'\"%_\n";
  EXPECT_TRUE(store_.Set("/sys/a", text));
  EXPECT_THAT(store_.Get("/sys/a"), Optional(text));
}

TEST_F(StoreTest, DeletingTakesTheSubtreeAndNothingElse) {
  Fill({"/a/b", "/a/b/c", "/a/b/c/d", "/a/b.c", "/a/b-c", "/a/bc", "/a/b0", "/a/b:1", "/a/b:1/c"});
  EXPECT_TRUE(store_.Delete("/a/b"));
  EXPECT_THAT(Paths(), ElementsAre("/a/b-c", "/a/b.c", "/a/b0", "/a/b:1", "/a/b:1/c", "/a/bc"));
}

TEST_F(StoreTest, DeletingAnInstanceLeavesTheOthers) {
  Fill({"/acl/acrule:1/mac", "/acl/acrule:2/mac", "/acl/acrule:10/mac", "/acl/acrule:1/active"});
  EXPECT_TRUE(store_.Delete("/acl/acrule:1"));
  EXPECT_THAT(Paths(), ElementsAre("/acl/acrule:10/mac", "/acl/acrule:2/mac"));
}

TEST_F(StoreTest, NothingInAPathIsAWildcard) {
  Fill({"/sys/a_b/x", "/sys/aXb/x"});
  EXPECT_TRUE(store_.Delete("/sys/a_b"));
  EXPECT_THAT(Paths(), ElementsAre("/sys/aXb/x"));
}

TEST_F(StoreTest, DeletingAnAbsentNodeIsNoError) { EXPECT_TRUE(store_.Delete("/sys/none")); }

TEST_F(StoreTest, CountsInstancesByTheHighestNumber) {
  EXPECT_EQ(store_.Get("/acl/acrule#"), std::nullopt);
  Fill({"/acl/acrule:1/mac"});
  EXPECT_THAT(store_.Get("/acl/acrule#"), Optional(std::string("1")));
  Fill({"/acl/acrule:2", "/acl/AcRule:10/mac", "/acl/acrulebook:99/mac", "/acl/acrule/mac"});
  EXPECT_THAT(store_.Get("/acl/ACRULE#"), Optional(std::string("10")));
  for (const char* path : {"/acl/acrule:10", "/acl/acrule:2", "/acl/acrule:1"}) {
    EXPECT_TRUE(store_.Delete(path));
  }
  EXPECT_EQ(store_.Get("/acl/acrule#"), std::nullopt);
}

TEST_F(StoreTest, CountsInstancesBelowAnInstance) {
  Fill({"/lan/wireless5:1/acrule:3/mac", "/lan/wireless5:2/acrule:7/mac"});
  EXPECT_THAT(store_.Get("/lan/wireless5:1/acrule#"), Optional(std::string("3")));
}

TEST_F(StoreTest, DoesNotCountInstancesBeyondTheBoundThatAnOldFileHas) {
  Fill({"/acl/acrule:3/mac"});
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &raw), SQLITE_OK);
  const Database database(raw);
  ASSERT_EQ(sqlite3_exec(raw,
                         "INSERT INTO node VALUES('/acl/acrule:4097/mac', 'x'),"
                         "('/acl/acrule:2000000000/mac', 'x'), ('/old/acrule:5000', 'x')",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  EXPECT_THAT(store_.Get("/acl/acrule#"), Optional(std::string("3")));
  EXPECT_EQ(store_.Get("/old/acrule#"), std::nullopt);
  Fill({"/acl/acrule:4096/mac"});
  EXPECT_THAT(store_.Get("/acl/acrule#"), Optional(std::string("4096")));
}

TEST_F(StoreTest, RefusesWhatIsNoNodeOrDoesNotFit) {
  for (const char* path : {"", "sys", "/sys/", "/sys#", "/a b", "/a:0", "/a'"}) {
    EXPECT_FALSE(store_.Set(path, "x")) << path;
    EXPECT_FALSE(store_.Delete(path)) << path;
    EXPECT_EQ(store_.Get(path), std::nullopt) << path;
  }
  EXPECT_TRUE(store_.Set("/sys/a", std::string(Store::kMaxTextLength, 'x')));
  EXPECT_FALSE(store_.Set("/sys/b", std::string(Store::kMaxTextLength + 1, 'x')));
  EXPECT_FALSE(store_.Set("/sys/b", std::string("a\0b", 3)));
  EXPECT_THAT(Paths(), ElementsAre("/sys/a"));
}

TEST_F(StoreTest, ListsASubtree) {
  Fill({"/sys/a", "/sys/b/c", "/sys", "/system"});
  EXPECT_THAT(store_.List("/sys"),
              ElementsAre(Node{"/sys", "x"}, Node{"/sys/a", "x"}, Node{"/sys/b/c", "x"}));
  EXPECT_THAT(store_.List("/none"), IsEmpty());
}

TEST_F(StoreTest, ARollbackRestoresEverything) {
  Fill({"/sys/a", "/sys/b"});
  const std::vector<Node> before = store_.List();
  {
    StoreTransaction transaction(&store_);
    ASSERT_TRUE(transaction.begun().ok());
    EXPECT_TRUE(store_.Set("/sys/a", "changed"));
    EXPECT_TRUE(store_.Set("/sys/new", "new"));
    EXPECT_TRUE(store_.Delete("/sys/b"));
    EXPECT_THAT(store_.Get("/sys/a"), Optional(std::string("changed")));
  }
  EXPECT_EQ(store_.List(), before);
}

TEST_F(StoreTest, OthersSeeATransactionOnlyOnceItIsCommitted) {
  Fill({"/sys/a"});
  Store other;
  ASSERT_TRUE(other.Open(file_, Store::Mode::kExisting).ok());
  StoreTransaction transaction(&store_);
  EXPECT_TRUE(store_.Set("/sys/a", "changed"));
  EXPECT_THAT(other.Get("/sys/a"), Optional(std::string("x")));
  EXPECT_TRUE(transaction.Commit().ok());
  EXPECT_THAT(other.Get("/sys/a"), Optional(std::string("changed")));
}

TEST_F(StoreTest, ATransactionWithAFailedWriteDoesNotCommit) {
  Fill({"/sys/a"});
  StoreTransaction transaction(&store_);
  EXPECT_TRUE(store_.Set("/sys/a", "changed"));
  EXPECT_FALSE(store_.Set("/sys/b", std::string(Store::kMaxTextLength + 1, 'x')));
  const Status status = transaction.Commit();
  EXPECT_EQ(status.code(), ExitCode::kStore);
  EXPECT_THAT(store_.Get("/sys/a"), Optional(std::string("x")));
}

TEST_F(StoreTest, ReplaceIsAllOrNothing) {
  Fill({"/sys/a"});
  EXPECT_FALSE(store_.Replace({{"/sys/new", "1"}, {"no path", "2"}}).ok());
  EXPECT_THAT(Paths(), ElementsAre("/sys/a"));
  EXPECT_TRUE(store_.Replace({{"/sys/new", "1"}}).ok());
  EXPECT_THAT(store_.List(), ElementsAre(Node{"/sys/new", "1"}));
}

TEST_F(StoreTest, KeepsDueActionsWithTheTransactionThatAddsThem) {
  EXPECT_EQ(store_.DueActions(), 0U);
  {
    StoreTransaction transaction(&store_);
    store_.AddDueActions(33);
  }
  EXPECT_EQ(store_.DueActions(), 0U) << "rolled back";
  for (const unsigned int actions : {33U, 0U, 16U, 1U}) {
    StoreTransaction transaction(&store_);
    store_.AddDueActions(actions);
    EXPECT_TRUE(transaction.Commit().ok());
  }
  EXPECT_TRUE(store_.WriteWithoutWait([this] { store_.RemoveDueActions(1 | 4); }));
  Store other;
  ASSERT_TRUE(other.Open(file_, Store::Mode::kExisting).ok());
  EXPECT_EQ(other.DueActions(), 48U);
  EXPECT_THAT(other.List(), IsEmpty()) << "they are no nodes";
  EXPECT_TRUE(store_.Replace({{"/sys/a", "1"}}).ok());
  EXPECT_EQ(store_.DueActions(), 0U);
}

TEST_F(StoreTest, KeepsNumbersOutsideTheNodes) {
  EXPECT_EQ(store_.Number("a"), std::nullopt);
  store_.SetNumber("a", -1);
  store_.SetNumber("b", INT64_MAX);
  store_.SetNumber("a", 7);
  EXPECT_THAT(store_.Number("a"), Optional(7));
  EXPECT_THAT(store_.Number("b"), Optional(INT64_MAX));
  EXPECT_THAT(store_.List(), IsEmpty());
  store_.RemoveNumber("a");
  EXPECT_EQ(store_.Number("a"), std::nullopt);
}

TEST_F(StoreTest, PutsOldTextsBackAndLeavesOtherNodes) {
  Fill({"/a", "/a/b", "/c", "/d", "/New", "/New/below"});
  store_.KeepOldText("/a", "old");
  store_.KeepOldText("/Gone", "");
  store_.KeepOldText("/new", std::nullopt);
  EXPECT_EQ(store_.List().size(), 6U) << "they are no nodes";
  store_.PutBackOldTexts();
  EXPECT_THAT(store_.List(),
              ElementsAre(Node{"/a", "old"}, Node{"/a/b", "x"}, Node{"/c", "x"}, Node{"/d", "x"},
                          Node{"/Gone", ""}, Node{"/New/below", "x"}));
  store_.ForgetOldTexts();
  EXPECT_TRUE(store_.Set("/a", "later"));
  store_.PutBackOldTexts();
  EXPECT_THAT(store_.Get("/a"), Optional(std::string("later")));
}

// A store of an earlier version has no table for old texts.
TEST_F(StoreTest, AStoreWithoutALaterTableGetsIt) {
  Fill({"/a"});
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, "DROP TABLE old_node", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(database);
  Store other;
  ASSERT_TRUE(other.Open(file_, Store::Mode::kCreate).ok());
  other.KeepOldText("/a", std::nullopt);
  other.PutBackOldTexts();
  EXPECT_THAT(other.List(), IsEmpty());
}

TEST_F(StoreTest, ATextThatIsThereAlreadyIsNoChange) {
  Fill({"/sys/a"});
  StoreTransaction transaction(&store_);
  EXPECT_TRUE(store_.Set("/sys/A", "x"));
  EXPECT_FALSE(store_.HasChanged());
  EXPECT_TRUE(store_.Set("/sys/a", "X"));
  EXPECT_TRUE(store_.HasChanged());
}

TEST_F(StoreTest, TellsWhetherATransactionWroteAnything) {
  Fill({"/sys/a"});
  StoreTransaction transaction(&store_);
  EXPECT_FALSE(store_.HasChanged());
  EXPECT_THAT(store_.Get("/sys/a"), Optional(std::string("x")));
  EXPECT_FALSE(store_.HasChanged());
  Fill({"/sys/b"});
  EXPECT_TRUE(store_.HasChanged());
}

// The size of a file, 0 when it is not there.
size_t SizeOf(const std::string& file) {
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  return error ? 0 : static_cast<size_t>(size);
}

TEST_F(StoreTest, ALongLogIsBroughtIntoTheFileAlthoughOthersWait) {
  const size_t before = SizeOf(file_);
  Fill({"/sys/a"});
  EXPECT_TRUE(store_.CheckpointWhenDue(false));
  EXPECT_TRUE(store_.CheckpointWhenDue(true)) << "not at once";
  EXPECT_EQ(SizeOf(file_), before);
  constexpr size_t kNodes = 1100;
  StoreTransaction transaction(&store_);
  for (size_t i = 0; i < kNodes; ++i) {
    store_.Set("/n" + std::to_string(i), std::string(Store::kMaxTextLength, 'x'));
  }
  EXPECT_TRUE(transaction.Commit().ok());
  EXPECT_TRUE(store_.CheckpointWhenDue(false));
  EXPECT_GT(SizeOf(file_), kNodes * Store::kMaxTextLength);
  // The log begins anew and does not grow any more.
  const size_t log = SizeOf(file_ + "-wal");
  EXPECT_TRUE(store_.Set("/sys/a", "y"));
  EXPECT_EQ(SizeOf(file_ + "-wal"), log);
}

TEST_F(StoreTest, WhatAReaderNeedsStaysInTheLog) {
  Fill({"/sys/a"});
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &raw), SQLITE_OK);
  const Database database(raw);
  ASSERT_EQ(sqlite3_exec(raw, "BEGIN", nullptr, nullptr, nullptr), SQLITE_OK);
  Statement read;
  ASSERT_TRUE(read.Prepare(raw, "SELECT text FROM node WHERE path = '/sys/a'"));
  ASSERT_EQ(read.Step(), SQLITE_ROW);
  EXPECT_TRUE(store_.Set("/sys/a", "y"));
  EXPECT_TRUE(store_.Checkpoint()) << "a reader is no failure";
  read.Reset();
  ASSERT_EQ(read.Step(), SQLITE_ROW);
  EXPECT_EQ(read.Text(0), "x");
  EXPECT_THAT(store_.Get("/sys/a"), Optional(std::string("y")));
}

TEST_F(StoreTest, ACheckpointLeavesAWriterAlone) {
  Fill({"/sys/a"});
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &raw), SQLITE_OK);
  const Database database(raw);
  ASSERT_EQ(sqlite3_exec(raw, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_TRUE(store_.Checkpoint()) << "a writer is no failure";
  ASSERT_EQ(sqlite3_exec(raw, "ROLLBACK", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_TRUE(store_.Checkpoint());
  EXPECT_EQ(store_.Number("checkpoints"), 1) << "one of the two began the log anew";
}

TEST_F(StoreTest, UsesAWriteAheadLogThatReachesTheDisk) {
  Fill({"/sys/a"});
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &raw), SQLITE_OK);
  const Database database(raw);
  Statement mode;
  ASSERT_TRUE(mode.Prepare(raw, "PRAGMA journal_mode"));
  ASSERT_EQ(mode.Step(), SQLITE_ROW);
  EXPECT_EQ(mode.Text(0), "wal");
  EXPECT_TRUE(store_.Checkpoint());
}

// As an error of the disk does.
TEST_F(StoreTest, WhatFollowsATransactionThatSqliteHasUndoneIsNotWritten) {
  Fill({"/sys/a"});
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file_.c_str(), &raw), SQLITE_OK);
  const Database database(raw);
  ASSERT_EQ(sqlite3_exec(raw,
                         "CREATE TRIGGER undo BEFORE INSERT ON node WHEN NEW.path = '/sys/bad'"
                         " BEGIN SELECT RAISE(ROLLBACK, 'undone'); END",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  StoreTransaction transaction(&store_);
  ASSERT_TRUE(transaction.begun().ok());
  EXPECT_TRUE(store_.Set("/sys/b", "x"));
  EXPECT_FALSE(store_.Set("/sys/bad", "x"));
  EXPECT_FALSE(store_.Set("/sys/c", "x"));
  EXPECT_FALSE(store_.Delete("/sys/a"));
  store_.SetNumber("number", 1);
  EXPECT_FALSE(transaction.Commit().ok());
  EXPECT_THAT(Paths(), ElementsAre("/sys/a"));
  EXPECT_EQ(store_.Number("number"), std::nullopt);
  EXPECT_TRUE(store_.Set("/sys/d", "x"));
}

TEST(StoreOpenTest, SaysWhyAStoreCannotBeUsed) {
  const TempDir dir;
  Store store;
  Status status = store.Open(dir.File("none/store.db"), Store::Mode::kCreate);
  EXPECT_EQ(status.code(), ExitCode::kStore);
  EXPECT_THAT(status.reason(), HasSubstr("none/store.db"));

  EXPECT_EQ(Store().Open(dir.File("absent.db"), Store::Mode::kExisting).code(), ExitCode::kStore);

  std::ofstream(dir.File("text")) << std::string(2000, 'x');
  EXPECT_EQ(Store().Open(dir.File("text"), Store::Mode::kCreate).code(), ExitCode::kStore);

  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(dir.File("other.db").c_str(), &raw), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(raw, "CREATE TABLE node(id)", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(raw);
  status = Store().Open(dir.File("other.db"), Store::Mode::kCreate);
  EXPECT_EQ(status.code(), ExitCode::kStore);
  EXPECT_THAT(status.reason(), HasSubstr("another program"));
}

TEST(StoreOpenTest, TakesAFileOfTheFormerKind) {
  const TempDir dir;
  const std::string file = dir.File("store.db");
  {
    Store store;
    ASSERT_TRUE(store.Open(file, Store::Mode::kCreate).ok());
    EXPECT_TRUE(store.Set("/sys/a", "kept"));
  }
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &raw), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(raw, "DROP TABLE state", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(raw);
  for (const auto mode : {Store::Mode::kExisting, Store::Mode::kCreate}) {
    Store store;
    ASSERT_TRUE(store.Open(file, mode).ok());
    EXPECT_THAT(store.Get("/sys/a"), Optional(std::string("kept")));
    EXPECT_EQ(store.DueActions(), 0U);
  }
}

TEST(StoreOpenTest, KeepsItsNodesBetweenRuns) {
  const TempDir dir;
  {
    Store store;
    ASSERT_TRUE(store.Open(dir.File("store.db"), Store::Mode::kCreate).ok());
    EXPECT_TRUE(store.IsEmpty());
    EXPECT_TRUE(store.Set("/sys/a", "kept"));
  }
  Store store;
  ASSERT_TRUE(store.Open(dir.File("store.db"), Store::Mode::kExisting).ok());
  EXPECT_FALSE(store.IsEmpty());
  EXPECT_THAT(store.Get("/sys/a"), Optional(std::string("kept")));
}

}  // namespace
}  // namespace kiohost
