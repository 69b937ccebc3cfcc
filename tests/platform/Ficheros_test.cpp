#include "platform/Ficheros.h"

#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>

#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

using testing::EndsWith;
using testing::StartsWith;

TEST(RenameFile, ReplacesWhatStoodThere) {
  ScratchFolder folder;
  PutBytes(folder.Path("a.part"), "new");
  PutBytes(folder.Path("a"), "old");
  CString error;
  EXPECT_TRUE(RenombraFichero(folder.Path("a.part"), folder.Path("a"), &error));
  EXPECT_EQ(error, L"");
  EXPECT_EQ(BytesOf(folder.Path("a")), "new");
  EXPECT_FALSE(Exists(folder.Path("a.part")));
}

TEST(RenameFile, AFailureLeavesBothFilesAndTellsWhy) {
  ScratchFolder folder;
  PutBytes(folder.Path("a.part"), "new");
  PutBytes(folder.Path("a"), "old");
  FaultGuard guard;
  guard.Refuse(EOperacion::Renombra);
  CString error;
  EXPECT_FALSE(RenombraFichero(folder.Path("a.part"), folder.Path("a"), &error));
  EXPECT_EQ(error, L"cannot put a new file in the place of " + folder.Path("a") + L": Permission denied");
  EXPECT_EQ(BytesOf(folder.Path("a")), "old");
  EXPECT_EQ(BytesOf(folder.Path("a.part")), "new");
}

TEST(RenameFile, WhatIsNotThereCannotBeRenamed) {
  ScratchFolder folder;
  CString error;
  EXPECT_FALSE(RenombraFichero(folder.Path("none"), folder.Path("a"), &error));
  EXPECT_THAT(error.Utf8(), EndsWith("No such file or directory"));
}

TEST(DeleteNamedFile, TellsWhyItCannot) {
  ScratchFolder folder;
  CString error;
  PutBytes(folder.Path("a"), "");
  EXPECT_TRUE(BorraFichero(folder.Path("a"), &error));
  EXPECT_FALSE(BorraFichero(folder.Path("a"), &error));
  EXPECT_EQ(error, L"cannot delete " + folder.Path("a") + L": No such file or directory");
}

TEST(MakeFolder, MakesThoseAboveToo) {
  ScratchFolder folder;
  EXPECT_TRUE(CreaCarpeta(folder.Path("a/b/c")));
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path("a/b/c").Utf8()));
  EXPECT_TRUE(CreaCarpeta(folder.Path("a/b/c"))) << "one that is there is all right";
  EXPECT_TRUE(CreaCarpeta(folder.Path("a/b/c/")));
}

TEST(MakeFolder, AFileInTheWayIsAFailure) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "");
  CString error;
  EXPECT_FALSE(CreaCarpeta(folder.Path("a"), &error));
  EXPECT_THAT(error.Utf8(), StartsWith("cannot make the folder "));
  EXPECT_FALSE(CreaCarpeta(folder.Path("a/b")));
}

TEST(WritableFolder, IsTriedAndLeftAsItWas) {
  ScratchFolder folder;
  CString error;
  EXPECT_TRUE(CarpetaEscribible(folder.Path(), &error)) << error;
  EXPECT_EQ(folder.Files(), 0u);
}

TEST(WritableFolder, WhatTakesNoFilesIsNamedWithTheReason) {
  ScratchFolder folder;
  PutBytes(folder.Path("file"), "");
  CString error;
  EXPECT_FALSE(CarpetaEscribible(folder.Path("none"), &error));
  EXPECT_EQ(error, L"cannot write in " + folder.Path("none") + L": No such file or directory");
  EXPECT_FALSE(CarpetaEscribible(folder.Path("file")));
  EXPECT_FALSE(CarpetaEscribible(L"/proc"));
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaTemporal);
  EXPECT_FALSE(CarpetaEscribible(folder.Path()));
}

TEST(FreeSpace, IsThatOfTheDiskUnderThePath) {
  ScratchFolder folder;
  constexpr double kOfOthers = 1e9;  // who may write meanwhile; and more of it where this is held up between the two
  double free = 0, available = 0;
  for (int again = 0; again == 0 || (again < 10 && std::abs(free - available) > kOfOthers); ++again) {
    available = static_cast<double>(std::filesystem::space(folder.Path().Utf8()).available);
    free = static_cast<double>(EspacioLibre(folder.Path()));
  }
  EXPECT_NEAR(free, available, kOfOthers);
  EXPECT_EQ(EspacioLibre(folder.Path("none")), -1);
}

TEST(LookAtFile, TellsFilesFoldersAndWhatIsNotThereApart) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "four");
  EXPECT_TRUE(ExaminaFichero(folder.Path("a")).EsFichero());
  EXPECT_EQ(ExaminaFichero(folder.Path("a")).bytes, 4U);
  EXPECT_TRUE(ExaminaFichero(folder.Path()).EsCarpeta());
  EXPECT_EQ(ExaminaFichero(folder.Path("none")).clase, CDatosFichero::Nada);
}

TEST(LookAtFile, OneInThePlaceOfAnotherHasOtherMarks) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "old");
  const CDatosFichero before = ExaminaFichero(folder.Path("a"));
  EXPECT_EQ(ExaminaFichero(folder.Path("a")).numero, before.numero);
  PutBytes(folder.Path("b"), "new");
  ASSERT_TRUE(RenombraFichero(folder.Path("b"), folder.Path("a")));
  EXPECT_NE(ExaminaFichero(folder.Path("a")).numero, before.numero);
}

TEST(OneFile, IsKnownByWhateverName) {
  ScratchFolder folder;
  ASSERT_TRUE(CreaCarpeta(folder.Path("in")));
  PutBytes(folder.Path("a"), "");
  PutBytes(folder.Path("b"), "");
  EXPECT_TRUE(SonElMismoFichero(folder.Path("a"), folder.Path("in/../a")));
  EXPECT_FALSE(SonElMismoFichero(folder.Path("a"), folder.Path("b")));
  EXPECT_FALSE(SonElMismoFichero(folder.Path("a"), folder.Path("none")));
  EXPECT_TRUE(SonElMismoFichero(folder.Path("none"), folder.Path("in/../none"))) << "before it is there, too";
  EXPECT_FALSE(SonElMismoFichero(folder.Path("none"), folder.Path("in/none")));
  EXPECT_FALSE(SonElMismoFichero(folder.Path("no/a"), folder.Path("no/b")));
}

TEST(FolderNames, AreAllThatItHolds) {
  ScratchFolder folder;
  ASSERT_TRUE(CreaCarpeta(folder.Path("in")));
  PutBytes(folder.Path(".a"), "");
  ASSERT_TRUE(CFile(folder.Path() + L"/\u03b3\u5730", CFile::modeCreate | CFile::modeWrite).Close());
  EXPECT_THAT(NombresEnCarpeta(folder.Path()),
              testing::UnorderedElementsAre(CString(L"in"), CString(L".a"), CString(L"\u03b3\u5730")));
  EXPECT_THAT(NombresEnCarpeta(folder.Path("in")), testing::IsEmpty());
  EXPECT_THAT(NombresEnCarpeta(folder.Path("none")), testing::IsEmpty());
  EXPECT_FALSE(NombresEnCarpeta(L"").empty()) << "the folder that the process is in";
}

}  // namespace
