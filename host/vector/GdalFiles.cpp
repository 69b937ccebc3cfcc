#include "host/vector/GdalFiles.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cpl_string.h>
#include <cpl_vsi_virtual.h>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <mutex>
#include <utility>

#include "host/FileError.h"

namespace Meseta47::host {

namespace {

constexpr std::string_view kPrefix = "/vsiurdimbre/";  // GDAL wants a slash at both ends

/// The outputs in the making, by number. GDAL never gives up a handler, so one serves them all.
struct Outputs {
  std::mutex lock;
  unsigned last = 0;
  std::map<unsigned, GdalFiles*> open;
};

Outputs& outputs() {
  static Outputs all;
  return all;
}

/// What a name of GDAL's stands for: a file of an output, or its folder when the name is empty.
struct Target {
  GdalFiles* output = nullptr;
  std::string_view name;
};

Target targetOf(std::string_view path) {
  path.remove_prefix(std::min(path.size(), kPrefix.size()));
  unsigned number = 0;
  char const* const slash = std::from_chars(path.data(), path.data() + path.size(), number).ptr;
  path.remove_prefix(static_cast<std::size_t>(slash - path.data()));
  path.remove_prefix(path.starts_with('/') ? 1 : 0);
  const std::scoped_lock lock(outputs().lock);
  const auto found = outputs().open.find(number);
  return found == outputs().open.end() ? Target{} : Target{found->second, path};
}

}  // namespace

/// One opening of a file, with a position of its own; of none, when the output does nothing any more. GDAL deletes it
/// after Close().
class GdalFiles::Handle : public VSIVirtualHandle {
 public:
  Handle(GdalFiles& output, File file) : output_(output), file_(std::move(file)) {}

  int Seek(vsi_l_offset offset, int from) override {
    return output_.answer(-1, [&] {
      const vsi_l_offset origin = from == SEEK_SET ? 0 : from == SEEK_CUR ? position_ : file_->length();
      position_ = origin + offset;
      ended_ = false;
      return 0;
    });
  }

  vsi_l_offset Tell() override { return position_; }

  size_t Read(void* data, size_t size, size_t count) override {
    const size_t came = output_.answer(size_t{0}, [&] {
      file_->seek(position_);
      return file_->read(data, size * count);
    });
    position_ += came;
    ended_ = came < size * count;
    // The DXF writer looks for the end of a line in what it read without asking whether it came, and on behind it.
    if (output_.refuses_) std::memset(data, '\n', size * count);
    return size == 0 ? 0 : came / size;
  }

  size_t Write(void const* data, size_t size, size_t count) override {
    return output_.answer(size_t{0}, [&] {
      file_->seek(position_);
      file_->write(data, size * count);
      position_ += size * count;
      return count;
    });
  }

  int Truncate(vsi_l_offset bytes) override {
    return output_.answer(-1, [&] {
      file_->resize(bytes);
      return 0;
    });
  }

  int Eof() override { return ended_ || output_.refuses_ ? 1 : 0; }

  // What is pending stays so until the output is closed, whatever GDAL closes: another opening may go on from there.
  int Flush() override {
    return output_.answer(-1, [] { return 0; });
  }
  int Close() override {
    file_.reset();
    return Flush();
  }

 private:
  GdalFiles& output_;
  File file_;
  vsi_l_offset position_ = 0;
  bool ended_ = false;
};

/// Leads GDAL's calls to the output that each name belongs to. GDAL's interface of plain functions would do, but for
/// its deletion, which goes to the system whatever function is given.
class GdalFiles::Handler : public VSIFilesystemHandler {
 public:
  VSIVirtualHandle* Open(char const* path, char const* access, bool, CSLConstList) override {
    const auto [output, name] = targetOf(path);
    if (output == nullptr || name.empty()) return missing<VSIVirtualHandle*>(nullptr);
    const bool makes = access[0] != 'r', empties = access[0] == 'w', appends = access[0] == 'a';
    File file = output->find(name);
    if (file == nullptr && !makes && !output->refuses_) return missing<VSIVirtualHandle*>(nullptr);
    if (makes) file = output->answer(File(), [&, output = output, name = name] { return output->make(name, empties); });
    // Some writers use what they open without asking whether it is: they get an opening that refuses everything.
    return output->attempt<VSIVirtualHandle*>(nullptr, [&, output = output] {
      auto handle = std::make_unique<Handle>(*output, std::move(file));
      if (appends) handle->Seek(0, SEEK_END);
      return handle.release();
    });
  }

  int Stat(char const* path, VSIStatBufL* status, int) override {
    const auto [output, name] = targetOf(path);
    if (output == nullptr) return missing(-1);
    *status = {};
    status->st_mode = S_IFDIR;
    if (name.empty()) return 0;
    return output->answer(-1, [&, output = output, name = name] {
      const File file = output->find(name);
      if (file == nullptr) return missing(-1);
      status->st_mode = S_IFREG;
      status->st_size = static_cast<decltype(status->st_size)>(file->length());
      return 0;
    });
  }

  int Unlink(char const* path) override {
    const auto [output, name] = targetOf(path);
    if (output == nullptr) return missing(-1);
    return output->answer(-1, [output = output, name = name] { return output->forget(name) ? 0 : missing(-1); });
  }

  char** ReadDirEx(char const* path, int) override {
    const auto [output, name] = targetOf(path);
    if (output == nullptr || !name.empty()) return missing<char**>(nullptr);
    CPLStringList names;
    for (auto const& file : output->files_) names.AddString(file.first.c_str());
    return names.StealList();
  }

 private:
  template <typename Answer>
  static Answer missing(Answer answer) {
    errno = ENOENT;
    return answer;
  }
};

GdalFiles::GdalFiles(std::string folder, std::string shown) : folder_(std::move(folder)), shown_(std::move(shown)) {
  static std::once_flag once;
  std::call_once(once, [] { VSIFileManager::InstallHandler(std::string(kPrefix), new Handler); });
  const std::scoped_lock lock(outputs().lock);
  number_ = ++outputs().last;
  outputs().open.emplace(number_, this);
}

GdalFiles::~GdalFiles() {
  const std::scoped_lock lock(outputs().lock);
  outputs().open.erase(number_);
}

std::string GdalFiles::path(std::string_view name) const {
  return fmt::format("{}{}{}{}", kPrefix, number_, name.empty() ? "" : "/", name);
}

void GdalFiles::check() const {
  if (failure_ != nullptr) std::rethrow_exception(failure_);
}

void GdalFiles::close() {
  check();
  for (auto const& file : files_) file.second->close();
}

void GdalFiles::commit(std::string_view last) {
  for (auto const& [name, file] : files_) {
    if (name != last) file->commit();
  }
  if (const File file = find(last); file != nullptr) file->commit();
}

template <typename Answer, typename Work>
Answer GdalFiles::attempt(Answer refused, Work work) noexcept {
  try {
    return work();
  } catch (...) {
    if (failure_ == nullptr) failure_ = std::current_exception();
    refuses_ = true;
    return refused;
  }
}

template <typename Answer, typename Work>
Answer GdalFiles::answer(Answer refused, Work work) noexcept {
  return refuses_ ? refused : attempt(refused, work);
}

GdalFiles::File GdalFiles::find(std::string_view name) const {
  const auto found = files_.find(name);
  return found == files_.end() ? nullptr : found->second;
}

GdalFiles::File GdalFiles::make(std::string_view name, bool empties) {
  if (File file = find(name); file != nullptr) {
    if (empties) file->resize(0);
    return file;
  }
  const std::string place = (std::filesystem::path(folder_) / name).string();
  if (const auto old = deleted_.find(name); old != deleted_.end() && !old->second.expired()) {
    throw FileError(place, "cannot be written: one of that name is still being deleted");
  }
  return files_.emplace(name, std::make_shared<OutputFile>(place, shown_)).first->second;
}

bool GdalFiles::forget(std::string_view name) {
  const auto found = files_.find(name);
  if (found == files_.end()) return false;
  deleted_.insert_or_assign(found->first, found->second);
  files_.erase(found);
  return true;
}

}  // namespace Meseta47::host
