#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "host/OutputFile.h"

namespace Meseta47::host {

/// The files that GDAL makes for one output, all in one folder of the disk. GDAL writes, reads back, seeks and cuts
/// them as it likes; each is an OutputFile, NAME.part until commit(). It sees the files made here and no others. One
/// that it deletes goes when it has closed it, and until then none of that name can be made.
///
/// GDAL lets many a failed write pass without a word. Here the first failure is kept, one of the disk or a lack of
/// memory, and everything that GDAL asks for afterwards is refused; check() throws it. GDAL may well take a file that
/// could not be made for one that was, so check() also stands behind what goes well. Used by one thread at a time.
class GdalFiles {
 public:
  /// Makes nothing yet. An empty folder is the current one. Messages name the file `shown`, that of the user, whichever
  /// file is at fault; when that is empty, the file itself.
  explicit GdalFiles(std::string folder, std::string shown = {});
  GdalFiles(GdalFiles const&) = delete;
  GdalFiles& operator=(GdalFiles const&) = delete;
  /// Without a commit() nothing is left behind. GDAL must have closed what it had open.
  ~GdalFiles();

  /// The name by which GDAL reaches a file, or the folder when none is given.
  [[nodiscard]] std::string path(std::string_view name = {}) const;

  /// Throws the first failure, if there was one: a FileError that names the file, or std::bad_alloc.
  void check() const;
  /// Refuses everything from now on, so that GDAL closes without finishing what nobody wants any more.
  void abandon() { refuses_ = true; }

  [[nodiscard]] bool has(std::string_view name) const { return files_.contains(name); }
  /// Hands all files to the disk, still as NAME.part: of all that may fail, only the names are left. Throws as check().
  void close();
  /// Gives all files their names, `last` in the end. Throws FileError.
  void commit(std::string_view last);

 private:
  class Handle;
  class Handler;
  using File = std::shared_ptr<OutputFile>;

  /// Does a piece of work for GDAL, whose code no exception may cross: one is kept, and the answer is `refused`.
  template <typename Answer, typename Work>
  Answer attempt(Answer refused, Work work) noexcept;
  /// The same, unless nothing is done any more.
  template <typename Answer, typename Work>
  Answer answer(Answer refused, Work work) noexcept;
  File find(std::string_view name) const;
  /// Finds it or makes it; `empties` one that it finds.
  File make(std::string_view name, bool empties);
  bool forget(std::string_view name);

  std::string folder_, shown_;
  unsigned number_;
  std::map<std::string, File, std::less<>> files_;
  std::map<std::string, std::weak_ptr<OutputFile>, std::less<>> deleted_;  // perhaps still open
  std::exception_ptr failure_;
  bool refuses_ = false;
};

}  // namespace Meseta47::host
