// macOS: the languages of the user and of the bundle, and the user's digits, from CoreFoundation.

#include "platform/System.h"

#include <CoreFoundation/CoreFoundation.h>
#include <sys/resource.h>

#include <cerrno>
#include <cstddef>
#include <memory>
#include <system_error>
#include <type_traits>
#include <utility>

namespace {

struct Releaser {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns the object of a "Copy" or "Create" function; may be empty.
template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, Releaser>;

/// `string` in UTF-8; "" for a null string.
std::string textOf(CFStringRef string) {
  if (string == nullptr) return "";
  const CFIndex size =
      CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
  std::string text(static_cast<std::size_t>(size), '\0');
  if (!CFStringGetCString(string, text.data(), size, kCFStringEncodingUTF8)) return "";
  text.resize(text.find('\0'));
  return text;
}

std::vector<std::string> textsOf(CFArrayRef array) {
  std::vector<std::string> texts;
  const CFIndex count = array == nullptr ? 0 : CFArrayGetCount(array);
  for (CFIndex index = 0; index < count; ++index) {
    texts.push_back(textOf(static_cast<CFStringRef>(CFArrayGetValueAtIndex(array, index))));
  }
  return texts;
}

Owned<CFArrayRef> localizationsOfTheBundle() {
  const CFBundleRef bundle = CFBundleGetMainBundle();
  if (bundle == nullptr) return nullptr;
  return Owned<CFArrayRef>(CFBundleCopyBundleLocalizations(bundle));
}

}  // namespace

/// The system's list is not in `etc`. LANGUAGE, which macOS itself never sets, has precedence. So
/// the user can choose a language for one program, as on other systems.
std::vector<std::string> System::preferredLanguages(const std::filesystem::path& /*etc*/) {
  std::vector<std::string> tags = languageTags(environment("LANGUAGE").value_or(""));
  const Owned<CFArrayRef> preferred(CFLocaleCopyPreferredLanguages());
  for (std::string& tag : textsOf(preferred.get())) tags.push_back(std::move(tag));
  return tags;
}

std::vector<std::string> System::bundleLocalizations() {
  return textsOf(localizationsOfTheBundle().get());
}

std::vector<std::string> System::bundlePreferredLocalizations() {
  const Owned<CFArrayRef> localizations = localizationsOfTheBundle();
  if (!localizations) return {};
  const Owned<CFArrayRef> preferred(
      CFBundleCopyPreferredLocalizationsFromArray(localizations.get()));
  return textsOf(preferred.get());
}

namespace {

/// A string or number property of `formatter`; empty when it has none.
template <typename Reference>
Owned<Reference> property(CFNumberFormatterRef formatter, CFStringRef key) {
  return Owned<Reference>(static_cast<Reference>(CFNumberFormatterCopyProperty(formatter, key)));
}

/// A group size in the C library's form; 0 when there is none.
char groupSize(CFNumberFormatterRef formatter, CFStringRef key) {
  const Owned<CFNumberRef> number = property<CFNumberRef>(formatter, key);
  int size = 0;
  if (number) CFNumberGetValue(number.get(), kCFNumberIntType, &size);
  return size > 0 && size < 10 ? static_cast<char>(size) : '\0';
}

}  // namespace

DigitGrouping System::digitGrouping() {
  const Owned<CFLocaleRef> locale(CFLocaleCopyCurrent());
  const Owned<CFNumberFormatterRef> formatter(
      CFNumberFormatterCreate(nullptr, locale.get(), kCFNumberFormatterDecimalStyle));
  if (!formatter) return {};
  const char first = groupSize(formatter.get(), kCFNumberFormatterGroupingSize);
  const char others = groupSize(formatter.get(), kCFNumberFormatterSecondaryGroupingSize);
  DigitGrouping grouping{
      textOf(property<CFStringRef>(formatter.get(), kCFNumberFormatterGroupingSeparator).get()),
      ""};
  if (first != 0) grouping.sizes += first;
  if (first != 0 && others != 0) grouping.sizes += others;
  return grouping;
}

void System::forbidDumps() {
  constexpr rlimit none{0, 0};
  if (setrlimit(RLIMIT_CORE, &none) != 0) {
    throw std::system_error(errno, std::generic_category(), "core files");
  }
}

/// The system reclaims memory by itself.
void System::returnFreedMemory() {}

/// There is no confinement here, so the list is not needed.
std::vector<std::filesystem::path> System::filesOfTheLibrary() { return {}; }
