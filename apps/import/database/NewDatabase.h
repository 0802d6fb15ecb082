#pragma once
// A database that an import is about to make.

#include <filesystem>

/// Removes the database and what SQLite keeps beside it, unless `keep` is called or something was
/// there before. The database is closed by then.
class NewDatabase {
public:
  explicit NewDatabase(std::filesystem::path path);
  ~NewDatabase();
  NewDatabase(const NewDatabase&) = delete;
  NewDatabase& operator=(const NewDatabase&) = delete;

  /// Its data is committed.
  void keep() { isNew = false; }

private:
  std::filesystem::path path;
  bool isNew;
};
