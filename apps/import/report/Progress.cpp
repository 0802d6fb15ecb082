#include "import/report/Progress.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

namespace {

namespace phrases {

constexpr Phrase withTotal{"[{0}] {1}%，已读 {2} / {3} MB，{4} MB/秒，剩余 {5}",
                           "[{0}] {1}%, {2} of {3} MB, {4} MB/s, {5} left"};
constexpr Phrase withoutTotal{"已读 {0} MB，{1} MB/秒", "{0} MB, {1} MB/s"};
constexpr Phrase finishing{"已全部读取，正在统计并写入磁盘…",
                           "all read; counting, and waiting for the disk …"};

}  // namespace phrases

/// Moves to the start of the terminal's line and clears it.
constexpr std::string_view clearLine = "\r\033[K";

std::string megabytes(double bytes) { return fixedDecimals(bytes / 1e6, 1); }

/// "#####---------------" for a `share` from 0 to 1.
std::string bar(double share) {
  constexpr std::size_t length = 20;
  std::string cells(length, '-');
  const auto full = static_cast<std::size_t>(share * static_cast<double>(length));
  std::fill_n(cells.begin(), std::min(full, length), '#');
  return cells;
}

/// "1:02:03" or "2:03".
std::string duration(double seconds) {
  // A rate near zero would give years, so the duration is capped at a hundred hours.
  const auto whole = static_cast<long long>(std::ceil(std::min(seconds, 359999.0)));
  const auto twoDigits = [](long long number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  const std::string end = ":" + twoDigits(whole % 60);
  if (whole < 3600) return std::to_string(whole / 60) + end;
  return std::to_string(whole / 3600) + ":" + twoDigits(whole / 60 % 60) + end;
}

}  // namespace

Importer::Progress::Progress(std::ostream& out, Kind kind, SummaryLang lang, Clock clock,
                             std::optional<std::uint64_t> total)
    : out(out), kind(kind), lang(lang), clock(std::move(clock)), total(total) {
  began = this->clock();
  shown = began;
}

std::string Importer::Progress::text(double seconds) const {
  const auto read = static_cast<double>(done);
  const double rate = read / seconds;
  if (!total || *total == 0) {
    return filled(phrases::withoutTotal.in(lang), {megabytes(read), megabytes(rate)});
  }
  const auto all = static_cast<double>(*total);
  const double share = std::min(read / all, 1.0);
  return filled(phrases::withTotal.in(lang),
                {bar(share),
                 fixedDecimals(std::floor(100 * share), 0),
                 megabytes(read),
                 megabytes(all),
                 megabytes(rate),
                 duration(std::max(all - read, 0.0) / rate)});
}

void Importer::Progress::show(const std::string& line) {
  if (kind == Kind::terminal) {
    out << clearLine << line;
  } else {
    out << line << '\n';
  }
  out.flush();
}

void Importer::Progress::read(std::uint64_t bytes) {
  done += bytes;
  const double now = clock();
  const double interval = kind == Kind::terminal ? 0.2 : 60;
  // Otherwise a clock that was set back would stop the updates for that long.
  if (now < shown) began = shown = now;
  if (now - shown < interval || done == 0) return;
  shown = now;
  show(text(now - began));
}

void Importer::Progress::finishing() {
  if (kind == Kind::terminal) show(std::string(phrases::finishing.in(lang)));
}

Importer::Progress::~Progress() {
  if (kind == Kind::terminal) (out << clearLine).flush();
}
