#pragma once
// Censuses of exports, taken within the test's process.

#include "import/census/CensusText.h"
#include "import/census/Check.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <utility>

/// A folder with exports, and what a check makes of them. Each check takes two seconds.
class Check : public testing::Test {
protected:
  CheckOutcome checked(const std::filesystem::path& source,
                       const Interrupted& interrupted = neverInterrupted) const {
    std::ostringstream unseen;
    bool begun = false;
    return runCheck(
        {.source = source},
        {.progress = unseen,
         .progressKind = Importer::Progress::Kind::log,
         .lang = SummaryLang::en,
         .clock = [&begun] { return std::exchange(begun, true) ? 1717300002 : 1717300000; },
         .interrupted = interrupted});
  }

  CheckOutcome checkedText(const std::string& text) const {
    return checked(folder.write("export.xml", text));
  }

  std::string textOf(const std::string& text, SummaryLang lang = SummaryLang::en) const {
    return censusText(checkedText(text).census, lang);
  }

  TemporaryFolder folder;
};
