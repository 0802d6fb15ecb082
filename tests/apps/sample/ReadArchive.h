#pragma once
// What lies in a zip archive.

#include <zip.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The names and texts in an archive, in its order; empty when it is not consistent.
inline std::vector<std::pair<std::string, std::string>> entriesOf(
    const std::filesystem::path& path) {
  struct Discard {
    void operator()(zip_t* archive) const { zip_discard(archive); }
  };
  const std::unique_ptr<zip_t, Discard> archive(zip_open(path.c_str(), ZIP_CHECKCONS, nullptr));
  if (!archive) return {};
  std::vector<std::pair<std::string, std::string>> entries;
  for (zip_int64_t index = 0; index < zip_get_num_entries(archive.get(), 0); ++index) {
    zip_stat_t stat;
    zip_stat_index(archive.get(), static_cast<zip_uint64_t>(index), 0, &stat);
    std::string text(stat.size, '\0');
    zip_file_t* file = zip_fopen_index(archive.get(), static_cast<zip_uint64_t>(index), 0);
    text.resize(static_cast<std::size_t>(zip_fread(file, text.data(), text.size())));
    zip_fclose(file);
    entries.emplace_back(stat.name, std::move(text));
  }
  return entries;
}
