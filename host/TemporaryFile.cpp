#include "host/TemporaryFile.h"

#include <array>
#include <fmt/format.h>

#include "host/Failure.h"
#include "platform/Temporales.h"

namespace Meseta47::host {

CString temporaryFolder() {
  std::array<wchar_t, MAX_PATH> folder{};
  const unsigned long length = GetTempPathW(MAX_PATH, folder.data());
  return length == 0 || length >= MAX_PATH ? L"." : folder.data();
}

TemporaryFile::TemporaryFile(CString const& name) : folder_(temporaryFolder()) {
  static_cast<void>(file_.AbreTemporal(folder_, name));
  check();
}

void TemporaryFile::check() const {
  if (!file_.HayError()) return;
  throw Failure(fmt::format("temporary folder {}: {}: make room or name another with --temp-dir", folder_.Utf8(),
                            file_.Error(L"what the run needs there").Utf8()));
}

}  // namespace Meseta47::host
