#include "platform/MemoryReserve.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <limits>
#include <new>

namespace {

constexpr std::size_t endless = std::numeric_limits<std::size_t>::max() / 4;

TEST(MemoryReserve, TellsWhatCouldBeHad) {
  EXPECT_TRUE(MemoryReserve::couldHave(0));
  EXPECT_TRUE(MemoryReserve::couldHave(1));
  EXPECT_TRUE(MemoryReserve::couldHave(1024 * 1024));
  EXPECT_FALSE(MemoryReserve::couldHave(endless));
}

/// The reserve is the whole process's, so each test has one of its own.
class MemoryReserveDeathTest : public testing::Test {};

// Clang's address sanitizer ends the process where memory is refused, before any handler is asked.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LARKSPUR_REFUSAL_ENDS_THE_PROCESS
#endif
#endif

#ifndef LARKSPUR_REFUSAL_ENDS_THE_PROCESS
TEST_F(MemoryReserveDeathTest, LeavesAFailureWhatItIs) {
  const auto fail = [] {
    MemoryReserve::keep();
    try {
      ::operator delete(::operator new(endless));
    } catch (const std::bad_alloc&) {
      std::_Exit(0);
    }
    std::_Exit(1);
  };
  EXPECT_EXIT(fail(), testing::ExitedWithCode(0), "");
}
#endif

TEST_F(MemoryReserveDeathTest, IsGivenToWhoeverHandlesAFailure) {
  const auto handle = [] {
    MemoryReserve::keep();
    const std::new_handler spend = std::get_new_handler();
    try {
      throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
      spend();  // returns, for memory was found
      try {
        spend();  // nothing is left
      } catch (const std::bad_alloc&) {
        MemoryReserve::restore();
        spend();
        std::_Exit(0);
      }
    }
    std::_Exit(1);
  };
  EXPECT_EXIT(handle(), testing::ExitedWithCode(0), "");
}

TEST_F(MemoryReserveDeathTest, IsGivenToWhatAnExceptionTakesDown) {
  struct Spender {
    ~Spender() { std::get_new_handler()(); }
  };
  const auto unwind = [] {
    MemoryReserve::keep();
    try {
      const Spender destroyed;
      throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
      std::_Exit(0);
    }
  };
  EXPECT_EXIT(unwind(), testing::ExitedWithCode(0), "");
}

TEST_F(MemoryReserveDeathTest, IsRefusedToWhoeverBuilds) {
  const auto build = [] {
    MemoryReserve::keep();
    try {
      std::get_new_handler()();
    } catch (const std::bad_alloc&) {
      std::_Exit(0);
    }
    std::_Exit(1);
  };
  EXPECT_EXIT(build(), testing::ExitedWithCode(0), "");
}

}  // namespace
