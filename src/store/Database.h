#pragma once
// SQLite behind three types that own or borrow its handles: a connection, a statement, a row.

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

/// The present row of a statement; valid until the statement steps again.
class Row {
public:
  explicit Row(sqlite3_stmt* statement) : statement(statement) {}

  /// Column `index`, counted from 0 in select order, as std::string, std::string_view, double or
  /// std::int64_t. SQL NULL is `nullopt`, never 0 or "". A std::string is repaired to valid UTF-8.
  /// A std::string_view holds the bytes as they are stored, until the statement steps again: for
  /// parsing and comparing many rows without copying any. A text or a blob is no number: `nullopt`
  /// where a number is asked for.
  template <typename T>
  std::optional<T> find(int index) const;

  /// Column `index` as text, "" for SQL NULL.
  std::string text(int index) const;

  /// Column `index` as stored bytes, empty for SQL NULL.
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

/// A prepared statement and the sole owner of its handle. Positions count from 1. Failures leave as
/// DatabaseError. The connection belongs to the statement's thread while it lives: another waits.
class Statement {
public:
  /// Fails with "prepare 失败:" and SQLite's message. A step that fails says `stepFailure` and
  /// SQLite's message.
  Statement(sqlite3* database, const std::string& sql, std::string stepFailure);

  Statement& bind(int position, std::string_view text);  ///< copies; empty is "", not NULL
  Statement& bind(int position, double number);          ///< a NaN becomes NULL
  Statement& bind(int position, std::int64_t number);

  /// NULL when the value is absent.
  template <typename T>
  Statement& bind(int position, const std::optional<T>& value) {
    return value ? bind(position, *value) : bindNull(position);
  }
  Statement& bindNull(int position);

  /// Goes to the next row; `nullopt` after the last.
  std::optional<Row> next();

  /// Steps to the end, passing over any rows, and makes the statement ready for new bindings.
  void run();

  /// Makes the statement ready for new bindings, wherever it stands.
  void reset();

  /// Steps to the end; returns what `read` makes of each Row, in the order of the query.
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

/// How long a database that someone else has locked is waited for.
inline constexpr int usualPatienceMilliseconds = 60000;

/// One connection to one database file, closed by the destructor. Serialised by SQLite and hardened
/// against what a file may contain. One that only reads keeps what it sorts in memory, never in a
/// temporary file, and refuses views: no table of ours is one, and a view may go on for ever.
class Database {
public:
  struct Options {
    bool create = false;
    bool readOnly = true;
    int patienceMilliseconds = usualPatienceMilliseconds;  ///< 0 or less: not at all
    Patience* shared = nullptr;  ///< instead, not with `interrupted`; outlives the connection
    /// Asked while a lock is waited for and, every now and then, while a statement works: true ends
    /// either, and the statement fails. Throws nothing and outlives the connection; null: never.
    const std::function<bool()>* interrupted = nullptr;
  };

  /// Fails with "打不开库:" and SQLite's message. What is no file at `path`, or where SQLite keeps
  /// its files beside a database, fails with "不是普通文件:" and its path. What takes such a place
  /// later, or is named by a file, SQLite cannot open: it waits for no pipe.
  Database(const std::string& path, Options options);

  /// A statement ready to bind and step.
  Statement prepare(const std::string& sql, std::string stepFailure = "读取失败:") const;

  /// Runs one or more statements without result rows. Fails with "SQL 失败:" and SQLite's message.
  void exec(const std::string& sql);

private:
  struct Closer {
    void operator()(sqlite3* database) const;
  };

  /// What SQLite asks while it works or waits. Its functions are C: no exception may leave them.
  struct Waiting {
    const std::function<bool()>* interrupted;
    int patienceMilliseconds;

    static int triesAgain(void* self, int attempts);
    static int stops(void* self);
  };

  bool askWhetherInterrupted(const Options& options);

  std::unique_ptr<Waiting> waiting;  ///< SQLite has its address, so it goes after the handle
  std::unique_ptr<sqlite3, Closer> handle;
};
