// The temporary file of a run, and the readers of its triples.
#include "run/CFicheroTriples.h"

#include <filesystem>
#include <gmock/gmock.h>

#include "SystemNames.h"
#include "model/threads/Codigos.h"
#include "platform/CWinApp.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace Meseta47 {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr wchar_t kSpare[] = L"Spare.tmp";

class App : public CWinApp {
 public:
  App() { PonCarpetaTemporal(folder.Path()); }
  [[nodiscard]] std::size_t TemporaryFiles() const { return folder.Files() + folder.OpenWithoutName(); }

  ScratchFolder folder;
};

class CFicheroTriplesTest : public testing::Test {
 protected:
  void Fill(int triples) {
    ASSERT_EQ(file.Abre(7, kSpare), kHecho);
    for (int i = 0; i < triples; ++i) {
      const CTriple t{3 * i + 1, 3 * i + 2, 3 * i + 3};
      ASSERT_TRUE(file.Fichero()->Write(t.data(), CFicheroTriples::kBytes));
    }
    ASSERT_TRUE(file.Vuelca());
  }
  static std::vector<int> FirstNumbers(CLectorTriples& reader) {
    std::vector<int> first;
    for (auto block = reader.Siguiente(); !block.empty(); block = reader.Siguiente()) {
      for (CTriple const& t : block) first.push_back(t[0]);
    }
    return first;
  }

  App app;
  CFicheroTriples file;
};

TEST_F(CFicheroTriplesTest, ItIsMadeInTheTemporaryFolderWithoutANameWhereItCanBeAndGoesWhenAsked) {
  EXPECT_FALSE(file.EstaAbierto());
  ASSERT_EQ(file.Abre(7, kSpare), kHecho);
  EXPECT_TRUE(file.EstaAbierto());
  EXPECT_EQ(app.folder.Files(), kTemporaryFilesHaveNames ? 1U : 0U);
  EXPECT_EQ(app.TemporaryFiles(), 1U);
  file.Borra();
  EXPECT_FALSE(file.EstaAbierto());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_F(CFicheroTriplesTest, ASpareNameThatIsTakenIsLeftAlone) {
  const CString spare = L"7MD" + CString(kSpare);
  PutBytes(spare, "another's");
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaTemporal);
  EXPECT_EQ(file.Abre(7, kSpare), kFicheroInaccesible);
  EXPECT_EQ(BytesOf(spare), "another's");
  std::filesystem::remove(spare.Utf8());
  EXPECT_EQ(file.Abre(7, kSpare), kHecho);
  EXPECT_TRUE(Exists(spare));
  file.Borra();
  EXPECT_FALSE(Exists(spare));
}

TEST_F(CFicheroTriplesTest, WhereAFileNeedsANameThatBeginsWithItsNumber) {
  FaultGuard guard;
  if (!kTemporaryFilesHaveNames) guard.RefuseOnce(EOperacion::Abre, 1).RefuseOnce(EOperacion::Borra, 1);
  ASSERT_EQ(file.Abre(7, kSpare), kHecho);
  const std::filesystem::path path = file.Ruta().Utf8();
  EXPECT_THAT(path.filename().string(), HasSubstr("7MD"));
  EXPECT_EQ(app.TemporaryFiles(), 1U);
  file.Borra();
  EXPECT_FALSE(file.EstaAbierto());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  file.Borra();
}

TEST_F(CFicheroTriplesTest, MadeAnewItLeavesNothingOfTheOneBefore) {
  ASSERT_EQ(file.Abre(7, kSpare), kHecho);
  ASSERT_EQ(file.Abre(7, kSpare), kHecho);
  EXPECT_EQ(app.TemporaryFiles(), 1U);
  file.Borra();
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_F(CFicheroTriplesTest, AFileThatCannotBeOpenedLeavesNothing) {
  FaultGuard guard;
  guard.Refuse(EOperacion::Abre);
  EXPECT_EQ(file.Abre(7, kSpare), kFicheroInaccesible);
  EXPECT_FALSE(file.EstaAbierto());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_F(CFicheroTriplesTest, SlicesHoldEveryTripleOnceWhateverTheBlock) {
  Fill(10);
  for (const unsigned block : {1U, 3U, 4U, 1024U}) {
    std::vector<int> first;
    for (unsigned k = 0; k < 3; ++k) {
      CLectorTriples reader(block);
      ASSERT_TRUE(reader.Abre(file.Ruta()));
      ASSERT_TRUE(reader.Situa(k, 4, reader.Longitud()));
      for (const int number : FirstNumbers(reader)) first.push_back(number);
      EXPECT_EQ(reader.Posicion(), reader.Limite());
    }
    EXPECT_THAT(first, ElementsAre(1, 4, 7, 10, 13, 16, 19, 22, 25, 28)) << "blocks of " << block;
  }
  file.Borra();
}

TEST_F(CFicheroTriplesTest, ASliceIsReadAgainAfterAnotherCallOfSitua) {
  Fill(4);
  CLectorTriples reader;
  ASSERT_TRUE(reader.Abre(file.Ruta()));
  for (int pass = 0; pass < 2; ++pass) {
    ASSERT_TRUE(reader.Situa(1, 2, 48));
    EXPECT_THAT(FirstNumbers(reader), ElementsAre(7, 10));
  }
  file.Borra();
}

TEST_F(CFicheroTriplesTest, ASliceBeyondTheEndIsEmptyAndARecordCutShortIsNotRead) {
  Fill(2);
  ASSERT_TRUE(file.Fichero()->Write("12345", 5));
  ASSERT_TRUE(file.Vuelca());
  CLectorTriples reader;
  ASSERT_TRUE(reader.Abre(file.Ruta()));
  ASSERT_TRUE(reader.Situa(0, 100, reader.Longitud()));
  EXPECT_THAT(FirstNumbers(reader), ElementsAre(1, 4));
  EXPECT_EQ(reader.Limite(), 29U);
  ASSERT_TRUE(reader.Situa(3, 100, 29));
  EXPECT_THAT(FirstNumbers(reader), IsEmpty());
  file.Borra();
}

TEST_F(CFicheroTriplesTest, ARefusalOfTheDiskIsTold) {
  Fill(4);
  FaultGuard guard;
  CLectorTriples reader;
  ASSERT_TRUE(reader.Abre(file.Ruta()));
  ASSERT_TRUE(reader.Situa(0, 4, 48));
  guard.Refuse(EOperacion::Lee);
  EXPECT_THAT(FirstNumbers(reader), IsEmpty());
  EXPECT_TRUE(reader.HayError());
  EXPECT_LT(reader.Posicion(), reader.Limite());
  file.Borra();
}

TEST(Triple, ANegativeNumberIsACornerOfTheFrame) {
  EXPECT_FALSE(TocaElMarco({1, 0, 3}));
  for (CTriple const& t : {CTriple{-1, 2, 3}, CTriple{1, -2, 3}, CTriple{1, 2, -8}}) EXPECT_TRUE(TocaElMarco(t));
}

}  // namespace
}  // namespace Meseta47
