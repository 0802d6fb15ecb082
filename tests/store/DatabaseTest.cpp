#include "platform/ReceiverError.h"
#include "store/Database.h"
#include "store/FailureOf.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

constexpr Database::Options creating{.create = true, .readOnly = false};

/// A new database with one table of a column without a type, so that values stay what they are.
class DatabaseFile : public testing::Test {
protected:
  DatabaseFile() { database.exec("PRAGMA synchronous=OFF; CREATE TABLE t (x)"); }

  /// The row of `sql`, which makes exactly one.
  template <typename T>
  std::optional<T> only(const std::string& sql) const {
    Statement query = database.prepare(sql);
    const std::optional<Row> row = query.next();
    EXPECT_TRUE(row) << sql;
    return row->find<T>(0);
  }

  TemporaryFolder folder;
  std::string path = (folder / "file.sqlite").string();
  Database database{path, creating};
};

TEST_F(DatabaseFile, GivesEveryColumnByItsType) {
  EXPECT_EQ(only<std::string>("SELECT 'text'"), "text");
  EXPECT_EQ(only<double>("SELECT 1.5"), 1.5);
  EXPECT_EQ(only<std::int64_t>("SELECT -9223372036854775807 - 1"), INT64_MIN);
}

TEST_F(DatabaseFile, GivesNullAsAbsent) {
  EXPECT_EQ(only<std::string>("SELECT NULL"), std::nullopt);
  EXPECT_EQ(only<double>("SELECT NULL"), std::nullopt);
  EXPECT_EQ(only<std::int64_t>("SELECT NULL"), std::nullopt);
}

TEST_F(DatabaseFile, TakesNumbersForEachOther) {
  EXPECT_EQ(only<double>("SELECT 7"), 7.0);
  EXPECT_EQ(only<std::int64_t>("SELECT 7.9"), 7);
  EXPECT_EQ(only<std::string>("SELECT 7"), "7");
}

TEST_F(DatabaseFile, TakesNeitherTextNorBlobForANumber) {
  for (const char* sql : {"SELECT '7'", "SELECT ''", "SELECT x'37'"}) {
    EXPECT_EQ(only<double>(sql), std::nullopt) << sql;
    EXPECT_EQ(only<std::int64_t>(sql), std::nullopt) << sql;
  }
}

TEST_F(DatabaseFile, RepairsText) {
  EXPECT_EQ(only<std::string>("SELECT CAST(x'41FF42' AS TEXT)"),
            "A\xEF\xBF\xBD"
            "B");
  EXPECT_EQ(only<std::string>("SELECT x'E6ADA5'"), "步");
  EXPECT_EQ(only<std::string>("SELECT x''"), "");
}

TEST_F(DatabaseFile, GivesTextWithAZeroByteWhole) {
  EXPECT_EQ(only<std::string>("SELECT CAST(x'610062' AS TEXT)"), "a\0b"s);
}

TEST_F(DatabaseFile, ReadsNullTextAsEmpty) {
  Statement query = database.prepare("SELECT NULL, 'a'");
  const std::optional<Row> row = query.next();
  EXPECT_EQ(row->text(0), "");
  EXPECT_EQ(row->text(1), "a");
}

// SQLite's limit of memory can only be lowered, so the process that lowers it ends.
TEST(DatabaseMemoryDeathTest, DoesNotTakeTextForEmptyWhereMemoryIsShort) {
  const TemporaryFolder folder;
  const auto readWithoutMemory = [path = (folder / "wide.sqlite").string()] {
    Database database(path, creating);
    Database another(path, creating);
    // Stored in another encoding, a text is converted when it is read, which takes memory.
    database.exec("PRAGMA encoding='UTF-16'; CREATE TABLE t (x)");
    database.exec("INSERT INTO t VALUES (printf('%.*c', 1000000, 'x'))");
    Statement query = database.prepare("SELECT x FROM t");
    const std::optional<Row> row = query.next();
    failureOf([&another] { another.exec("PRAGMA hard_heap_limit=1"); });
    try {
      std::exit(row->bytes(0).empty() ? 1 : 2);
    } catch (const std::bad_alloc&) {
      std::exit(0);
    }
  };
  EXPECT_EXIT(readWithoutMemory(), testing::ExitedWithCode(0), "");
}

/// The type and the value, as SQLite writes them, of the one row of t.
class BoundValue : public DatabaseFile {
protected:
  template <typename Value>
  std::string stored(const Value& value) {
    database.exec("DELETE FROM t");
    database.prepare("INSERT INTO t VALUES (?)").bind(1, value).run();
    return only<std::string>("SELECT typeof(x) || ' ' || quote(x) FROM t").value();
  }
};

TEST_F(BoundValue, KeepsItsType) {
  EXPECT_EQ(stored("Kim's"), "text 'Kim''s'");
  EXPECT_EQ(stored(std::string_view()), "text ''");
  EXPECT_EQ(stored(""), "text ''");
  EXPECT_EQ(stored(2.5), "real 2.5");
  EXPECT_EQ(stored(std::int64_t{7}), "integer 7");
}

TEST_F(BoundValue, IsNullWhenAbsent) {
  EXPECT_EQ(stored(std::optional<std::string>()), "null NULL");
  EXPECT_EQ(stored(std::optional<double>()), "null NULL");
  EXPECT_EQ(stored(std::optional<std::string>("")), "text ''");
  EXPECT_EQ(stored(std::numeric_limits<double>::quiet_NaN()), "null NULL");
}

TEST_F(BoundValue, IsACopy) {
  Statement insertion = database.prepare("INSERT INTO t VALUES (?)");
  std::string text = "before";
  insertion.bind(1, text);
  text = "after!";
  insertion.run();
  EXPECT_EQ(only<std::string>("SELECT x FROM t"), "before");
}

TEST_F(DatabaseFile, LeavesUnboundValuesNull) {
  database.prepare("INSERT INTO t VALUES (?)").bindNull(1).run();
  EXPECT_EQ(only<std::int64_t>("SELECT COUNT(*) FROM t WHERE x IS NULL"), 1);
}

TEST_F(DatabaseFile, RunsAStatementAgainWithNewValues) {
  Statement insertion = database.prepare("INSERT INTO t VALUES (?)");
  for (const std::int64_t number : {1, 2, 3}) insertion.bind(1, number).run();
  EXPECT_EQ(only<std::int64_t>("SELECT SUM(x) FROM t"), 6);
}

TEST_F(DatabaseFile, ReadsAllRowsInTheirOrder) {
  database.exec("INSERT INTO t VALUES (3), (1), (2)");
  Statement query = database.prepare("SELECT x FROM t ORDER BY x DESC");

  const auto numbers =
      query.readAll([](const Row& row) { return row.find<std::int64_t>(0).value_or(0); });

  EXPECT_EQ(numbers, (std::vector<std::int64_t>{3, 2, 1}));
}

TEST_F(DatabaseFile, HasNoRowAfterTheLast) {
  Statement query = database.prepare("SELECT x FROM t");
  EXPECT_FALSE(query.next());
}

TEST_F(DatabaseFile, SaysWhyAStatementCannotBePrepared) {
  EXPECT_EQ(failureOf([&] { database.prepare("SELECT * FROM missing"); }),
            "prepare 失败:no such table: missing");
  EXPECT_EQ(failureOf([&] { database.prepare("SELEC 1"); }),
            "prepare 失败:near \"SELEC\": syntax error");
}

TEST_F(DatabaseFile, RefusesToPrepareNothing) {
  for (const char* sql : {"", "  ", "-- nothing"}) {
    EXPECT_EQ(failureOf([&] { database.prepare(sql); }), "prepare 失败:not an error") << sql;
  }
}

TEST_F(DatabaseFile, SaysWhyAStepFails) {
  const auto step = [](Statement statement) { return failureOf([&] { statement.next(); }); };

  EXPECT_EQ(step(database.prepare("SELECT abs(-9223372036854775807 - 1)")),
            "读取失败:integer overflow");
  EXPECT_EQ(step(database.prepare("SELECT abs(-9223372036854775807 - 1)", "count: ")),
            "count: integer overflow");
}

TEST_F(DatabaseFile, SaysWhyAValueCannotBeBound) {
  Statement query = database.prepare("SELECT ?");
  EXPECT_EQ(failureOf([&] { query.bind(2, "text"); }), "读取失败:column index out of range");
}

TEST_F(DatabaseFile, SaysWhyAScriptFails) {
  EXPECT_EQ(failureOf([&] { database.exec("DROP TABLE missing"); }),
            "SQL 失败:no such table: missing");
}

/// The facts of what `act` fails with.
template <typename Act>
DatabaseError::Facts factsOf(Act act) {
  try {
    act();
  } catch (const DatabaseError& error) {
    return error.facts;
  }
  ADD_FAILURE() << "nothing failed";
  return {};
}

TEST_F(DatabaseFile, TellsAFullDiskFromOtherFailures) {
  database.exec("PRAGMA max_page_count=3");
  try {
    database.exec("INSERT INTO t VALUES (zeroblob(100000))");
    ADD_FAILURE() << "it fitted";
  } catch (const DatabaseError& error) {
    EXPECT_TRUE(error.isDiskFull());
    EXPECT_EQ(error.message, "SQL 失败:database or disk is full");
  }
  try {
    database.prepare("SELECT * FROM missing");
    ADD_FAILURE() << "there is such a table";
  } catch (const DatabaseError& error) {
    EXPECT_FALSE(error.isDiskFull());
    EXPECT_EQ(error.message, "prepare 失败:no such table: missing");
  }
}

TEST_F(DatabaseFile, TellsAReasonApartFromTheWordsBeforeIt) {
  const DatabaseError::Facts step =
      factsOf([&] { database.prepare("SELECT abs(-9223372036854775807 - 1)").next(); });
  EXPECT_EQ(step.act, DatabaseError::Act::work);
  EXPECT_EQ(step.reason, "integer overflow");
  EXPECT_EQ(step.systemError, 0);

  std::filesystem::create_directory(folder / "folder");
  const DatabaseError::Facts opening =
      factsOf([&] { Database((folder / "folder").string(), creating); });
  EXPECT_EQ(opening.act, DatabaseError::Act::open);
  EXPECT_EQ(opening.reason, "unable to open database file");

  const DatabaseError::Facts looking = factsOf([&] { Database("/dev/null", creating); });
  EXPECT_EQ(looking.act, DatabaseError::Act::look);
  EXPECT_EQ(looking.reason, "/dev/null");
}

TEST_F(DatabaseFile, RunsAScriptUntilItFails) {
  failureOf([&] { database.exec("INSERT INTO t VALUES (1); oops; INSERT INTO t VALUES (2)"); });
  EXPECT_EQ(only<std::int64_t>("SELECT COUNT(*) FROM t"), 1);
}

TEST_F(DatabaseFile, RepairsWhatAFailureQuotes) {
  EXPECT_EQ(failureOf([&] { database.prepare("SELECT \xFF"); }),
            "prepare 失败:no such column: \xEF\xBF\xBD");
  EXPECT_EQ(failureOf([&] { database.exec("SELECT \xFF"); }),
            "SQL 失败:no such column: \xEF\xBF\xBD");
}

TEST_F(DatabaseFile, IsNotWrittenThroughAReader) {
  Database reader(path, {});
  EXPECT_EQ(failureOf([&] { reader.exec("INSERT INTO t VALUES (1)"); }),
            "SQL 失败:attempt to write a readonly database");
}

TEST_F(DatabaseFile, WaitsAMinuteForAWriter) {
  EXPECT_EQ(only<std::int64_t>("PRAGMA busy_timeout"), 60000);
}

TEST_F(DatabaseFile, WaitsAsLongAsItIsTold) {
  const Database impatient(path, {.patienceMilliseconds = 25});
  Statement query = impatient.prepare("PRAGMA busy_timeout");
  EXPECT_EQ(query.next()->find<std::int64_t>(0), 25);
}

TEST_F(DatabaseFile, ShowsNoViewToAReader) {
  database.exec("CREATE VIEW v AS SELECT * FROM t");
  const Database reader(path, {});
  EXPECT_EQ(failureOf([&] { reader.prepare("SELECT * FROM v"); }),
            "prepare 失败:access to view \"v\" prohibited");
  EXPECT_EQ(failureOf([&] { reader.prepare("SELECT * FROM t"); }), "");
}

TEST_F(DatabaseFile, KnowsNoVirtualTables) {
  EXPECT_EQ(failureOf([&] { database.exec("CREATE VIRTUAL TABLE v USING fts5(x)"); }),
            "SQL 失败:no such module: fts5");
}

TEST_F(DatabaseFile, MayNotChangeItsOwnSchemaTable) {
  failureOf([&] { database.exec("PRAGMA writable_schema=ON"); });
  EXPECT_NE(failureOf([&] { database.exec("UPDATE sqlite_master SET sql = ''"); }), "");
}

TEST(DatabaseOpening, SaysWhyItFails) {
  const TemporaryFolder folder;
  EXPECT_EQ(failureOf([&] { Database(folder.path().string(), {}); }), "打不开库:disk I/O error");
  EXPECT_EQ(failureOf([&] { Database((folder / "missing").string(), {}); }),
            "打不开库:unable to open database file");
}

TEST(DatabaseOpening, CreatesNothingUnlessAsked) {
  const TemporaryFolder folder;
  failureOf([&] { Database((folder / "missing").string(), {.create = false, .readOnly = false}); });
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(DatabaseOpening, SaysThatTheWishContradictsItself) {
  const TemporaryFolder folder;
  EXPECT_EQ(
      failureOf([&] { Database((folder / "file").string(), {.create = true, .readOnly = true}); }),
      "打不开库:bad parameter or other API misuse");
}

}  // namespace
