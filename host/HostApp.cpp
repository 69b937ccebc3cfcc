#include "host/HostApp.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fmt/format.h>

#include "host/CloudPoint.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "model/threads/Codigos.h"
#include "platform/Ficheros.h"
#include "platform/Proceso.h"
#include "platform/Temporales.h"

namespace Meseta47::host {

namespace {

/// Where the library would take the current folder for want of room in a path, and say nothing, this says so.
std::string tempFolder() {
  constexpr unsigned long kNameOfAFile = 32, kLongest = MAX_PATH - kNameOfAFile;
  wchar_t folder[MAX_PATH];
  const unsigned long length = GetTempPathW(MAX_PATH, folder);
  if (length != 0 && length < kLongest) return CString(folder).Utf8();
  throw Failure(
      fmt::format("the path of the temporary folder has more than {} characters: name a shorter one with "
                  "--temp-dir",
                  kLongest - 2));
}

}  // namespace

HostApp::HostApp(CommonOptions const& options) : CWinApp(L"urdimbre"), bar_(options.quiet) {
  PonProcesadores(options.threads);
  PonCarpetaTemporal(CString::DesdeUtf8(options.tempDir));
  PonManejadorInterrupcion();
}

int HostApp::Porcentaje(int, unsigned long long valor, unsigned long long total, bool) {
  if (Interrumpido()) return 0;
  if (isMine()) bar_.step(valor, total);
  return 1;
}

void HostApp::Fase(int, unsigned mensaje) {
  if (isMine()) bar_.phase(TextoMensaje(mensaje).Utf8());
}

void HostApp::Mensaje(int, CString* texto, int) {
  const std::scoped_lock lock(messageLock_);
  messages_.push_back(texto->Utf8());
}

void HostApp::showMessages() const {
  const std::scoped_lock lock(messageLock_);
  for (std::string const& message : messages_) {
    static_cast<void>(std::fprintf(stderr, "urdimbre: %s\n", message.c_str()));
  }
}

void HostApp::step(unsigned long long value, unsigned long long total) {
  if (Interrumpido()) throw Cancelled();
  bar_.step(value, total);
}

void requireTempSpace(std::uint64_t bytes) {
  const std::string folder = tempFolder();
  const double megabytes = static_cast<double>(bytes) / 1e6;
  CString why;
  if (!CarpetaEscribible(CString::DesdeUtf8(folder), &why)) {
    throw Failure(fmt::format("temporary folder {}: {}; the run needs {:.1f} MB there: name another with --temp-dir",
                              folder, why.Utf8(), megabytes));
  }
  const long long room = EspacioLibre(CString::DesdeUtf8(folder));
  if (room >= 0 && static_cast<std::uint64_t>(room) < bytes) {
    throw Failure(
        fmt::format("temporary folder {}: {:.1f} MB free, but the run needs {:.1f} MB there: make room or name "
                    "another with --temp-dir",
                    folder, static_cast<double>(room) / 1e6, megabytes));
  }
}

void requireDone(int code, std::string const& what) {
  if (code == kHecho) return;
  if (code == kCancelado) throw Cancelled();
  if (code == kPocosPuntos) {
    throw Failure(
        fmt::format("{}: fewer than 3 points take part, and a surface needs 3: give more, or wider filters", what));
  }
  if (code == kNubeDispersa) {
    throw Failure(
        fmt::format("{}: too few points for their extent, so that some must lie far astray: take the part that counts "
                    "with --bounds",
                    what));
  }
  throw Failure(
      fmt::format("{}: {} (code {})", what, AfxGetApp()->TextoMensaje(static_cast<unsigned>(code)).Utf8(), code));
}

void requireRoom(CResumenPlano const& run, int precision, std::string const& what) {
  constexpr std::int64_t kLeast = 10;  // units across, of which the frame takes a tenth on each side: one at least
  const std::int64_t widest = std::max(run.ancho, run.alto);
  if (run.aceptados < 3 || widest >= kLeast) return;
  if (widest == 0) {
    throw Failure(fmt::format("{}: all {} points lie at one place in plan at precision {}; a surface needs 3 places",
                              what, withThousands(run.aceptados), precision));
  }
  const double unit = std::pow(10.0, -precision);
  throw Failure(fmt::format(
      "{}: the points lie within {:g} by {:g}, which is too narrow at precision {} to tell them "
      "from the frame around them{}",
      what, static_cast<double>(run.ancho) * unit, static_cast<double>(run.alto) * unit, precision,
      precision < kMostDecimals ? fmt::format(": give --precision {}", std::min(precision + 2, kMostDecimals))
                                : ": shift or scale them"));
}

void requireRun(int code, std::string const& what, std::uint64_t bytes) {
  if (code != kFicheroInaccesible && code != kFicheroInconsistente) return requireDone(code, what);
  if (bytes == 0) {
    throw Failure(fmt::format(
        "{}: memory or threads gave out while the points were linked: take a smaller part with --bounds, or "
        "fewer --threads",
        what));
  }
  requireTempSpace(bytes);
  if (code == kFicheroInconsistente) {
    throw Failure(fmt::format(
        "{}: memory, threads or the files in {} gave out while the points were linked: take a smaller part with "
        "--bounds or fewer --threads, or name another folder with --temp-dir",
        what, tempFolder()));
  }
  throw Failure(
      fmt::format("temporary folder {}: the disk refused what the run needs there, {:.1f} MB, or memory gave out: make "
                  "room, lift the limit on file sizes, or name another with --temp-dir",
                  tempFolder(), static_cast<double>(bytes) / 1e6));
}

}  // namespace Meseta47::host
