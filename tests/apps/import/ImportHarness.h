#pragma once
// Whole imports into a data root of their own.

#include "apps/import/ExportText.h"
#include "import/Failure.h"
#include "import/Import.h"
#include "platform/Files.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

inline constexpr double now = 1717300000;

/// A data root and an export beside it.
class Import : public testing::Test {
protected:
  Report importFor(const std::string& name, const std::optional<std::string>& id = {}) const {
    std::ostringstream unseen;
    return runImport({.dataRoot = root(),
                      .name = name,
                      .id = id,
                      .timeZone = askedZone,
                      .source = folder / "export.xml"},
                     {.progress = unseen,
                      .progressKind = Importer::Progress::Kind::log,
                      .lang = SummaryLang::en,
                      .clock = [] { return now; },
                      .timeZone = machineZone});
  }

  /// What the refusal says, in English.
  std::string refusal(const std::string& name, const std::optional<std::string>& id = {}) const {
    try {
      importFor(name, id);
      return "none";
    } catch (const Failure& error) {
      return error.text(SummaryLang::en);
    }
  }

  void writeExport(const std::string& text) const { folder.write("export.xml", text); }
  void writeRoster(const nlohmann::json& roster) const {
    folder.write("root/members.json", roster.dump());
  }

  std::filesystem::path root() const { return folder / "root"; }
  nlohmann::json roster() const {
    return nlohmann::json::parse(fileContents(root() / "members.json").value());
  }

  /// Every path under the data root.
  std::vector<std::string> files() const {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root())) {
      paths.push_back(entry.path().lexically_relative(root()).string());
    }
    std::ranges::sort(paths);
    return paths;
  }

  TemporaryFolder folder;
  /// The machine's, where most of these exports are made.
  std::optional<std::string> machineZone = "Asia/Shanghai";
  std::optional<std::string> askedZone;
};

/// A roster's entry for Ann, without a paired phone.
inline nlohmann::json memberWithout(const std::string& id, const std::string& database) {
  return {{"id", id},
          {"name", "Ann"},
          {"dbPath", database},
          {"createdAt", 5},
          {"devices", nlohmann::json::array()}};
}
