#include "sample/life/Random.h"

namespace {

/// Distributes every bit of `number` over all 64 bits.
std::uint64_t mixed(std::uint64_t number) {
  number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9ULL;
  number = (number ^ (number >> 27)) * 0x94D049BB133111EBULL;
  return number ^ (number >> 31);
}

/// An increment that visits all 64-bit numbers before it repeats one.
constexpr std::uint64_t stride = 0x9E3779B97F4A7C15ULL;

}  // namespace

std::uint64_t Random::next() {
  state += stride;
  return mixed(state);
}

Random Random::fork(std::uint64_t subject) const {
  return Random(mixed(state + mixed(subject + stride)));
}

Random Random::fork(std::string_view subject) const {
  std::uint64_t digest = subject.size();
  for (const char letter : subject) {
    digest = mixed(digest + stride + static_cast<unsigned char>(letter));
  }
  return fork(digest);
}

double Random::uniform() { return static_cast<double>(next() >> 11) * 0x1p-53; }

double Random::between(double low, double high) { return low + (high - low) * uniform(); }

int Random::whole(int low, int high) {
  const auto count = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low + 1);
  return static_cast<int>(low + static_cast<std::int64_t>(next() % count));
}

bool Random::chance(double probability) { return uniform() < probability; }

double Random::bell(double mean, double spread) {
  const double sum = uniform() + uniform() + uniform() + uniform();
  constexpr double unitSpread = 1.7320508075688772;  // 1 / standard deviation of the sum
  return mean + spread * unitSpread * (sum - 2);
}
