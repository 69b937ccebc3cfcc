#include "model/terrain/CModeloDigital.h"

#include <gtest/gtest.h>

#include "model/TinScenes.h"
#include "model/storage/CFicheroSumado.h"
#include "model/threads/Codigos.h"
#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

using namespace Meseta47;
using namespace scenes;

namespace {

CModeloDigital model(int size = 3) {
  const CDataSemilla seed(3, 500000, 4500000, 0.5);
  auto* tin = new CTIN(finished(
      Grid(size, size, 5), [](std::size_t i) { return i % 7 != 3; }, seed));
  tin->longitudMaxima = 143;
  tin->estado = 1;
  return CModeloDigital(tin);
}

int read(CString const& path) {
  CModeloDigital other(new CTIN(0, 0, CDataSemilla()));
  return other.Read(path);
}

}  // namespace

TEST(CModeloDigital, ComesBackFromItsFileAsItWas) {
  const ScratchFolder folder;
  CModeloDigital written = model();
  ASSERT_EQ(written.Write(folder.Path("m"), 4), kHecho);
  EXPECT_EQ(folder.Files(), 1u);
  EXPECT_EQ(written.fichero, folder.Path("m"));

  CModeloDigital other(new CTIN(0, 0, CDataSemilla()));
  ASSERT_EQ(other.Read(folder.Path("m")), kHecho);
  CTIN const &a = written.Tin(), &b = other.Tin();
  EXPECT_EQ(b.semilla.precision, 3);
  EXPECT_EQ(b.semilla.origen[0], 500000);
  EXPECT_EQ(b.semilla.origen[1], 4500000);
  EXPECT_EQ(b.semilla.origen[2], 0.5);
  EXPECT_EQ(b.longitudMaxima, 143);
  EXPECT_EQ(b.estado, 1);
  ASSERT_EQ(b.puntos.size(), a.puntos.size());
  EXPECT_TRUE(std::equal(a.puntos.begin(), a.puntos.end(), b.puntos.begin()));
  EXPECT_EQ(sortedTriangles(b), sortedTriangles(a));
  EXPECT_TRUE(b.EstaEnlazado());
  EXPECT_EQ(neighbours(b), neighbours(a));
  EXPECT_EQ(b.Limite(), a.Limite());
  for (std::size_t i = 0; i < a.Limite().size(); ++i) EXPECT_EQ(b.EsHueco(i), a.EsHueco(i));
  EXPECT_EQ(other.cantidades[1], a.Cantidad());
}

TEST(CModeloDigital, GivesItsPointsWithoutItsTriangles) {
  const ScratchFolder folder;
  CModeloDigital written = model();
  ASSERT_EQ(written.Write(folder.Path("m"), 4), kHecho);
  CModeloDigital other = model(2);
  ASSERT_EQ(other.ReadPuntos(folder.Path("m")), kHecho);
  CTIN const &a = written.Tin(), &b = other.Tin();
  EXPECT_EQ(b.semilla.origen[1], 4500000);
  ASSERT_EQ(b.puntos.size(), a.puntos.size());
  EXPECT_TRUE(std::equal(a.puntos.begin(), a.puntos.end(), b.puntos.begin()));
  EXPECT_EQ(b.Cantidad(), 0u);
  EXPECT_TRUE(b.Limite().empty());
  EXPECT_EQ(other.ReadPuntos(folder.Path("none")), kFicheroInaccesible);
  EXPECT_EQ(other.Tin().puntos.size(), a.puntos.size()) << "what fails leaves the surface as it was";
}

TEST(CModeloDigital, TheSameModelGivesTheSameBytes) {
  const ScratchFolder folder;
  model().Write(folder.Path("a"), 4);
  const Processors four(4);
  model().Write(folder.Path("b"), 4);
  EXPECT_EQ(BytesOf(folder.Path("a")), BytesOf(folder.Path("b")));
}

TEST(CModeloDigital, AnEmptyModelComesBackToo) {
  const ScratchFolder folder;
  CModeloDigital empty(new CTIN(0, 0, CDataSemilla()));
  ASSERT_EQ(empty.Write(folder.Path("m"), 4), kHecho);
  CModeloDigital other = model();
  ASSERT_EQ(other.Read(folder.Path("m")), kHecho);
  EXPECT_EQ(other.Tin().Cantidad(), 0u);
  EXPECT_FALSE(other.Tin().EstaEnlazado());
}

TEST(CModeloDigital, IsRefusedWhereverItIsCut) {
  const ScratchFolder folder;
  ASSERT_EQ(model().Write(folder.Path("m"), 4), kHecho);
  const std::string whole = BytesOf(folder.Path("m"));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    PutBytes(folder.Path("cut"), whole.substr(0, length));
    EXPECT_EQ(read(folder.Path("cut")), kFicheroCortado) << "cut to " << length;
  }
}

TEST(CModeloDigital, IsRefusedWhicheverByteIsAnother) {
  const ScratchFolder folder;
  ASSERT_EQ(model(2).Write(folder.Path("m"), 4), kHecho);
  const std::string whole = BytesOf(folder.Path("m"));
  for (const int change : {0x01, 0x80, 0xFF}) {
    for (std::size_t i = 0; i < whole.size(); ++i) {
      std::string damaged = whole;
      damaged[i] = static_cast<char>(damaged[i] ^ change);
      PutBytes(folder.Path("bad"), damaged);
      EXPECT_NE(read(folder.Path("bad")), kHecho) << "byte " << i;
    }
  }
}

TEST(CModeloDigital, IsRefusedWithARingOfFewerThanThreePointsThoughItsSumIsRight) {
  const ScratchFolder folder;
  CModeloDigital empty(new CTIN(0, 0, CDataSemilla()));
  ASSERT_EQ(empty.Write(folder.Path("m"), 4), kHecho);
  const std::string whole = BytesOf(folder.Path("m"));
  constexpr std::size_t kOutline = 4 + 8;  // no rings, and the sum
  {
    CFile file;
    ASSERT_TRUE(file.Open(folder.Path("bad"), CFile::modeCreate | CFile::modeWrite));
    ASSERT_TRUE(file.Write(whole.data(), whole.size() - kOutline));
    CSeccionSalida outline(file);
    for (const std::uint32_t number : {1U, 0U, 0U}) outline.Pon(number);  // one ring, no hole, no points
    ASSERT_TRUE(outline.Cierra());
  }
  EXPECT_EQ(read(folder.Path("bad")), kFicheroInconsistente);
}

TEST(CModeloDigital, IsRefusedWithSomethingBehindIt) {
  const ScratchFolder folder;
  ASSERT_EQ(model().Write(folder.Path("m"), 4), kHecho);
  PutBytes(folder.Path("m"), BytesOf(folder.Path("m")) + '\0');
  EXPECT_EQ(read(folder.Path("m")), kFicheroInconsistente);
}

TEST(CModeloDigital, ARefusedFileLeavesTheSurfaceAndSaysWhy) {
  const ScratchFolder folder;
  CModeloDigital m = model();
  const auto before = m.Tin().Cantidad();
  EXPECT_EQ(m.Read(folder.Path("none")), kFicheroInaccesible);
  EXPECT_NE(m.Error().Find(L"none"), -1);
  PutBytes(folder.Path("text"), std::string(500, 'x'));
  EXPECT_EQ(m.Read(folder.Path("text")), kFicheroInconsistente);
  EXPECT_NE(m.Error().Find(L"no terrain model"), -1);
  PutBytes(folder.Path("short"), "Urd");
  EXPECT_EQ(m.Read(folder.Path("short")), kFicheroCortado);
  EXPECT_NE(m.Error().Find(L"cut short"), -1);
  EXPECT_EQ(m.Tin().Cantidad(), before);
}

TEST(CModeloDigital, OtherVersionsAndUnsortedSurfacesAreNotWritten) {
  const ScratchFolder folder;
  CModeloDigital m = model();
  EXPECT_EQ(m.Write(folder.Path("m"), 3), kFicheroInconsistente);
  insert(m.Tin(), {0, 1, 2});
  EXPECT_EQ(m.Write(folder.Path("m"), 4), kFicheroInconsistente);
  EXPECT_EQ(m.Exportar(folder.Path("m"), CDataExportarMDT(FORMATO_PLY)), kFicheroInconsistente);
  EXPECT_EQ(folder.Files(), 0u);
}

class EveryFormat : public testing::TestWithParam<int> {};

TEST_P(EveryFormat, AFullDiskLeavesNoHalfFileAndTheOldOneUnharmed) {
  const ScratchFolder folder;
  CModeloDigital m = model(20);
  ASSERT_EQ(m.Exportar(folder.Path("m"), CDataExportarMDT(GetParam())), kHecho);
  const std::string whole = BytesOf(folder.Path("m"));
  PutBytes(folder.Path("m"), "the old one");
  for (const std::size_t room : {std::size_t{0}, std::size_t{100}, whole.size() / 2, whole.size() - 1}) {
    FaultGuard guard;
    guard.LimitDisk(room);
    EXPECT_EQ(m.Exportar(folder.Path("m"), CDataExportarMDT(GetParam())), kFicheroInaccesible) << room;
    EXPECT_EQ(m.Error(), L"cannot write " + folder.Path("m") + L": No space left on device");
    EXPECT_EQ(BytesOf(folder.Path("m")), "the old one");
    EXPECT_EQ(folder.Files(), 1u);
  }
  EXPECT_EQ(m.Exportar(folder.Path("m"), CDataExportarMDT(GetParam())), kHecho);
  EXPECT_EQ(BytesOf(folder.Path("m")), whole);
  EXPECT_TRUE(m.Error().IsEmpty());
}

TEST_P(EveryFormat, AFolderThatIsNotThereIsToldAndSoIsARefusedRename) {
  const ScratchFolder folder;
  CModeloDigital m = model();
  EXPECT_EQ(m.Exportar(folder.Path("none/m"), CDataExportarMDT(GetParam())), kFicheroInaccesible);
  EXPECT_FALSE(m.Error().IsEmpty());
  FaultGuard guard;
  guard.Refuse(EOperacion::Renombra);
  EXPECT_EQ(m.Exportar(folder.Path("m"), CDataExportarMDT(GetParam())), kFicheroInaccesible);
  EXPECT_FALSE(m.Error().IsEmpty());
  EXPECT_EQ(folder.Files(), 0u);
}

TEST_P(EveryFormat, ACancelledFileIsGone) {
  const ScratchFolder folder;
  CModeloDigital m = model(20);
  Listener listener;
  ASSERT_EQ(m.Exportar(folder.Path("m"), CDataExportarMDT(GetParam())), kHecho);
  ASSERT_GT(listener.reports, 0);
  EXPECT_FALSE(listener.beyondTotal);
  EXPECT_EQ(listener.phases, std::vector<unsigned>{19022});
  const int reports = listener.reports;
  for (int n = 1; n <= reports; ++n) {
    listener.cancelAt = listener.reports + n;
    EXPECT_EQ(m.Exportar(folder.Path("other"), CDataExportarMDT(GetParam())), kCancelado);
    EXPECT_EQ(folder.Files(), 1u);
  }
}

TEST_P(EveryFormat, AtLevelZeroNothingIsReported) {
  const ScratchFolder folder;
  CModeloDigital m = model();
  m.Mensajes(MENSAJES_NINGUNO);
  Listener listener;
  ASSERT_EQ(m.Exportar(folder.Path("m"), CDataExportarMDT(GetParam())), kHecho);
  EXPECT_EQ(listener.reports, 0);
  EXPECT_TRUE(listener.phases.empty());
}

INSTANTIATE_TEST_SUITE_P(Formats, EveryFormat,
                         testing::Values(FORMATO_PLY, FORMATO_OBJ, FORMATO_2DM, FORMATO_NATIVO, FORMATO_LANDXML));

TEST(CModeloDigital, ReadingCanBeCancelled) {
  const ScratchFolder folder;
  CModeloDigital m = model(20);
  ASSERT_EQ(m.Write(folder.Path("m"), 4), kHecho);
  Listener listener;
  listener.cancelAt = 1;
  EXPECT_EQ(m.Read(folder.Path("m")), kCancelado);
  EXPECT_EQ(listener.phases, std::vector<unsigned>{19018});
}

TEST(CModeloDigital, ACopyIsItsOwn) {
  CModeloDigital a = model(), b(a), c = model(2);
  c = a;
  b.Clear();
  EXPECT_EQ(b.Tin().Cantidad(), 0u);
  EXPECT_EQ(sortedTriangles(c.Tin()), sortedTriangles(a.Tin()));
  EXPECT_EQ(a.GetTipoObjeto(), OBJETO_MODELO_DIGITAL);
}

TEST(CModeloDigital, AnUnknownFormatIsRefused) {
  const ScratchFolder folder;
  EXPECT_EQ(model().Exportar(folder.Path("m"), CDataExportarMDT(99)), kFicheroInconsistente);
  EXPECT_EQ(folder.Files(), 0u);
}
