// Linux and similar systems: languages and digits come from the environment and the locale's own
// files.

#include "platform/Files.h"
#include "platform/System.h"
#include "platform/Text.h"

#include <locale.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace {

std::optional<std::string> firstSet(std::initializer_list<const char*> names) {
  for (const char* name : names) {
    if (std::optional<std::string> value = System::environment(name)) return value;
  }
  return std::nullopt;
}

/// The value of the last line "NAME=value" or "NAME="value"" of a settings file; "" when there is
/// no such line.
std::string setting(std::string_view file, std::string_view name) {
  std::string_view value;
  while (!file.empty()) {
    std::string_view line = file.substr(0, file.find('\n'));
    file.remove_prefix(std::min(file.size(), line.size() + 1));
    if (!line.starts_with(name) || !line.substr(name.size()).starts_with("=")) continue;
    line.remove_prefix(name.size() + 1);
    const bool quoted = line.size() >= 2 && (line.front() == '"' || line.front() == '\'') &&
                        line.back() == line.front();
    value = quoted ? line.substr(1, line.size() - 2) : line;
  }
  return std::string(value);
}

std::vector<std::string> languagesIn(const std::filesystem::path& file) {
  const std::string contents = fileContents(file).value_or("");
  std::vector<std::string> tags = System::languageTags(setting(contents, "LANGUAGE"));
  const std::string lang = setting(contents, "LANG");
  if (!lang.empty()) tags.push_back(lang);
  return tags;
}

/// The machine-wide languages, from the file of newer systems or else that of older ones.
std::vector<std::string> machineLanguages(const std::filesystem::path& etc) {
  std::vector<std::string> tags = languagesIn(etc / "locale.conf");
  return tags.empty() ? languagesIn(etc / "default" / "locale") : tags;
}

}  // namespace

std::vector<std::string> System::preferredLanguages(const std::filesystem::path& etc) {
  const std::optional<std::string> list = System::environment("LANGUAGE");
  const std::optional<std::string> locale = firstSet({"LC_ALL", "LC_MESSAGES", "LANG"});
  if (!list && !locale) return machineLanguages(etc);
  std::vector<std::string> tags = System::languageTags(list.value_or(""));
  if (locale) tags.push_back(*locale);
  return tags;
}

std::vector<std::string> System::bundleLocalizations() { return {}; }

std::vector<std::string> System::bundlePreferredLocalizations() { return {}; }

namespace {

using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)>;

/// `text` of the thread's current locale as UTF-8. A separator has one or two characters. Often it
/// is a no-break space, a single byte in older character sets.
std::string separatorAsUTF8(std::string_view text) {
  std::string converted;
  std::mbstate_t state{};
  while (!text.empty()) {
    wchar_t character = 0;
    const std::size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
    if (length == 0 || length > text.size()) return ",";
    converted += utf8(static_cast<char32_t>(character));
    text.remove_prefix(length);
  }
  return converted;
}

}  // namespace

DigitGrouping System::digitGrouping() {
  const std::string name = firstSet({"LC_ALL", "LC_NUMERIC", "LANG"}).value_or("C");
  if (name == "C" || name == "POSIX" || name.starts_with("C.")) return {};
  // A separate locale object: the process keeps the C locale, so printf keeps its decimal point.
  const Locale locale(newlocale(LC_NUMERIC_MASK | LC_CTYPE_MASK, name.c_str(), locale_t{}),
                      &freelocale);
  if (!locale) return {};
  const locale_t previous = uselocale(locale.get());
  const lconv* conventions = localeconv();
  DigitGrouping grouping{separatorAsUTF8(conventions->thousands_sep), conventions->grouping};
  uselocale(previous);
  return grouping;
}

void System::forbidDumps() {
  // If the kernel pipes core files to a program, only the first setting has an effect; otherwise
  // both do.
  constexpr rlimit none{0, 0};
  if (prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0 || setrlimit(RLIMIT_CORE, &none) != 0) {
    throw std::system_error(errno, std::generic_category(), "core files");
  }
}

void System::returnFreedMemory() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

std::vector<std::filesystem::path> System::filesOfTheLibrary() {
  // Character sets are modules in a library folder, whose name differs between systems.
  std::vector<std::filesystem::path> files{
      "/etc/localtime", "/usr/share/zoneinfo", "/usr/share/locale", "/usr/lib", "/usr/lib64"};
  for (const char* name : {"TZDIR", "LOCPATH", "LOCALE_ARCHIVE", "GCONV_PATH"}) {
    for (const std::string& path : languageTags(environment(name).value_or(""))) {
      files.emplace_back(path);
    }
  }
  // TZ may name a file: ":/usr/share/zoneinfo/Europe/Berlin".
  const std::string zone = environment("TZ").value_or("");
  const std::string file = zone.starts_with(':') ? zone.substr(1) : zone;
  if (file.starts_with('/')) files.emplace_back(file);
  return files;
}
