#include <algorithm>
#include <system_error>

#include "platform/Sistema.h"
#include "platform/windows/Win32.h"

namespace {

struct Pareja {
  DWORD error;
  std::errc codigo;
};

constexpr Pareja kParejas[] = {
    {ERROR_FILE_NOT_FOUND, std::errc::no_such_file_or_directory},
    {ERROR_PATH_NOT_FOUND, std::errc::no_such_file_or_directory},
    {ERROR_INVALID_DRIVE, std::errc::no_such_file_or_directory},
    {ERROR_BAD_NETPATH, std::errc::no_such_file_or_directory},
    {ERROR_BAD_NET_NAME, std::errc::no_such_file_or_directory},
    {ERROR_INVALID_NAME, std::errc::no_such_file_or_directory},
    {ERROR_BAD_PATHNAME, std::errc::no_such_file_or_directory},
    {ERROR_DIRECTORY, std::errc::not_a_directory},
    {ERROR_TOO_MANY_OPEN_FILES, std::errc::too_many_files_open},
    {ERROR_ACCESS_DENIED, std::errc::permission_denied},
    {ERROR_PRIVILEGE_NOT_HELD, std::errc::permission_denied},
    {ERROR_DELETE_PENDING, std::errc::permission_denied},
    {ERROR_WRITE_PROTECT, std::errc::read_only_file_system},
    {ERROR_INVALID_HANDLE, std::errc::bad_file_descriptor},
    {ERROR_NOT_ENOUGH_MEMORY, std::errc::not_enough_memory},
    {ERROR_OUTOFMEMORY, std::errc::not_enough_memory},
    {ERROR_COMMITMENT_LIMIT, std::errc::not_enough_memory},
    {ERROR_NO_SYSTEM_RESOURCES, std::errc::resource_unavailable_try_again},
    {ERROR_MAX_THRDS_REACHED, std::errc::resource_unavailable_try_again},
    {ERROR_NOT_SAME_DEVICE, std::errc::cross_device_link},
    {ERROR_SHARING_VIOLATION, std::errc::text_file_busy},
    {ERROR_LOCK_VIOLATION, std::errc::text_file_busy},
    {ERROR_USER_MAPPED_FILE, std::errc::text_file_busy},
    {ERROR_BUSY, std::errc::device_or_resource_busy},
    {ERROR_FILE_EXISTS, std::errc::file_exists},
    {ERROR_ALREADY_EXISTS, std::errc::file_exists},
    {ERROR_DISK_FULL, std::errc::no_space_on_device},
    {ERROR_HANDLE_DISK_FULL, std::errc::no_space_on_device},
    {1295, std::errc::no_space_on_device},  // ERROR_DISK_QUOTA_EXCEEDED, which old headers lack
    {ERROR_FILE_TOO_LARGE, std::errc::file_too_large},
    {ERROR_FILENAME_EXCED_RANGE, std::errc::filename_too_long},
    {ERROR_BUFFER_OVERFLOW, std::errc::filename_too_long},
    {ERROR_NEGATIVE_SEEK, std::errc::invalid_argument},
    {ERROR_INVALID_PARAMETER, std::errc::invalid_argument},
    {ERROR_BROKEN_PIPE, std::errc::broken_pipe},
    {ERROR_NO_DATA, std::errc::broken_pipe},
    {ERROR_NOT_SUPPORTED, std::errc::not_supported},
    {ERROR_CANT_RESOLVE_FILENAME, std::errc::too_many_symbolic_link_levels},
    {ERROR_DIR_NOT_EMPTY, std::errc::directory_not_empty},
    {ERROR_READ_FAULT, std::errc::io_error},
    {ERROR_WRITE_FAULT, std::errc::io_error},
    {ERROR_GEN_FAILURE, std::errc::io_error},
    {ERROR_CRC, std::errc::io_error},
    {ERROR_SEEK, std::errc::io_error},
    {ERROR_IO_DEVICE, std::errc::io_error},
};

/// The system's own sentence, without the full stop and the end of line that it comes with.
CString Sentencia(DWORD error) {
  wchar_t texto[512];
  constexpr DWORD kOpciones = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  DWORD largo = ::FormatMessageW(kOpciones, nullptr, error, 0, texto, static_cast<DWORD>(std::size(texto)), nullptr);
  while (largo > 0 && (texto[largo - 1] <= L' ' || texto[largo - 1] == L'.')) {
    --largo;
  }
  texto[largo] = 0;
  CString sentencia(texto);
  if (sentencia.IsEmpty()) {
    sentencia.Format(L"error %lu of the system", error);
  }
  return sentencia;
}

}  // namespace

int win32::Codigo(DWORD error) {
  Pareja const* const hallada = std::ranges::find(kParejas, error, &Pareja::error);
  return hallada != std::end(kParejas) ? static_cast<int>(hallada->codigo) : kSinNumero + static_cast<int>(error);
}

CString sistema::TextoError(int codigo) {
  if (codigo >= win32::kSinNumero) {
    return Sentencia(static_cast<DWORD>(codigo - win32::kSinNumero));
  }
  if (codigo == static_cast<int>(std::errc::text_file_busy)) {
    return L"another program has the file open";
  }
  return CString::DesdeUtf8(std::generic_category().message(codigo));
}
