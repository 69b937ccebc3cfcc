// The TIN3D file: bytes, threads, what is refused.
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <set>

#include "support/FaultGuard.h"
#include "support/PlanarSizes.h"
#include "support/Random.h"
#include "support/SpaceFamilies.h"
#include "support/SpaceRun.h"
#include "tetrahedral/CHiloLeerTetraedros.h"

using namespace Meseta47;
using namespace Meseta47::support;
using namespace Meseta47::test;
using testing::AnyOf;
using testing::ElementsAre;

namespace {

constexpr std::size_t kHeadOne = 16, kHeadTwo = 41, kNodeHead = 48, kRecord = 47;

/// A file of bytes in the folder of a test.
class FileOf {
 public:
  FileOf(ScratchFolder const& folder, std::string const& bytes, wchar_t const* name = L"/mesh.tin3d")
      : path(folder.Path() + name) {
    std::ofstream(path.Utf8(), std::ios::binary) << bytes;
  }
  CString path;
};

CDibujo<int> CloudWithInfo(std::vector<Point> const& points) {
  CDibujo<int> drawing{CDataSemilla(3, 1000, 2000, 30)};
  CSetPuntos<int> set(L"cloud");
  std::uint8_t red = 0;
  for (Point const& p : points) {
    tipoAero3 info{};
    info.rojo = ++red;
    CCoor3D<int> place(p.x, p.y, p.z, 0);
    place.intensidad = 7;
    place.clasificacion = 6;
    set.Inserta(place, info);
  }
  drawing.Inserta(std::move(set));
  return drawing;
}

/// The bytes of a cloud's mesh.
std::string Written(std::vector<Point> const& points, int version) {
  const QuietApp app;
  CDibujo<int> drawing = CloudWithInfo(points);
  OpenTriangulation3D t(EverythingIn(), drawing.semilla);
  EXPECT_EQ(t.Run(drawing, true), kHecho);
  const CString path = app.folder.Path() + L"/written.tin3d";
  EXPECT_EQ(t.Write(path, version), kHecho);
  return BytesOf(path);
}

/// What a mesh comes to: every tetrahedron, its set and its neighbours, in the order of the file.
std::string Told(OpenTriangulation3D& t) {
  std::vector<CTetraedro*> all;
  t.setRaiz.RellenaVectorPunteros(all);
  std::map<CTetraedro const*, std::size_t> place;
  for (CTetraedro const* each : all) place.emplace(each, place.size());
  std::string text;
  const auto number = [&](auto n) { text += std::to_string(n) + " "; };
  for (CTetraedro const* each : all) {
    for (const int n : {each->N1(), each->N2(), each->N3(), each->N4()}) number(n);
    for (CTetraedro const* v :
         {each->GetVecino123(), each->GetVecino124(), each->GetVecino134(), each->GetVecino234()}) {
      number(v == nullptr ? -1 : static_cast<long>(place.at(v)));
    }
    number(each->Centro().centro.x);
    number(each->Centro().radio);
    number(each->GetSet()->nivel);
    number(each->GetIdentificador());
    text += '\n';
  }
  for (CPuntoTIN const& p : t.puntos) {
    for (const int n : {p.x, p.y, p.z, p.num}) number(n);
  }
  return text;
}

template <class T>
T At(std::string const& bytes, std::size_t at) {
  T value{};
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}
template <class T>
std::string With(std::string bytes, std::size_t at, T value) {
  std::memcpy(bytes.data() + at, &value, sizeof value);
  return bytes;
}

const std::vector<Point> kFew{{0, 0, 0},     {900, 10, 20},  {30, 800, 5},    {700, 750, 15},  {10, 25, 850},
                              {920, 5, 900}, {40, 810, 870}, {680, 690, 940}, {430, 380, 510}, {430, 380, 510}};

/// Where the count of tetrahedra stands.
std::size_t TreeOf(std::string const& bytes) {
  const std::size_t head = bytes[14] == '1' ? kHeadOne : kHeadTwo;
  if (bytes[14] == '1') return head + 28 + 4 + 12 * At<std::uint32_t>(bytes, head + 28);
  const bool rich = At<std::uint32_t>(bytes, head + 28) == 1;
  return head + 28 + 12 + (rich ? 36 : 20) * At<std::uint64_t>(bytes, head + 32) + 8;
}

/// Reads bytes as files, many of them.
class Reader {
 public:
  explicit Reader(unsigned processors = 1) : app(processors) {}
  int operator()(std::string const& bytes) {
    std::ofstream(path.Utf8(), std::ios::binary) << bytes;
    return read();
  }
  /// What was read last, cut off.
  int cutAt(std::size_t length) {
    std::filesystem::resize_file(path.Utf8(), length);
    return read();
  }

 private:
  int read() {
    const int code = t.Read(path, false);
    if (code != kHecho) {
      EXPECT_EQ(t.CantidadPuntos() + t.CantidadTetraedros() + t.puntos.size(), 0U);
    }
    return code;
  }

  QuietApp app;
  CString path = app.folder.Path() + L"/mesh.tin3d";
  OpenTriangulation3D t;
};
int CodeOf(std::string const& bytes, unsigned processors = 2) { return Reader(processors)(bytes); }

class BothVersions : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Tin3d, BothVersions, testing::Values(1, 2));

TEST_P(BothVersions, EveryByteStandsWhereTheDescriptionPutsIt) {
  const std::string bytes = Written(kFew, GetParam());
  EXPECT_STREQ(bytes.c_str(), GetParam() == 1 ? "Ondara-TIN3D-01" : "Ondara-TIN3D-02");
  const std::size_t head = GetParam() == 1 ? kHeadOne : kHeadTwo;
  if (GetParam() == 2) {
    EXPECT_EQ(bytes[16], 3);
    EXPECT_EQ(At<double>(bytes, 17), 1000.0);
    EXPECT_EQ(At<double>(bytes, 33), 30.0);
  }
  EXPECT_EQ(At<std::int32_t>(bytes, head), 920);      // greatest x
  EXPECT_EQ(At<std::int32_t>(bytes, head + 8), 940);  // greatest z
  EXPECT_EQ(At<std::int32_t>(bytes, head + 12), 0);   // least x
  EXPECT_EQ(At<std::int32_t>(bytes, head + 24), 0);   // limit
  const std::size_t tree = TreeOf(bytes), root = tree + 4;
  const auto tetrahedra = At<std::uint32_t>(bytes, tree);
  EXPECT_EQ(At<std::uint32_t>(bytes, root), 0U);  // no children
  EXPECT_EQ(At<std::uint32_t>(bytes, root + 4), tetrahedra);
  EXPECT_EQ(At<std::uint32_t>(bytes, root + 8), 0U);
  EXPECT_EQ(At<std::int32_t>(bytes, root + 24), 940 + 920);  // greatest x of three extents
  EXPECT_EQ(bytes.size(), root + kNodeHead + kRecord * tetrahedra);
  const std::size_t first = root + kNodeHead;
  EXPECT_LT(At<std::int32_t>(bytes, first + 15), At<std::int32_t>(bytes, first + 19));  // ascending
  EXPECT_LT(At<std::int32_t>(bytes, first + 43), static_cast<std::int32_t>(tetrahedra));
  if (GetParam() == 1) {
    EXPECT_EQ(At<std::uint32_t>(bytes, 44), kFew.size());
    EXPECT_EQ(At<std::int32_t>(bytes, 48), 0);  // the least point comes first
  }
}

TEST_P(BothVersions, TheGoldenFileIsWrittenToTheByteAndReadByAnyNumberOfThreads) {
  const std::string path = std::string(URDIMBRE_GOLDEN) + "/mesh" + std::to_string(GetParam()) + ".tin3d";
  const std::string golden = BytesOf(CString::DesdeUtf8(path)), now = Written(kFew, GetParam());
  if (std::getenv("URDIMBRE_WRITE_GOLDEN") != nullptr) std::ofstream(path, std::ios::binary) << now;
  EXPECT_TRUE(now == golden) << "to write it anew: URDIMBRE_WRITE_GOLDEN=1";
  std::set<std::string> meshes;
  for (const unsigned processors : {1U, 2U, 4U}) {
    const QuietApp app(processors);
    OpenTriangulation3D t;
    ASSERT_EQ(t.Read(CString::DesdeUtf8(path), false), kHecho);
    EXPECT_EQ(t.CantidadPuntos(), kFew.size());
    EXPECT_EQ(t.fichero.Utf8(), path);
    meshes.insert(Told(t));
  }
  EXPECT_EQ(meshes.size(), 1U);
}

TEST_P(BothVersions, AMeshIsReadBackAsItWasAndWrittenToTheSameBytes) {
  for (const unsigned processors : {1U, 2U, 4U}) {
    const QuietApp app(processors);
    CDibujo<int> drawing = CloudWithInfo(alongACurve(spaceFamily(SpaceFamily::Duplicates, 3000, 4)));
    OpenTriangulation3D t(EverythingIn(), drawing.semilla), back(EverythingIn(), drawing.semilla);
    ASSERT_EQ(t.Run(drawing, true), kHecho);
    const CString first = app.folder.Path() + L"/1.tin3d", second = app.folder.Path() + L"/2.tin3d";
    ASSERT_EQ(t.Write(first, GetParam()), kHecho);
    ASSERT_EQ(back.Read(first, true), kHecho);
    ASSERT_EQ(back.Write(second, GetParam()), kHecho);
    EXPECT_TRUE(BytesOf(first) == BytesOf(second));
    std::vector<CTetraedro*> all;
    t.setRaiz.RellenaVectorPunteros(all);
    for (CTetraedro* each : all) each->SetIdentificador(0);
    all.clear();
    back.setRaiz.RellenaVectorPunteros(all);
    for (CTetraedro* each : all) each->SetIdentificador(0);
    EXPECT_TRUE(Told(t) == Told(back));
    EXPECT_EQ(back.cantidades[0], t.CantidadTetraedros());
    EXPECT_EQ(back.GetMaximasInt(), t.GetMaximasInt());
    EXPECT_EQ(back.setRaiz.CantidadNiveles(), t.setRaiz.CantidadNiveles());
    for (int i = 0; i < 8; ++i) EXPECT_EQ(back.esquinas[i], t.esquinas[i]);
    EXPECT_EQ(app.TemporaryFiles(), 2U);  // the two meshes, and nothing else
  }
}

TEST_P(BothVersions, AMeshReadBackTakesFurtherPoints) {
  const QuietApp app;
  const FileOf file(app.folder, Written(spaceFamily(SpaceFamily::Random, 400, 8), GetParam()));
  OpenTriangulation3D t;
  ASSERT_EQ(t.Read(file.path, false), kHecho);
  for (int i = 1; i <= 40; ++i) EXPECT_TRUE(t.PuntoNuevo(CCoor3D<int>(i * 24'001, 500'003 + i, 400'001, 0), nullptr));
  SpaceMesh mesh;
  for (CPuntoTIN const& p : t.puntos) mesh.points.push_back({p.x, p.y, p.z});
  for (CPuntoTIN const& p : t.esquinas) mesh.corners.push_back({p.x, p.y, p.z});
  std::vector<CTetraedro*> all;
  t.setRaiz.RellenaVectorPunteros(all);
  for (CTetraedro const* each : all) mesh.tetrahedra.push_back({each->N1(), each->N2(), each->N3(), each->N4()});
  EXPECT_EQ(cubeTilingFaults(mesh, inspect(mesh)), "");
}

TEST(Tin3d, TheSecondVersionKeepsSeedAndSurveyDataAndTheFirstDoesNot) {
  const QuietApp app;
  OpenTriangulation3D one(EverythingIn(), CDataSemilla(1, 5, 6, 7)), two;
  const FileOf first(app.folder, Written(kFew, 1), L"/1.tin3d"), second(app.folder, Written(kFew, 2), L"/2.tin3d");
  ASSERT_EQ(one.Read(first.path, false), kHecho);
  ASSERT_EQ(two.Read(second.path, false), kHecho);
  EXPECT_EQ(one.Semilla().precision, 1);
  EXPECT_EQ(one.Semilla().origen[0], 5.0);
  EXPECT_EQ(two.Semilla().precision, 3);
  EXPECT_EQ(two.Semilla().origen[1], 2000.0);
  EXPECT_EQ(one.Punto(3)->aero.rojo + one.Punto(3)->intensidad, 0);
  EXPECT_NE(two.Punto(3)->aero.rojo, 0);
  EXPECT_EQ(two.Punto(3)->clasificacion, 6);
}

TEST(Tin3d, AVersionBelowOneNamesTheSecondFormAndHasNoSeed) {
  const std::string zero = Written(kFew, 0), two = Written(kFew, 2);
  EXPECT_STREQ(zero.c_str(), "Ondara-TIN3D-02");
  EXPECT_EQ(zero.size() + 25, two.size());
  EXPECT_TRUE(zero.substr(16) == two.substr(41));
  EXPECT_NE(CodeOf(zero), kHecho);
}

TEST(Tin3d, WhatIsNoSuchFileIsToldByItsBeginning) {
  const QuietApp app;
  for (std::string const& bytes :
       {std::string(), std::string("Ondara-TIN3D-01"), std::string("Ondara-TIN3D-03\0", 16), std::string(100, 'x')}) {
    EXPECT_EQ(CodeOf(bytes), kFicheroInconsistente);
    const FileOf file(app.folder, bytes);
    CFile open(file.path, CFile::modeRead);
    EXPECT_FALSE(CTriangulacion3D::EsFormatoMDT3D(&open));
    EXPECT_EQ(CTriangulacion3D::VersionMDT(&open), 0);
  }
  const FileOf file(app.folder, Written(kFew, 2));
  CFile open(file.path, CFile::modeRead);
  EXPECT_TRUE(CTriangulacion3D::EsFormatoMDT3D(&open));
  EXPECT_EQ(CTriangulacion3D::VersionMDT(&open), 2);
  EXPECT_EQ(open.GetPosition(), 16U);
  OpenTriangulation3D t;
  EXPECT_EQ(t.Read(app.folder.Path() + L"/nowhere.tin3d", false), kFicheroInaccesible);
  EXPECT_EQ(t.Write(app.folder.Path() + L"/nowhere/mesh.tin3d", 2), kFicheroInaccesible);
}

TEST(Tin3d, FewerPointsThanProcessorsAreReadByOneThread) {
  for (const unsigned processors : {1U, 3U, 64U}) EXPECT_EQ(CodeOf(Written(kFew, 1), processors), kHecho);
}

TEST(Tin3d, AnEmptyMeshIsOneNodeOf48Bytes) {
  const QuietApp app;
  OpenTriangulation3D t;
  const CString path = app.folder.Path() + L"/empty.tin3d";
  ASSERT_EQ(t.Write(path, 1), kHecho);
  EXPECT_EQ(BytesOf(path).size(), 16U + 28 + 4 + 4 + 48);
  EXPECT_EQ(t.Read(path, false), kHecho);
  EXPECT_EQ(t.CantidadTetraedros(), 0U);
}

TEST(Tin3d, AFileCutShortAnywhereIsRefusedWithItsCode) {
  for (const int version : {1, 2}) {
    const std::string bytes = Written(spaceFamily(SpaceFamily::Random, 120, 5), version);
    ASSERT_GT(bytes.size(), 20'000U);
    const std::size_t head = version == 1 ? kHeadOne : kHeadTwo;
    Random random(77);
    Reader codeOf;
    EXPECT_EQ(codeOf(bytes + "behind"), kHecho);  // what follows is not looked at
    EXPECT_EQ(codeOf.cutAt(bytes.size()), kHecho);
    std::vector<std::size_t> lengths(4097);
    std::iota(lengths.begin(), lengths.end(), 0);
    for (int i = 0; i < 1000; ++i) lengths.push_back(random.bits() % bytes.size());
    std::sort(lengths.rbegin(), lengths.rend());
    for (const std::size_t length : lengths) {
      const int expected = length < 16                            ? kFicheroInconsistente
                           : length >= head && length < head + 24 ? kFicheroInaccesible
                                                                  : kFicheroCortado;
      EXPECT_EQ(codeOf.cutAt(length), expected) << version << ": " << length;
    }
  }
}

TEST(Tin3d, AChangedByteGivesACodeOrAMeshThatAgreesWithItself) {
  int refused = 0, taken = 0;
  for (const int version : {1, 2}) {
    const std::string bytes = Written(kFew, version);
    Reader codeOf;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      for (std::size_t flip = 0; flip < 3; ++flip) {
        if (!test::kFullSize && flip != at % 3) continue;  // one of the three a byte
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ std::array{1, 128, 255}[flip]);
        const int code = codeOf(changed);
        EXPECT_THAT(code, AnyOf(kHecho, kFicheroInaccesible, kFicheroCortado, kFicheroInconsistente)) << at;
        ++(code == kHecho ? taken : refused);
      }
    }
  }
  EXPECT_GT(refused, test::kFullSize ? 5000 : 1600);
  EXPECT_GT(taken,
            test::kFullSize ? 1000 : 330);  // places of points, spheres, states, boxes: no number of the mesh itself
}

/// A file of the first version with a number of it changed.
class ChangedMesh : public testing::Test {
 protected:
  [[nodiscard]] int With32(std::size_t at, std::uint32_t value) const { return CodeOf(With(bytes, at, value)); }
  std::string bytes = Written(kFew, 1);
  std::size_t tree = TreeOf(bytes), root = tree + 4, first = root + kNodeHead;
};

TEST_F(ChangedMesh, CountsOfTwoToThe32AreRefusedBeforeMemoryIsTaken) {
  EXPECT_EQ(With32(44, 0xFFFFFFFF), kFicheroCortado);
  EXPECT_EQ(With32(tree, 0xFFFFFFFF), kFicheroInconsistente);
  EXPECT_EQ(With32(root + 4, 0xFFFFFFFF), kFicheroCortado);
  EXPECT_EQ(With32(tree, At<std::uint32_t>(bytes, tree) - 1), kFicheroInconsistente);
}

TEST_F(ChangedMesh, AMarkAboveOneIsRefusedAndOneAsksForEightChildren) {
  EXPECT_EQ(With32(root, 2), kFicheroInaccesible);
  EXPECT_EQ(With32(root, 0xFFFFFFFF), kFicheroInaccesible);
  EXPECT_EQ(With32(root, 1), kFicheroCortado);
}

TEST_F(ChangedMesh, ATreeCannotGoDeeperThanItsLevels) {
  EXPECT_EQ(With32(root + 8, 1), kFicheroInconsistente);
  // Nodes that each begin with a child like themselves, thousands deep.
  std::string deep = With<std::uint32_t>(bytes.substr(0, first), root, 1);
  deep = With<std::uint32_t>(deep, root + 4, 0);
  for (std::uint32_t level = 1; level < 5000; ++level) {
    deep += With<std::uint32_t>(deep.substr(root, kNodeHead), 8, level);
  }
  EXPECT_EQ(CodeOf(With<std::uint32_t>(deep, tree, 0)), kFicheroInconsistente);
}

TEST_F(ChangedMesh, NumbersOfPointsAndNeighboursMustExist) {
  EXPECT_EQ(With32(first + 31, static_cast<std::uint32_t>(-2)), kFicheroInconsistente);
  EXPECT_EQ(With32(first + 31, At<std::uint32_t>(bytes, tree)), kFicheroInconsistente);
  for (const int number : {-9, 0, static_cast<int>(kFew.size()) + 1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(With32(first + 15, static_cast<std::uint32_t>(number)), kFicheroInconsistente) << number;
  }
  EXPECT_EQ(With32(first + 19, At<std::uint32_t>(bytes, first + 15)), kFicheroInconsistente);  // a point twice
}

TEST_F(ChangedMesh, NeighboursThatDoNotPointBackAreRefused) {
  const auto tetrahedra = At<std::uint32_t>(bytes, tree);
  int tried = 0;
  for (std::uint32_t t = 0; t < tetrahedra; ++t) {
    for (std::size_t face = 0; face < 4; ++face) {
      const std::size_t at = first + kRecord * t + 31 + 4 * face;
      for (const std::uint32_t to : {t, (t + 1) % tetrahedra, static_cast<std::uint32_t>(-1)}) {
        if (At<std::uint32_t>(bytes, at) == to) continue;
        EXPECT_EQ(With32(at, to), kFicheroInconsistente) << t << " " << face;  // itself, another, none
        ++tried;
      }
    }
  }
  EXPECT_GT(tried, 300);
}

TEST_F(ChangedMesh, StatesAndSpheresOfTheFileAreNotBelieved) {
  std::string changed = bytes;
  for (std::size_t i = 0; i < 15; ++i) changed[first + i] = static_cast<char>(0xFF);
  const QuietApp app;
  const FileOf one(app.folder, bytes, L"/1.tin3d"), other(app.folder, changed, L"/2.tin3d");
  OpenTriangulation3D a, b;
  ASSERT_EQ(a.Read(one.path, false), kHecho);
  ASSERT_EQ(b.Read(other.path, false), kHecho);
  EXPECT_EQ(Told(a), Told(b));
  CTetraedro const* t = b.setRaiz.Primero();
  EXPECT_FALSE(t->Borrado());
  CCara faces[4];
  t->GetCaras(faces);
  for (CCara const& face : faces) {
    EXPECT_EQ(face.D12() + face.D13() + face.D23(), 6);
    EXPECT_FALSE(face.Grabado());
  }
}

TEST(Tin3d, VerticesInAnotherOrderAreSortedAndTheirNeighboursWithThem) {
  std::string bytes = Written(kFew, 1);
  const std::size_t first = TreeOf(bytes) + 4 + kNodeHead;
  const auto swap = [&](std::size_t a, std::size_t b) {
    const auto keep = At<std::int32_t>(bytes, first + a);
    bytes = With(bytes, first + a, At<std::int32_t>(bytes, first + b));
    bytes = With(bytes, first + b, keep);
  };
  const std::string before = bytes;
  swap(15, 19);  // P1 and P2: the faces 134 and 234 change names
  swap(39, 43);
  const QuietApp app;
  const FileOf one(app.folder, before, L"/1.tin3d"), other(app.folder, bytes, L"/2.tin3d");
  OpenTriangulation3D a, b;
  ASSERT_EQ(a.Read(one.path, false), kHecho);
  ASSERT_EQ(b.Read(other.path, false), kHecho);
  EXPECT_EQ(Told(a), Told(b));
}

TEST(Tin3d, ATetrahedronIsARecordOf47Bytes) {
  const QuietApp app;
  CCoor3D<int> p[4] = {{0, 0, 0, 4}, {10, 0, 0, -2}, {0, 10, 0, 6}, {0, 0, 10, 5}};
  CTetraedro t(&p[0], &p[1], &p[2], &p[3]), next;
  next.SetIdentificador(31);
  t.SetVecino134(&next, 0, 1, 1, true);
  const CString path = app.folder.Path() + L"/one";
  CFile file(path, CFile::modeReadWrite | CFile::modeCreate);
  ASSERT_TRUE(t.Write(&file));
  ASSERT_TRUE(file.Flush());
  const std::string bytes = BytesOf(path);
  ASSERT_EQ(bytes.size(), kRecord);
  std::vector<std::int32_t> numbers(8);
  std::memcpy(numbers.data(), bytes.data() + 15, 32);
  EXPECT_THAT(numbers, ElementsAre(-2, 4, 5, 6, -1, -1, 31, -1));
  EXPECT_EQ(At<std::int32_t>(bytes, 3), 5);  // the centre
  EXPECT_EQ(At<std::uint16_t>(bytes, 0) >> 3 & 1, 1);
  file.Seek(0, CFile::begin);
  CTetraedro back;
  EXPECT_EQ(back.Read(&file), 1);
  EXPECT_EQ(reinterpret_cast<std::intptr_t>(back.P1()), -2);
  EXPECT_EQ(reinterpret_cast<std::intptr_t>(back.P4()), 6);
  EXPECT_EQ(back.Read(&file), 1);  // nothing left, and nobody notices here
  EXPECT_EQ(back.P1(), nullptr);
  t.clear();
}

TEST(Tin3d, ATreeReadInOneGoIsTheSameAsByNodes) {
  const QuietApp app;
  const std::string bytes = Written(spaceFamily(SpaceFamily::Random, 900, 3), 1);
  const FileOf file(app.folder, bytes);
  OpenTriangulation3D t;
  ASSERT_EQ(t.Read(file.path, false), kHecho);
  CFile open(file.path, CFile::modeRead);
  open.Seek(static_cast<long long>(TreeOf(bytes)) + 4, CFile::begin);
  CSetTetraedros tree(0), heads(0);
  std::vector<CTetraedro*> all;
  unsigned value = 0;
  ASSERT_EQ(tree.Read(&open, all, value, 100), kHecho);
  EXPECT_EQ(value, t.CantidadTetraedros());
  value = 0;
  ASSERT_EQ(tree.AsignarVecinos(all, t.puntos, t.esquinas, value, 100), kHecho);
  EXPECT_GT(value, 0U);
  ASSERT_EQ(all.size(), t.CantidadTetraedros());
  EXPECT_GT(tree.CantidadNiveles(), 1U);
  EXPECT_EQ(tree.Tetraedro(77)->N4(), t.setRaiz.Tetraedro(77)->N4());
  EXPECT_EQ(all[5]->GetVecino123()->N1(), t.setRaiz.GetTetraedroSegunID(5)->GetVecino123()->N1());
  const CString path = app.folder.Path() + L"/tree";
  CFile out(path, CFile::modeReadWrite | CFile::modeCreate);
  value = 0;
  EXPECT_EQ(tree.Write(&out, value, 100), kHecho);
  EXPECT_TRUE(out.Flush());
  EXPECT_TRUE(BytesOf(path) == bytes.substr(TreeOf(bytes)));
  open.Seek(static_cast<long long>(TreeOf(bytes)) + 4, CFile::begin);
  std::vector<CSetTetraedros*> sets;
  std::vector<unsigned long long> places;
  EXPECT_EQ(heads.ReadCabeceras(&open, sets, places), kHecho);
  EXPECT_EQ(sets.size(), places.size());
  EXPECT_EQ(sets.front(), &heads);
  EXPECT_EQ(heads.Cantidad(), 0U);
}

TEST_P(BothVersions, CancelledAtAnyStepNothingIsLeftOfIt) {
  ListeningApp app(2);
  const FileOf file(app.folder, Written(spaceFamily(SpaceFamily::Random, 300, 2), GetParam()));
  OpenTriangulation3D t;
  for (const bool writes : {false, true}) {
    app.cancelAt = 0;
    app.steps.clear();
    app.phases.clear();
    const CString out = app.folder.Path() + L"/out.tin3d";
    ASSERT_EQ(writes ? t.Write(out, GetParam()) : t.Read(file.path, false), kHecho);
    EXPECT_EQ(app.PhaseMessages(), std::vector<unsigned>(2, writes ? 19022 : 19018));
    const int steps = static_cast<int>(app.steps.size());
    const std::string whole = writes ? BytesOf(out) : "";
    for (int at = 1; at <= steps; at += at < 6 || at > steps - 4 ? 1 : 97) {
      app.steps.clear();
      app.cancelAt = at;
      const int code = writes ? t.Write(out, GetParam()) : t.Read(file.path, false);
      // How often a reader's owner looks depends on how long the readers take.
      if (writes || code != kHecho) {
        EXPECT_EQ(code, kCancelado) << at << " of " << steps;
      }
      if (writes) {
        EXPECT_TRUE(BytesOf(out) == whole);
      } else if (code == kCancelado) {
        EXPECT_EQ(t.CantidadTetraedros(), 0U);
      }
    }
    app.cancelAt = 0;
    ASSERT_EQ(t.Read(file.path, false), kHecho);
  }
}

TEST_P(BothVersions, EveryRefusalOfTheSystemIsACode) {
  const QuietApp app(2);
  const FileOf file(app.folder, Written(spaceFamily(SpaceFamily::Random, 2000, 2), GetParam()));
  OpenTriangulation3D t;
  int failures = 0;
  for (const bool writes : {false, true}) {
    for (const EOperacion operation : kEveryOperation) {
      if (operation == EOperacion::CreaSeccion) continue;  // the one refusal that is an exception
      for (int nth = 1; nth < 60; ++nth) {
        ASSERT_EQ(t.Read(file.path, false), kHecho);
        const CString out = app.folder.Path() + L"/out.tin3d";
        int code = 0;
        bool met = false;
        {
          FaultGuard guard;
          guard.RefuseOnce(operation, nth);
          code = writes ? t.Write(out, GetParam()) : t.Read(file.path, false);
          met = guard.Asked(operation) >= nth;
        }
        if (!met) break;
        failures += code != kHecho ? 1 : 0;
        EXPECT_THAT(code, AnyOf(kHecho, kFicheroInaccesible, kFicheroInconsistente, kFicheroCortado));
        if (!writes) {
          EXPECT_EQ(t.CantidadTetraedros() == 0, code != kHecho);
        }
        if (writes && code == kHecho) {
          EXPECT_TRUE(BytesOf(out) == BytesOf(file.path));
        }
        EXPECT_LE(app.TemporaryFiles(), 2U);
      }
    }
  }
  EXPECT_GT(failures, 15);
}

TEST(Tin3d, AMeshOfAnotherObjectIsReplacedAndAFailureLeavesNothing) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(kFew);
  OpenTriangulation3D t(EverythingIn(), CDataSemilla(1, 4, 4, 4));
  ASSERT_EQ(t.Run(drawing, false), kHecho);
  const FileOf file(app.folder, Written(spaceFamily(SpaceFamily::Random, 50, 2), 2)), bad(app.folder, "?", L"/bad");
  ASSERT_EQ(t.Read(file.path, false), kHecho);
  EXPECT_EQ(t.CantidadPuntos(), 50U);
  EXPECT_EQ(t.Read(bad.path, false), kFicheroInconsistente);
  EXPECT_EQ(t.CantidadPuntos(), 0U);
  EXPECT_EQ(t.Punto(0), nullptr);
  EXPECT_FALSE(t.PuntoNuevo(CCoor3D<int>(1, 1, 1, 0), nullptr));
  ASSERT_EQ(t.Run(drawing, false), kHecho);
}

TEST(CHiloLeerTetraedros, PrioritiesAreThoseOfTheSystem) {
  EXPECT_EQ(CHiloLeerTetraedros::P_CRITICAL, 15);
  EXPECT_EQ(CHiloLeerTetraedros::P_NORMAL, 0);
  EXPECT_EQ(CHiloLeerTetraedros::P_LOWEST, -2);
  EXPECT_EQ(CHiloLeerTetraedros::P_IDLE, -15);
  EXPECT_EQ(CHiloLeerTetraedros::P_HIGHEST, 2);
  EXPECT_EQ(CHiloLeerTetraedros::P_BELOW_NORMAL, -1);
  EXPECT_EQ(CHiloLeerTetraedros::P_ABOVE_NORMAL, 1);
}

}  // namespace
