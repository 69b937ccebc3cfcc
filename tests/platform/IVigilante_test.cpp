#include "platform/IVigilante.h"

#include <gmock/gmock.h>
#include <vector>

#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

class Recorder : public IVigilante {
 public:
  bool Permite(EOperacion operation, CString const& path) override {
    seen.emplace_back(operation, path);
    return true;
  }
  std::vector<std::pair<EOperacion, CString>> seen;
};

TEST(IVigilante, SetAnswersTheOneThatStoodBefore) {
  Recorder first;
  Recorder second;
  IVigilante* const before = PonVigilante(&first);
  EXPECT_EQ(PonVigilante(&second), &first);
  EXPECT_EQ(PonVigilante(nullptr), &second);
  EXPECT_EQ(PonVigilante(before), nullptr);
}

TEST(IVigilante, IsToldEveryOperationAndItsFile) {
  ScratchFolder folder;
  const CString path = folder.Path("a");
  Recorder recorder;
  IVigilante* const before = PonVigilante(&recorder);
  CFile file(path, CFile::modeCreate | CFile::modeReadWrite);
  file.Write("x", 1);
  EXPECT_EQ(file.GetLength(), 1u);
  file.Seek(0, CFile::begin);
  char byte;
  file.Read(&byte, 1);
  file.Seek(100000, CFile::begin);
  file.Read(&byte, 1);
  file.Close();
  PonVigilante(before);

  using enum EOperacion;
  std::vector<EOperacion> operations;
  for (auto const& [operation, seenPath] : recorder.seen) {
    EXPECT_EQ(seenPath, path);
    operations.push_back(operation);
  }
  EXPECT_EQ(operations, (std::vector{Abre, Longitud, Escribe, Posiciona, Lee, Cierra}));
}

TEST(IVigilante, GrantsWholeTransfersUnlessItSaysOtherwise) {
  Recorder recorder;
  EXPECT_EQ(recorder.Concede(EOperacion::Lee, L"", 123), 123u);
}

TEST(IVigilante, CannotGrantMoreThanWasAsked) {
  class Generous : public Recorder {
    std::size_t Concede(EOperacion, CString const&, std::size_t bytes) override { return bytes * 2; }
  } generous;
  ScratchFolder folder;
  PutBytes(folder.Path("a"), std::string(200000, 'x'));
  IVigilante* const before = PonVigilante(&generous);
  std::vector<char> bytes(70000);
  CFile file(folder.Path("a"), CFile::modeRead);
  EXPECT_EQ(file.Read(bytes.data(), 70000), 70000u);
  EXPECT_EQ(file.GetPosition(), 70000u);
  PonVigilante(before);
}

}  // namespace
