#include <gmock/gmock.h>
#include <system_error>

#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr unsigned kCreate = CFile::modeCreate | CFile::modeReadWrite;
constexpr int kNoSpace = static_cast<int>(std::errc::no_space_on_device);
constexpr std::size_t kRecord = 12;

std::string Record(int number) {
  std::string text = std::to_string(number);
  return std::string(kRecord - text.size(), '0') + text;
}

/// Writes records until one is refused and returns how many were taken.
int WriteRecords(CFile& file, int count) {
  int written = 0;
  while (written < count && file.Write(Record(written).data(), kRecord)) {
    ++written;
  }
  return written;
}

std::string Records(int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) {
    bytes += Record(i);
  }
  return bytes;
}

TEST(CFileFaults, AFolderThatTakesNoFilesIsReportedByOpen) {
  CFile file;
  EXPECT_FALSE(file.Open(L"/proc/urdimbre.bin", kCreate));
  EXPECT_TRUE(file.HayError());
  EXPECT_THAT(file.Error().Utf8(), StartsWith("cannot open /proc/urdimbre.bin: "));
}

TEST(CFileFaults, AfterAFullDiskTheFileHoldsTheFirstRecordsAndNoLaterOne) {
  for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{65536}, std::size_t{100000}}) {
    ScratchFolder folder;
    FaultGuard guard;
    CFile file(folder.Path("a"), kCreate);
    guard.LimitDisk(room);
    const int written = WriteRecords(file, 50000);
    EXPECT_LT(written, 50000) << "the failure has to reach the writer long before the end";
    guard.LimitDisk(std::size_t{1} << 40);  // room again: too late for this file
    EXPECT_FALSE(file.Write("later record", kRecord));
    EXPECT_FALSE(file.Flush());
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(file.CodigoError(), kNoSpace);
    EXPECT_EQ(file.Causa(), L"No space left on device");
    EXPECT_EQ(BytesOf(folder.Path("a")), Records(50000).substr(0, room));
  }
}

TEST(CFileFaults, TransfersCutShortAreContinued) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.LimitTransfers(7);
  CFile file(folder.Path("a"), kCreate);
  EXPECT_EQ(WriteRecords(file, 1000), 1000);
  EXPECT_TRUE(file.Flush());
  file.Seek(0, CFile::begin);
  std::string bytes(1000 * kRecord, '\0');
  EXPECT_EQ(file.Read(bytes.data(), static_cast<unsigned>(bytes.size())), bytes.size());
  EXPECT_EQ(bytes, Records(1000));
  EXPECT_FALSE(file.HayError());
}

TEST(CFileFaults, AReadThatFailsIsToldApartFromTheEnd) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), Records(10));
  FaultGuard guard;
  guard.Refuse(EOperacion::Lee);
  CFile file(folder.Path("a"), CFile::modeRead);
  char record[kRecord];
  EXPECT_EQ(file.Read(record, kRecord), 0u);
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::io_error));
  EXPECT_THAT(file.Error().Utf8(), StartsWith("cannot read "));
  guard.Allow(EOperacion::Lee);
  EXPECT_EQ(file.Read(record, kRecord), 0u) << "kept until the file is opened again";
  EXPECT_TRUE(file.Open(folder.Path("a"), CFile::modeRead));
  EXPECT_EQ(file.Read(record, kRecord), kRecord);
}

TEST(CFileFaults, AReadThatFailsInTheMiddleGivesWhatCameBefore) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), Records(2000));
  FaultGuard guard;
  guard.Refuse(EOperacion::Lee, 2);
  CFile file(folder.Path("a"), CFile::modeRead);
  std::string bytes(5000, '\0');
  const unsigned read = file.Read(bytes.data(), 5000);
  EXPECT_GT(read, 0u);
  EXPECT_LT(read, 5000u);
  EXPECT_EQ(bytes.substr(0, read), Records(2000).substr(0, read));
  EXPECT_TRUE(file.HayError());
}

TEST(CFileFaults, ASeekThatFailsStopsTheTransferThatNeededIt) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), Records(20000));
  FaultGuard guard;
  guard.Refuse(EOperacion::Posiciona);
  CFile file(folder.Path("a"), CFile::modeReadWrite);
  char record[kRecord];
  EXPECT_EQ(file.Read(record, kRecord), kRecord);
  file.Seek(120000, CFile::begin);
  EXPECT_EQ(file.Read(record, kRecord), 0u);
  EXPECT_THAT(file.Error().Utf8(), StartsWith("cannot seek in "));
  EXPECT_FALSE(file.Close());
}

TEST(CFileFaults, AWritePendingThatFailsDuringASeekIsReportedThere) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.Refuse(EOperacion::Escribe);
  CFile file(folder.Path("a"), kCreate);
  EXPECT_TRUE(file.Write("x", 1));
  EXPECT_EQ(file.Seek(1000000, CFile::begin), -1);
  EXPECT_EQ(file.CodigoError(), kNoSpace);
}

TEST(CFileFaults, AWritePendingThatFailsDuringAReadIsReportedThere) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), Records(20000));
  FaultGuard guard;
  guard.Refuse(EOperacion::Escribe);
  CFile file(folder.Path("a"), CFile::modeReadWrite);
  EXPECT_TRUE(file.Write("x", 1));
  char record[kRecord];
  EXPECT_EQ(file.Read(record, kRecord), 0u);
  EXPECT_EQ(file.CodigoError(), kNoSpace);
}

TEST(CFileFaults, ACloseThatFailsIsReportedAndStillGivesTheFileBack) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.Refuse(EOperacion::Cierra);
  for (int i = 0; i < 3000; ++i) {  // more than a process may have open
    CFile file(folder.Path("a"), kCreate);
    ASSERT_TRUE(file.IsOpen()) << i << ": " << file.Error();
    ASSERT_FALSE(file.Close());
    ASSERT_FALSE(file.IsOpen());
  }
}

TEST(CFileFaults, OpeningOverAFileThatCannotBeClosedOpensNothingAndKeepsTheFailure) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.Refuse(EOperacion::Escribe);
  CFile file(folder.Path("a"), kCreate);
  file.Write("x", 1);
  EXPECT_FALSE(file.Open(folder.Path("b"), kCreate));
  EXPECT_EQ(file.CodigoError(), kNoSpace);
  EXPECT_FALSE(Exists(folder.Path("b")));
  EXPECT_TRUE(file.Open(folder.Path("b"), kCreate)) << "now the failure has been told";
}

TEST(CFileFaults, ALengthThatCannotBeHadIsAFailure) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "abc");
  FaultGuard guard;
  guard.Refuse(EOperacion::Longitud);
  CFile file(folder.Path("a"), CFile::modeRead);
  EXPECT_EQ(file.Seek(0, CFile::end), -1);
  EXPECT_EQ(file.GetLength(), 0u);
  EXPECT_TRUE(file.HayError());
}

TEST(CFileFaults, ALengthThatCannotBeSetIsAFailure) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.Refuse(EOperacion::Trunca);
  CFile file(folder.Path("a"), kCreate);
  file.Write("abc", 3);
  EXPECT_FALSE(file.SetLength(1));
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::io_error));
  EXPECT_FALSE(file.Close());
}

TEST(CFileFaults, APendingBlockThatCannotBeWrittenForbidsTheNewLength) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.Refuse(EOperacion::Escribe);
  CFile file(folder.Path("a"), kCreate);
  file.Write("abc", 3);
  EXPECT_FALSE(file.SetLength(1));
  EXPECT_EQ(file.CodigoError(), kNoSpace);
  EXPECT_EQ(guard.Asked(EOperacion::Trunca), 0);
}

TEST(CFileFaults, AnOpenThatIsRefusedMakesNoFile) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.Refuse(EOperacion::Abre);
  CFile file(folder.Path("a"), kCreate);
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::permission_denied));
  EXPECT_FALSE(Exists(folder.Path("a")));
}

TEST(CFileFaults, ADiskThatCannotSynchroniseIsReported) {
  ScratchFolder folder;
  FaultGuard guard;
  guard.Refuse(EOperacion::Sincroniza);
  CFile file(folder.Path("a"), kCreate);
  file.Write("x", 1);
  EXPECT_TRUE(file.Flush()) << "nobody asked for it";
  file.PonSincroniza(true);
  EXPECT_FALSE(file.Close());
}

TEST(CFileFaults, TheSystemIsAskedABlockAtATime) {
  ScratchFolder folder;
  FaultGuard guard;
  CFile file(folder.Path("a"), kCreate);
  constexpr int kCount = 100000;  // 1.2 million bytes: 19 blocks
  EXPECT_EQ(WriteRecords(file, kCount), kCount);
  EXPECT_TRUE(file.Close());
  EXPECT_LE(guard.Asked(EOperacion::Escribe), 20);
  EXPECT_EQ(guard.Asked(EOperacion::Posiciona), 0);

  file.Open(folder.Path("a"), CFile::modeRead);
  char record[kRecord];
  int read = 0;
  while (file.Read(record, kRecord) == kRecord) {
    ++read;
  }
  EXPECT_EQ(read, kCount);
  EXPECT_LE(guard.Asked(EOperacion::Lee), 26);
  EXPECT_EQ(guard.Asked(EOperacion::Posiciona), 0);
}

TEST(CFileFaults, JumpsReadNoMoreThanTheyNeed) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), std::string(10'000'000, 'x'));
  class Meter : public IVigilante {
   public:
    bool Permite(EOperacion, CString const&) override { return true; }
    std::size_t Concede(EOperacion, CString const&, std::size_t bytes) override {
      total += bytes;
      return bytes;
    }
    std::size_t total = 0;
  } meter;
  IVigilante* const before = PonVigilante(&meter);
  CFile file(folder.Path("a"), CFile::modeRead);
  char record[kRecord];
  for (int i = 0; i < 100; ++i) {
    file.Seek(i * 100'000LL, CFile::begin);
    EXPECT_EQ(file.Read(record, kRecord), kRecord);
  }
  PonVigilante(before);
  EXPECT_LE(meter.total, 100u * 4096u);
}

}  // namespace
