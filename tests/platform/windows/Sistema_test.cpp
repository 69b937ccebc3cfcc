// What the system does in its own way: names in any script, long paths, files that others hold, files that are gone
// with their last holder.
#include "platform/Sistema.h"

#include <future>
#include <gmock/gmock.h>
#include <system_error>
#include <thread>
#include <windows.h>  // last: it makes macros of common names

#include "platform/CFicheroParcial.h"
#include "platform/CFile.h"
#include "platform/Ficheros.h"
#include "platform/Proceso.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

using testing::HasSubstr;

constexpr unsigned kCreate = CFile::modeCreate | CFile::modeReadWrite;

void Put(CString const& path, std::string const& bytes) {
  CFile file(path, kCreate);
  file.Write(bytes.data(), bytes.size());
  ASSERT_TRUE(file.Close()) << file.Error();
}

std::string Got(CString const& path) {
  CFile file(path, CFile::modeRead);
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  bytes.resize(file.Read(bytes.data(), static_cast<unsigned>(bytes.size())));
  return bytes;
}

bool There(CString const& path) { return sistema::Existe(path); }

/// A file that a program holds for itself alone.
class Held {
 public:
  explicit Held(CString const& path, DWORD share = 0)
      : handle_(::CreateFileW(path, GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
  }
  Held(Held const&) = delete;
  Held& operator=(Held const&) = delete;
  ~Held() { ::CloseHandle(handle_); }

 private:
  HANDLE handle_;
};

TEST(Names, OfAnyScriptComeBackAsTheyWereGiven) {
  const ScratchFolder folder;
  for (wchar_t const* const name :
       {L"\u03b3\u03b7.bin", L"\u5730\u5f62.bin", L"\U0001f5fa map.bin", L"\u00f1and\u00fa.bin"}) {
    const CString path = folder.Path() + L"\\" + name;
    Put(path, "x");
    EXPECT_EQ(CFile(path, CFile::modeRead).GetFilePath(), path);
    EXPECT_EQ(CString::DesdeUtf8(path.Utf8()), path);
    EXPECT_EQ(Got(CString::DesdeUtf8(path.Utf8())), "x");
    const CString other = path + L"2";
    EXPECT_TRUE(RenombraFichero(path, other));
    EXPECT_FALSE(There(path));
    EXPECT_TRUE(BorraFichero(other));
  }
}

TEST(LongPaths, HoldFoldersAndFilesBeyondThePlainLimit) {
  const ScratchFolder folder;
  CString deep = folder.Path();
  for (int i = 0; i < 6; ++i) deep += L"\\" + CString(std::wstring(60, static_cast<wchar_t>(L'a' + i)));
  ASSERT_GT(deep.GetLength(), 300);
  CString error;
  ASSERT_TRUE(CreaCarpeta(deep, &error)) << error;
  const CString path = deep + L"\\points.bin";
  Put(path, "long");
  EXPECT_EQ(Got(path), "long");
  EXPECT_TRUE(CarpetaEscribible(deep, &error)) << error;
  EXPECT_GT(EspacioLibre(path), 0);
  {
    CFicheroParcial next(path);
    ASSERT_TRUE(next.EstaAbierto()) << next.Error();
    next.Fichero().Write("next", 4);
    ASSERT_TRUE(next.Confirma()) << next.Error();
  }
  EXPECT_EQ(Got(path), "next");
  EXPECT_THAT(NombresEnCarpeta(deep), testing::ElementsAre(CString(L"points.bin")));
  EXPECT_EQ(ExaminaFichero(path).bytes, 4U);
  EXPECT_TRUE(ExaminaFichero(deep).EsCarpeta());
  EXPECT_TRUE(SonElMismoFichero(path, deep + L"/POINTS.bin"));
  EXPECT_TRUE(RenombraFichero(path, deep + L"/other.bin"));
  EXPECT_EQ(Got(deep + L"\\other.bin"), "next");
  EXPECT_TRUE(BorraFichero(deep + L"\\other.bin"));
  for (; deep != folder.Path(); deep = deep.Left(sistema::UltimoSeparador(deep))) {
    EXPECT_TRUE(::RemoveDirectoryW(L"\\\\?\\" + deep)) << deep;
  }
}

TEST(Separators, BothAreTaken) {
  const ScratchFolder folder;
  EXPECT_TRUE(CreaCarpeta(folder.Path() + L"/a\\b/c"));
  Put(folder.Path() + L"\\a/b\\c/d", "x");
  EXPECT_EQ(Got(folder.Path(R"(a\b\c\d)")), "x");
  EXPECT_EQ(CarpetaDe(L"C:/a\\b"), L"C:/a\\");
  EXPECT_EQ(CarpetaDe(L"C:\\a/b"), L"C:\\a/");
}

TEST(HeldFiles, AreToldToBeHeld) {
  const ScratchFolder folder;
  Put(folder.Path("a"), "old");
  const Held held(folder.Path("a"));
  CFile file;
  EXPECT_FALSE(file.Open(folder.Path("a"), CFile::modeRead));
  EXPECT_EQ(file.Error(), L"cannot open " + folder.Path("a") + L": another program has the file open");
}

TEST(HeldFiles, StayAsTheyAreWhenANewOneCannotTakeTheirPlace) {
  const ScratchFolder folder;
  Put(folder.Path("a"), "old");
  {
    const Held held(folder.Path("a"), FILE_SHARE_READ);
    CFicheroParcial next(folder.Path("a"));
    ASSERT_TRUE(next.EstaAbierto());
    next.Fichero().Write("new", 3);
    EXPECT_FALSE(next.Confirma());
    EXPECT_EQ(next.Causa(), L"another program has the file open");
    EXPECT_EQ(next.Error(), L"cannot put a new file in the place of " + folder.Path("a") + L": " + next.Causa());
  }
  EXPECT_EQ(Got(folder.Path("a")), "old");
  EXPECT_FALSE(There(folder.Path("a.part")));
}

TEST(HeldFiles, ThatAreLetGoWithinASecondAreReplaced) {
  const ScratchFolder folder;
  Put(folder.Path("a"), "old");
  Put(folder.Path("new"), "new");
  bool replaced = false;
  for (int again = 0; again < 5 && !replaced; ++again) {  // a holder that is held up itself holds it for longer
    std::promise<void> holds;
    std::jthread scanner([&] {
      const Held held(folder.Path("a"), FILE_SHARE_READ | FILE_SHARE_WRITE);
      holds.set_value();
      ::Sleep(200);
    });
    holds.get_future().wait();
    replaced = RenombraFichero(folder.Path("new"), folder.Path("a"));
  }
  EXPECT_TRUE(replaced);
  EXPECT_EQ(Got(folder.Path("a")), "new");
}

TEST(ReadOnlyFiles, AreNotWritten) {
  const ScratchFolder folder;
  Put(folder.Path("a"), "old");
  ASSERT_TRUE(::SetFileAttributesW(folder.Path("a"), FILE_ATTRIBUTE_READONLY));
  HANDLE const granted =
      ::CreateFileW(folder.Path("a"), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (granted != INVALID_HANDLE_VALUE) {
    ::CloseHandle(granted);
    GTEST_SKIP() << "this system lets its user write what is read-only";
  }
  CFile file;
  EXPECT_FALSE(file.Open(folder.Path("a"), kCreate));
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::permission_denied));
  ::SetFileAttributesW(folder.Path("a"), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(Got(folder.Path("a")), "old");
}

TEST(AFileInTheMaking, TakesItsNameAndTheSecondOfANameTakesItToo) {
  const ScratchFolder folder;
  CFicheroParcial first(folder.Path("a"));
  CFicheroParcial second(folder.Path("a"));
  ASSERT_TRUE(first.EstaAbierto() && second.EstaAbierto());
  EXPECT_THAT(folder.Names(), testing::ElementsAre("a.2.part", "a.part"));
  first.Fichero().Write("1", 1);
  second.Fichero().Write("2", 1);
  EXPECT_TRUE(first.Confirma()) << first.Error();
  EXPECT_EQ(Got(folder.Path("a")), "1");
  EXPECT_TRUE(second.Confirma()) << second.Error();
  EXPECT_EQ(Got(folder.Path("a")), "2");
  EXPECT_THAT(folder.Names(), testing::ElementsAre("a"));
}

TEST(AFileInTheMaking, ThatIsDroppedLeavesWhatWasThere) {
  const ScratchFolder folder;
  Put(folder.Path("a"), "old");
  { CFicheroParcial(folder.Path("a")).Fichero().Write("new", 3); }
  EXPECT_EQ(Got(folder.Path("a")), "old");
  EXPECT_THAT(folder.Names(), testing::ElementsAre("a"));
}

TEST(AFileInTheMaking, TakesAwayWhatAKilledProcessLeft) {
  const ScratchFolder folder;
  Put(folder.Path("a.part"), "of a process that was killed");
  Put(folder.Path("a.2.part"), "and of another");
  const CFicheroParcial next(folder.Path("a"));
  ASSERT_TRUE(next.EstaAbierto());
  EXPECT_THAT(folder.Names(), testing::ElementsAre("a.part"));
}

TEST(TemporaryFiles, CanBeOpenedASecondTimeAndAreGoneWithTheLast) {
  const ScratchFolder folder;
  CFile file;
  ASSERT_TRUE(file.AbreTemporal(folder.Path(), L"7MD")) << file.Error();
  EXPECT_THAT(file.GetFilePath().Utf8(), HasSubstr("7MD"));
  ASSERT_TRUE(file.Write("hello", 5) && file.Flush());
  CFile other(file.GetFilePath(), CFile::modeRead);
  char text[6] = {};
  EXPECT_EQ(other.Read(text, 5), 5U);
  EXPECT_STREQ(text, "hello");
  EXPECT_TRUE(file.Close());
  EXPECT_TRUE(other.Close());
  EXPECT_EQ(folder.Files(), 0U);
}

TEST(TemporaryFiles, WhereThereAreNoneOfThatKindAnOrdinaryOneServes) {
  const ScratchFolder folder;
  Put(folder.Path("7MD1.tmp"), "of a process that was killed");
  FaultGuard guard;
  guard.RefuseOnce(EOperacion::Abre, 1);
  {
    CFile file;
    ASSERT_TRUE(file.AbreTemporal(folder.Path(), L"7MD"));
    EXPECT_EQ(file.GetFilePath(), folder.Path("7MD1.tmp"));
    ASSERT_TRUE(file.Write("hello", 5) && file.Flush());
    EXPECT_EQ(CFile(file.GetFilePath(), CFile::modeRead).GetLength(), 5U);
  }
  EXPECT_EQ(folder.Files(), 0U);
}

TEST(DeletedFiles, ThatAreOpenGoWithTheirLastHolder) {
  const ScratchFolder folder;
  CFile file(folder.Path("a"), kCreate);
  file.Write("x", 1);
  EXPECT_TRUE(BorraFichero(folder.Path("a")));
  EXPECT_TRUE(file.Flush());
  EXPECT_EQ(file.GetLength(), 1U);
  EXPECT_TRUE(file.Close());
  EXPECT_FALSE(There(folder.Path("a")));
}

TEST(Failures, HaveTheSystemsOwnSentenceWhereTheyHaveNoOther) {
  EXPECT_EQ(sistema::TextoError(static_cast<int>(std::errc::no_space_on_device)), L"No space left on device");
  const CString known = sistema::TextoError(100000 + ERROR_INVALID_DATA);
  EXPECT_FALSE(known.IsEmpty());
  EXPECT_EQ(known.Find(L'\n'), -1);
  EXPECT_THAT(sistema::TextoError(100000 + 54321).Utf8(), HasSubstr("54321"));
}

TEST(AFolder, CannotBeOpenedDeletedOrReplaced) {
  const ScratchFolder folder;
  ASSERT_TRUE(CreaCarpeta(folder.Path("a")));
  CFile file;
  EXPECT_FALSE(file.Open(folder.Path("a"), CFile::modeRead));
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::is_a_directory));
  EXPECT_FALSE(BorraFichero(folder.Path("a")));
  Put(folder.Path("b"), "x");
  EXPECT_FALSE(RenombraFichero(folder.Path("b"), folder.Path("a")));
  EXPECT_EQ(Got(folder.Path("b")), "x");
}

TEST(ProcessMemory, IsTold) {
  const auto now = MemoriaResidente();
  EXPECT_GT(now, 100'000U);
  EXPECT_GE(MemoriaResidenteMaxima(), now);
}

TEST(Interruption, TheFirstRequestIsTakenNoteOfAndMayBeForgotten) {
  PonManejadorInterrupcion();
  EXPECT_FALSE(Interrumpido());
  if (::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) == 0) GTEST_SKIP() << "there is no console";
  for (int i = 0; i < 6000 && !Interrumpido(); ++i) ::Sleep(10);
  EXPECT_TRUE(Interrumpido());
  OlvidaInterrupcion();
  EXPECT_FALSE(Interrumpido());
}

}  // namespace
