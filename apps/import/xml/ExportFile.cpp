#include "import/xml/ExportFile.h"
#include "import/Failure.h"
#include "import/xml/ZipArchive.h"
#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

namespace phrases {
constexpr Phrase missing{"没有这个文件或文件夹：{0}", "There is no such file or folder: {0}"};
constexpr Phrase unreadable{"无法读取：{0}", "Cannot be read: {0}"};
constexpr Phrase noXml{"{0} 里没有「健康」App 导出的 export.xml",
                       "There is no export.xml of the Health app in {0}"};
constexpr Phrase noArchive{"{0} 不是 zip 文件", "{0} is not a zip archive"};
constexpr Phrase noXmlAmongSome{
    "{0} 里没有「健康」App 导出的 export.xml；其他 XML 文件只检查了前 {1} 个",
    "There is no export.xml of the Health app in {0}; of its other XML files only the first "
    "{1} "
    "were looked into"};
constexpr Phrase notDownloaded{
    "{0} 还没有从云盘下载到这台电脑；请先在文件管理器里下载，再试一次",
    "{0} has not been downloaded yet from the cloud drive: download it in the file manager "
    "first, then try again"};
constexpr Phrase clinicalDocument{
    "{0} 是导出文件中的临床文档，不含要导入的记录；需要的是同一文件夹里的 export.xml",
    "{0} is the clinical document of an export, which holds none of the records to import: the "
    "file wanted is the export.xml beside it"};
}  // namespace phrases

/// Enough to reach the name of the root, at the start of the document type declaration.
constexpr std::size_t beginningSize = 64UL << 10;

/// A file, or a pipe with a possibly slow writer.
class PlainFile : public ByteSource {
public:
  explicit PlainFile(const std::filesystem::path& file, Interrupted interrupted = neverInterrupted)
      : path(file), interrupted(std::move(interrupted)) {
    do {
      heed(this->interrupted);
      descriptor = Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    } while (!descriptor && errno == EINTR);
    if (!descriptor) throw Failure(phrases::unreadable, {path.string()});
  }

  std::size_t read(std::span<char> buffer) override {
    awaitBytes();
    try {
      return readSome(descriptor.get(), buffer.data(), buffer.size());
    } catch (const std::system_error&) {
      throw Failure(phrases::unreadable, {path.string()});
    }
  }

private:
  /// Returns when a read will not block. A signal just before a wait does not end it, so each wait
  /// is short.
  void awaitBytes() const {
    constexpr int shortWaitMilliseconds = 200;
    pollfd waiting{descriptor.get(), POLLIN, 0};
    int ready = 0;
    do {
      heed(interrupted);
      ready = poll(&waiting, 1, shortWaitMilliseconds);
    } while (ready == 0 || (ready < 0 && errno == EINTR));
  }

  std::filesystem::path path;
  Interrupted interrupted;
  Descriptor descriptor;
};

/// The first bytes of the file at `path`, at most `size`.
std::string beginning(const std::filesystem::path& path, std::size_t size) {
  PlainFile file(path);
  std::string bytes(size, '\0');
  std::size_t count = 0;
  while (count < size) {
    const std::size_t more = file.read(std::span(bytes).subspan(count));
    if (more == 0) break;
    count += more;
  }
  bytes.resize(count);
  return bytes;
}

bool beginsLikeExport(std::string_view bytes) {
  return bytes.find("<!DOCTYPE HealthData") != std::string_view::npos ||
         bytes.find("<HealthData") != std::string_view::npos;
}

/// One file of an archive or folder.
struct Listed {
  std::string name;       ///< path from the top, with "/" between folders
  std::size_t depth = 0;  ///< number of folders above it

  std::string_view lastPart() const {
    return std::string_view(name).substr(name.find_last_of('/') + 1);
  }
};

/// The hidden companion files that macOS adds to archives.
bool isMacCompanion(const Listed& file) {
  return file.name.starts_with("__MACOSX/") || file.lastPart().starts_with("._");
}

constexpr std::string_view clinicalName = "export_cda.xml";

/// A name alone does not identify an export, and reading the start of an unlimited number of files
/// takes long.
constexpr std::size_t mostLookedInto = 32;

bool mayBeExport(const Listed& file) {
  const std::string last = lowerCased(file.lastPart());
  return file.depth <= 1 && last.ends_with(".xml") && last != clinicalName && !isMacCompanion(file);
}

/// The position in `files` of the export's XML; the count of `files` when it is not found among the
/// files that are examined. `begins` says whether the file at a position begins like an export.
std::size_t xmlAmong(const std::vector<Listed>& files,
                     const std::function<bool(std::size_t)>& begins) {
  std::size_t found = files.size();
  for (std::size_t index = 0; index < files.size(); ++index) {
    const Listed& file = files[index];
    if (file.depth > 1 || lowerCased(file.lastPart()) != "export.xml") continue;
    if (isMacCompanion(file)) continue;
    if (found == files.size() || file.depth < files[found].depth) found = index;
  }
  if (found != files.size()) return found;

  std::size_t lookedInto = 0;
  for (std::size_t index = 0; index < files.size() && lookedInto < mostLookedInto; ++index) {
    if (!mayBeExport(files[index])) continue;
    if (begins(index)) return index;
    ++lookedInto;
  }
  return files.size();
}

/// The name of the placeholder that the cloud drive keeps for a missing `name`.
std::string stubOf(const std::string& name) { return "." + name + ".icloud"; }

/// The name behind the placeholder `name`; empty when it is not a placeholder.
std::string_view missingFor(std::string_view name) {
  constexpr std::string_view start = ".";
  constexpr std::string_view end = ".icloud";
  if (name.size() <= start.size() + end.size() || !name.starts_with(start) ||
      !name.ends_with(end)) {
    return {};
  }
  name.remove_prefix(start.size());
  name.remove_suffix(end.size());
  return name;
}

/// Whether `file` is a placeholder of a possible export.
bool isStubOfExport(const Listed& file) {
  const std::string missing = lowerCased(missingFor(file.lastPart()));
  return file.depth <= 1 && missing != clinicalName &&
         (missing.ends_with(".xml") || missing.ends_with(".zip"));
}

/// The path of the missing export whose placeholder is among `files`; `nullopt` when there is none.
/// A placeholder of a possible export counts only when no present file may be the export.
std::optional<std::string> missingAmong(const std::vector<Listed>& files) {
  auto stub = std::ranges::find_if(files, [](const Listed& file) {
    return file.depth <= 1 && lowerCased(missingFor(file.lastPart())) == "export.xml";
  });
  if (stub == files.end() && std::ranges::none_of(files, mayBeExport)) {
    stub = std::ranges::find_if(files, isStubOfExport);
  }
  if (stub == files.end()) return std::nullopt;
  const std::string_view last = stub->lastPart();
  return stub->name.substr(0, stub->name.size() - last.size()).append(missingFor(last));
}

/// The error when none of `files`, from the archive or folder `path`, is the export.
Failure noXmlIn(const std::filesystem::path& path, const std::vector<Listed>& files) {
  if (std::cmp_greater(std::ranges::count_if(files, mayBeExport), mostLookedInto)) {
    return Failure(phrases::noXmlAmongSome, {path.string(), std::to_string(mostLookedInto)});
  }
  return Failure(phrases::noXml, {path.string()});
}

ExportContents contentsOf(const std::vector<Listed>& files, std::size_t xml) {
  ExportContents contents;
  for (std::size_t index = 0; index < files.size(); ++index) {
    const std::string last = lowerCased(files[index].lastPart());
    if (index == xml || last == clinicalName || isMacCompanion(files[index])) continue;
    if (last.ends_with(".gpx")) {
      ++contents.routes;
    } else if (last.ends_with(".csv")) {
      ++contents.ecgs;
    } else if (last.ends_with(".json")) {
      ++contents.clinicalRecords;
    } else {
      ++contents.others;
    }
  }
  return contents;
}

Listed listed(std::string name) {
  const auto depth = static_cast<std::size_t>(std::ranges::count(name, '/'));
  return {.name = std::move(name), .depth = depth};
}

/// Exports have one folder of routes and one of ECGs, and no folder inside those.
constexpr int deepestFolder = 4;

/// The files of `folder` and its subfolders down to `depth`, ordered by name.
std::vector<Listed> filesIn(const std::filesystem::path& folder, int depth) {
  using std::filesystem::recursive_directory_iterator;
  std::vector<Listed> files;
  std::error_code error;
  recursive_directory_iterator entry(
      folder, std::filesystem::directory_options::skip_permission_denied, error);
  for (; !error && entry != recursive_directory_iterator(); entry.increment(error)) {
    if (entry.depth() >= depth) entry.disable_recursion_pending();
    std::error_code unknown;
    if (entry->is_regular_file(unknown)) {
      files.push_back(listed(entry->path().lexically_relative(folder).generic_string()));
    }
  }
  if (error) throw Failure(phrases::unreadable, {folder.string()});
  std::ranges::sort(files, {}, &Listed::name);
  return files;
}

}  // namespace

ExportFile::ExportFile(const std::filesystem::path& path, Interrupted interrupted)
    : interrupted(std::move(interrupted)) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    const std::filesystem::path wanted = path.has_filename() ? path : path.parent_path();
    const std::filesystem::path stub = wanted.parent_path() / stubOf(wanted.filename().string());
    const bool isStub = wanted.has_filename() && std::filesystem::exists(stub, error);
    if (isStub) throw Failure(phrases::notDownloaded, {wanted.string()});
    throw Failure(phrases::missing, {path.string()});
  }
  if (error) throw Failure(phrases::unreadable, {path.string()});
  const std::string name = path.filename().string();
  if (std::filesystem::is_directory(status)) {
    openFolder(path);
  } else if (const std::string_view missing = missingFor(name); !missing.empty()) {
    throw Failure(phrases::notDownloaded, {(path.parent_path() / missing).string()});
  } else if (std::filesystem::is_regular_file(status) && beginning(path, 2) == "PK") {
    openArchive(path);
  } else if (lowerCased(name) == clinicalName) {
    throw Failure(phrases::clinicalDocument, {path.string()});
  } else if (lowerCased(path.extension().string()) == ".zip") {
    throw Failure(phrases::noArchive, {path.string()});
  } else {
    openFile(path);
  }
}

void ExportFile::readAll(const std::function<void(std::string_view)>& take) {
  constexpr std::size_t pieceSize = 128UL << 10;
  std::vector<char> piece(pieceSize);
  while (const std::size_t count = read(piece)) {
    take(std::string_view(piece.data(), count));
    heed(interrupted);
  }
}

void ExportFile::openFile(const std::filesystem::path& path) {
  source = std::make_unique<PlainFile>(path, interrupted);
  xmlName = path.string();
  std::error_code error;
  const std::uintmax_t count = std::filesystem::file_size(path, error);
  if (!error) bytes = count;
}

void ExportFile::openFolder(const std::filesystem::path& path) {
  // Two levels are enough to find the XML. A folder given by mistake may contain very much below
  // them.
  const std::vector<Listed> files = filesIn(path, 1);
  const std::size_t xml = xmlAmong(files, [&](std::size_t index) {
    return beginsLikeExport(beginning(path / files[index].name, beginningSize));
  });
  if (xml == files.size()) {
    const std::optional<std::string> missing = missingAmong(files);
    if (missing) throw Failure(phrases::notDownloaded, {(path / *missing).string()});
    throw noXmlIn(path, files);
  }

  const std::filesystem::path xmlPath = path / files[xml].name;
  openFile(xmlPath);
  const std::vector<Listed> neighbours = filesIn(xmlPath.parent_path(), deepestFolder);
  const auto itself = std::ranges::find(neighbours, files[xml].lastPart(), &Listed::name);
  beside = contentsOf(neighbours, static_cast<std::size_t>(itself - neighbours.begin()));
}

void ExportFile::openArchive(const std::filesystem::path& path) {
  ZipArchive archive(path);
  std::vector<Listed> files;
  std::vector<ZipEntry> entries;
  for (const ZipEntry& entry : archive.entries()) {
    if (entry.name.ends_with('/')) continue;
    files.push_back(listed(entry.name));
    entries.push_back(entry);
  }
  const std::size_t xml = xmlAmong(files, [&](std::size_t index) {
    return beginsLikeExport(archive.beginning(entries[index], beginningSize));
  });
  if (xml == files.size()) throw noXmlIn(path, files);
  beside = contentsOf(files, xml);
  bytes = entries[xml].size;
  xmlName = files[xml].name;
  source = std::move(archive).opened(entries[xml]);
}
