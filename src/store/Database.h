#pragma once
// SQLite in three types that own or borrow its handles: a connection, a statement, a row.

#include "store/DatabaseError.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

struct sqlite3;
struct sqlite3_mutex;
struct sqlite3_stmt;
class Patience;

/// The current row of a statement; valid until the statement's next step.
class Row {
public:
  explicit Row(sqlite3_stmt* statement) : statement(statement) {}

  /// Column `index`, counted from 0 in select order, as std::string, std::string_view, double or
  /// std::int64_t. SQL NULL is `nullopt`, never 0 or "". A std::string is repaired to valid UTF-8.
  /// A std::string_view is the stored bytes, valid until the next step; it allows parsing and
  /// comparing many rows without a copy. As a number, a text or a blob is `nullopt`.
  template <typename T>
  std::optional<T> find(int index) const;

  /// Column `index` as text; "" for SQL NULL.
  std::string text(int index) const;

  /// Column `index` as stored bytes; empty for SQL NULL.
  std::string_view bytes(int index) const;

private:
  sqlite3_stmt* statement;
};

template <>
std::optional<std::string> Row::find<std::string>(int index) const;
template <>
std::optional<std::string_view> Row::find<std::string_view>(int index) const;
template <>
std::optional<double> Row::find<double>(int index) const;
template <>
std::optional<std::int64_t> Row::find<std::int64_t>(int index) const;

inline std::string Row::text(int index) const { return find<std::string>(index).value_or(""); }

inline std::string_view Row::bytes(int index) const {
  return find<std::string_view>(index).value_or("");
}

/// A prepared statement and the sole owner of its handle. Positions count from 1. Failures throw
/// DatabaseError. While the statement exists, its thread holds the connection's lock; other threads
/// wait.
class Statement {
public:
  /// Fails with "prepare 失败:" and SQLite's message. A failing step reports `stepFailure` and
  /// SQLite's message.
  Statement(sqlite3* database, const std::string& sql, std::string stepFailure);

  Statement& bind(int position, std::string_view text);  ///< copies; empty is "", not NULL
  Statement& bind(int position, double number);          ///< a NaN becomes NULL
  Statement& bind(int position, std::int64_t number);

  /// Binds NULL when the value is absent.
  template <typename T>
  Statement& bind(int position, const std::optional<T>& value) {
    return value ? bind(position, *value) : bindNull(position);
  }
  Statement& bindNull(int position);

  /// Steps to the next row; `nullopt` after the last.
  std::optional<Row> next();

  /// Steps to the end, ignoring any rows, and resets the statement for new bindings.
  void run();

  /// Resets the statement for new bindings, at any row.
  void reset();

  /// Steps to the end; returns the results of `read` for each Row, in the order of the query.
  template <typename Read>
  auto readAll(Read read) {
    std::vector<std::invoke_result_t<Read, const Row&>> records;
    while (const std::optional<Row> row = next()) records.push_back(read(*row));
    return records;
  }

private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const;
  };
  struct Unlocker {
    void operator()(sqlite3_mutex* mutex) const;
  };

  void check(int result) const;

  sqlite3* database;  ///< outlives the statement
  std::unique_ptr<sqlite3_mutex, Unlocker> lock;
  std::unique_ptr<sqlite3_stmt, Finalizer> handle;
  std::string stepFailure;
};

/// How long to wait for a database that another connection has locked.
inline constexpr int usualPatienceMilliseconds = 60000;

/// One connection to one database file, closed by the destructor. SQLite serialises its use by
/// threads. The connection is hardened against malicious file content. A read-only connection sorts
/// in memory, never in a temporary file. It also refuses views: we never use views, and a malicious
/// recursive view could run for ever.
class Database {
public:
  struct Options {
    bool create = false;
    bool readOnly = true;
    int patienceMilliseconds = usualPatienceMilliseconds;  ///< 0 or less: does not wait
    Patience* shared = nullptr;  ///< replaces it; not with `interrupted`; outlives the connection
    /// Called while waiting for a lock and at intervals while a statement runs. When it returns
    /// true, the statement fails. Must not throw and must outlive the connection. Null: no
    /// interruption.
    const std::function<bool()>* interrupted = nullptr;
  };

  /// Fails with "打不开库:" and SQLite's message. Fails with "不是普通文件:" and the path when
  /// `path` is a pipe, a device or a socket, or when one of SQLite's files beside the database is
  /// not a regular file. If a pipe or a device appears there later, or a database file names one,
  /// SQLite cannot open it; opening a pipe would wait for ever.
  Database(const std::string& path, Options options);

  /// A statement, ready to bind and step.
  Statement prepare(const std::string& sql, std::string stepFailure = "读取失败:") const;

  /// Runs one or more statements without result rows. Fails with "SQL 失败:" and SQLite's message.
  void exec(const std::string& sql);

private:
  struct Closer {
    void operator()(sqlite3* database) const;
  };

  /// The callbacks of a running or waiting statement. SQLite calls them from C: no exception may
  /// leave them.
  struct Waiting {
    const std::function<bool()>* interrupted;
    int patienceMilliseconds;

    static int triesAgain(void* self, int attempts);
    static int stops(void* self);
  };

  bool askWhetherInterrupted(const Options& options);

  std::unique_ptr<Waiting> waiting;  ///< SQLite keeps its address, so it must outlive the handle
  std::unique_ptr<sqlite3, Closer> handle;
};
