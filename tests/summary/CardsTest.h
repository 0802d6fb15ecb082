#pragma once
// What the tests of all cards share: rows, texts and a member.

#include "summary/Cards.h"
#include "support/MemorySource.h"
#include "support/Moment.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

inline constexpr std::optional<std::int64_t> uncounted = std::nullopt;

inline const char* const unauthorized = "no data received (permission may be off; unconfirmed)";
inline const char* const noWatch = "not collected (no Apple Watch detected)";
inline const char* const fillingIn = "history still filling in";
inline const char* const noComparison = "no comparable period yet";

/// A row with a figure.
inline Metric figure(const std::string& label, double value, const std::string& unit,
                     std::optional<std::int64_t> samples, const std::string& text) {
  return {label, value, unit, samples, text, DataState::present};
}

/// A row without one.
inline Metric gap(const std::string& label, const std::string& text, DataState state) {
  return {label, std::nullopt, "", std::nullopt, text, state};
}

/// Cards about one member at noon of 17 March 2024, whose history is long and complete unless a
/// test says otherwise. "The last 90 days" begin on 18 December 2023, "the last 30" on 16 February
/// 2024; a year ago they ended on 17 March 2023.
class CardsTest : public testing::Test {
protected:
  CardsTest() {
    source.covered.records = 1000;
    source.covered.firstDay = "2015-01-01";
    source.covered.lastDay = "2024-03-17";
    source.covered.typeCount = 1;
  }

  SummaryCard card(const std::string& key, SummaryLang lang = SummaryLang::en) const {
    const SummaryEngine engine(source, moment("2024-03-17 12:00:00 +0000"), lang, {});
    for (const SummaryCard& card : Cards::all({engine, source.covered, source.types, hasWatch})) {
      if (card.key == key) return card;
    }
    ADD_FAILURE() << "no card " << key;
    return {};
  }

  MemorySource source;
  bool hasWatch = false;
};
