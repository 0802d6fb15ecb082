#pragma once
// Expected texts in files, which people can read as a whole.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

/// Whether `text` equals the golden file `name` ("get_trend/steps.en.txt"), which has one more line
/// feed at its end. With UPDATE_GOLDEN=1 the file is written instead. The names of the suites with
/// golden files start with Golden, so that one filter rewrites all files.
testing::AssertionResult matchesGolden(const std::string& name, std::string_view text);
