#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/ProgressBar.h"
#include "model/threads/IPorcentaje.h"
#include "planar/CResumenPlano.h"
#include "platform/CWinApp.h"

namespace Meseta47::host {

/// The options that every verb takes.
struct CommonOptions {
  bool quiet = false;
  bool json = false;
  unsigned threads = 0;  ///< 0: all processors
  std::string tempDir;   ///< empty: the system's
};

/// The program's application object. It shows the library's progress, and its own, in one bar; a Ctrl-C becomes the
/// answer 0 that cancels a run.
class HostApp : public CWinApp, public IPorcentaje {
 public:
  explicit HostApp(CommonOptions const& options);

  // --- the library's progress: of runs side by side on threads of their own too. The bar shows that of the thread that
  // made this object; the others are cancelled like it, and their messages are kept. ---
  int Porcentaje(int nivel, unsigned long long valor, unsigned long long total, bool) override;
  void Fase(int nivel, unsigned mensaje) override;
  void Cierra(int, int) override {}
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int nivel, CString* texto, int) override;

  // --- the program's own phases ---
  void phase(std::string const& name) { bar_.phase(name); }
  /// Throws Cancelled after a Ctrl-C.
  void step(unsigned long long value, unsigned long long total);
  /// Takes the bar off the screen.
  void clearProgress() noexcept { bar_.clear(); }
  /// Keeps a line about what is done all the same, and may not be what was meant.
  void warn(std::string const& line) {
    const std::scoped_lock lock(messageLock_);
    messages_.push_back("warning: " + line);
  }
  /// Writes the warnings, and what the library had to say besides its codes, a line each, to stderr.
  void showMessages() const;

 private:
  [[nodiscard]] bool isMine() const { return std::this_thread::get_id() == mine_; }

  ProgressBar bar_;
  std::thread::id mine_ = std::this_thread::get_id();
  mutable std::mutex messageLock_;
  std::vector<std::string> messages_;
};

/// The folder for temporary files, which must be there, writable, and have room for `bytes`. Throws Failure naming it
/// and the need.
void requireTempSpace(std::uint64_t bytes);

/// Turns a code of the library into the exception that it stands for; nothing for success. `what` is the file or the
/// work.
void requireDone(int code, std::string const& what);

/// Refuses what no run can make a surface of: points that all share one plan position, and those so close together that
/// the frame around them falls on them. To be asked before the code, which has other causes too. Throws Failure.
void requireRoom(CResumenPlano const& run, int precision, std::string const& what);

/// The same for a run that spills to the folder for temporary files and was promised `bytes` there; 0 for one that does
/// not.
void requireRun(int code, std::string const& what, std::uint64_t bytes);

}  // namespace Meseta47::host
