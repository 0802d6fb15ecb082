#pragma once
// Texts that are kept in files, for people to read as a whole.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

/// Whether `text` is what the golden file `name` ("get_trend/steps.en.txt") holds; the file has one
/// line feed more at its end. Under UPDATE_GOLDEN=1 the file is written instead. The suites that
/// use it are named Golden..., so that one filter rewrites all files.
testing::AssertionResult matchesGolden(const std::string& name, std::string_view text);
