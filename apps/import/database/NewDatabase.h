#pragma once
// A database that an import is about to create.

#include <filesystem>

/// The destructor removes the database and SQLite's files beside it, unless `keep` was called or a
/// file existed before. The database must be closed by then.
class NewDatabase {
public:
  explicit NewDatabase(std::filesystem::path path);
  ~NewDatabase();
  NewDatabase(const NewDatabase&) = delete;
  NewDatabase& operator=(const NewDatabase&) = delete;

  /// Call this after the commit.
  void keep() { isNew = false; }

private:
  std::filesystem::path path;
  bool isNew;
};
