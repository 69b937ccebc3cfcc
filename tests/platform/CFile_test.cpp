#include "platform/CFile.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <limits>
#include <system_error>
#include <vector>

#include "support/ScratchFolder.h"

namespace {

using testing::HasSubstr;

constexpr unsigned kCreate = CFile::modeCreate | CFile::modeReadWrite | CFile::shareDenyNone | CFile::typeBinary;
constexpr unsigned kReadWrite = CFile::modeReadWrite | CFile::shareDenyNone | CFile::typeBinary;
constexpr unsigned kRead = CFile::modeRead | CFile::shareDenyNone;

std::string ReadAll(CFile& file) {
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  bytes.resize(file.Read(bytes.data(), static_cast<unsigned>(bytes.size())));
  return bytes;
}

TEST(CFile, FlagsHaveTheValuesThatTheLibraryOpensItsFilesWith) {
  EXPECT_EQ(kCreate, 36930u);
  EXPECT_EQ(kReadWrite, 32834u);
  EXPECT_EQ(CFile::modeCreate | CFile::modeReadWrite, 4098u);
  EXPECT_EQ(kRead, 64u);
}

TEST(CFile, AFileNotOpenReadsAndWritesNothing) {
  CFile file;
  char byte = 0;
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(file.GetLength(), 0u);
  EXPECT_EQ(file.Seek(0, CFile::begin), -1);
  EXPECT_EQ(file.Read(&byte, 0), 0u);
  EXPECT_FALSE(file.HayError());
  EXPECT_EQ(file.Read(&byte, 1), 0u);
  EXPECT_TRUE(file.HayError());
  EXPECT_FALSE(CFile().Write(&byte, 1));
}

TEST(CFile, WhatIsWrittenIsReadBack) {
  ScratchFolder folder;
  CFile file(folder.Path("a.bin"), kCreate);
  ASSERT_TRUE(file.IsOpen()) << file.Error();
  EXPECT_TRUE(file.Write("hello world", 11));
  EXPECT_EQ(file.GetPosition(), 11u);
  EXPECT_EQ(file.Seek(6, CFile::begin), 6);
  char word[6] = {};
  EXPECT_EQ(file.Read(word, 5), 5u);
  EXPECT_STREQ(word, "world");
  EXPECT_EQ(file.GetFilePath(), folder.Path("a.bin"));
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(BytesOf(folder.Path("a.bin")), "hello world");
}

TEST(CFile, CreatingEmptiesAnExistingFileUnlessToldNotTo) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "old");
  EXPECT_TRUE(CFile(folder.Path("a"), kCreate | CFile::modeNoTruncate).IsOpen());
  EXPECT_EQ(BytesOf(folder.Path("a")), "old");
  EXPECT_TRUE(CFile(folder.Path("a"), kReadWrite).IsOpen());
  EXPECT_EQ(BytesOf(folder.Path("a")), "old");
  EXPECT_TRUE(CFile(folder.Path("a"), kCreate).IsOpen());
  EXPECT_EQ(BytesOf(folder.Path("a")), "");
}

TEST(CFile, OpeningWhatIsNotThereTellsWhichAndWhy) {
  ScratchFolder folder;
  CFile file;
  EXPECT_FALSE(file.Open(folder.Path("none"), kRead));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::no_such_file_or_directory));
  EXPECT_EQ(file.Error(), L"cannot open " + folder.Path("none") + L": No such file or directory");
}

TEST(CFile, AFolderIsNotAFile) {
  ScratchFolder folder;
  CFile file(folder.Path(), kRead);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::is_a_directory));
}

TEST(CFile, OpeningAgainForgetsAnEarlierFailure) {
  ScratchFolder folder;
  CFile file(folder.Path("none"), kRead);
  EXPECT_TRUE(file.HayError());
  EXPECT_FALSE(file.Close());
  EXPECT_TRUE(file.Open(folder.Path("a"), kCreate));
  EXPECT_FALSE(file.HayError());
  EXPECT_EQ(file.Error(), L"");
}

TEST(CFile, OpeningAnotherFileClosesTheFirst) {
  ScratchFolder folder;
  CFile file(folder.Path("a"), kCreate);
  file.Write("a", 1);
  EXPECT_TRUE(file.Open(folder.Path("b"), kCreate));
  EXPECT_EQ(BytesOf(folder.Path("a")), "a");
  EXPECT_EQ(file.GetPosition(), 0u);
  EXPECT_EQ(file.GetLength(), 0u);
}

TEST(CFile, ANameOutsideAsciiNamesTheSameFileForEveryone) {
  ScratchFolder folder;
  const CString path = folder.Path("a\u00f1o \u20ac.bin");
  CFile(path, kCreate).Write("x", 1);
  EXPECT_EQ(BytesOf(path), "x");
}

TEST(CFile, AReadAcrossTheEndGivesWhatThereIsAndIsNoFailure) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "12345");
  CFile file(folder.Path("a"), kRead);
  char bytes[8] = {};
  EXPECT_EQ(file.Read(bytes, 3), 3u);
  EXPECT_EQ(file.Read(bytes, 8), 2u);
  EXPECT_EQ(std::string(bytes, 2), "45");
  EXPECT_EQ(file.Read(bytes, 8), 0u);
  EXPECT_FALSE(file.HayError());
  EXPECT_EQ(file.GetPosition(), 5u);
}

TEST(CFile, AReadingFileRefusesWritesAndKeepsTheFailure) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "old");
  CFile file(folder.Path("a"), kRead);
  EXPECT_FALSE(file.Write("new", 3));
  EXPECT_EQ(file.CodigoError(), static_cast<int>(std::errc::bad_file_descriptor));
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(BytesOf(folder.Path("a")), "old");
}

TEST(CFile, AWritingFileRefusesReadsEvenOfWhatIsStillInItsBuffer) {
  ScratchFolder folder;
  CFile file(folder.Path("a"), CFile::modeCreate | CFile::modeWrite);
  file.Write("abc", 3);
  file.Seek(0, CFile::begin);
  char byte = 'x';
  EXPECT_EQ(file.Read(&byte, 1), 0u);
  EXPECT_EQ(byte, 'x');
  EXPECT_TRUE(file.HayError());
}

TEST(CFile, SeekCountsFromStartPositionAndEnd) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "0123456789");
  CFile file(folder.Path("a"), kRead);
  char c = 0;
  EXPECT_EQ(file.Seek(4, CFile::begin), 4);
  EXPECT_EQ(file.Seek(-1, CFile::current), 3);
  file.Read(&c, 1);
  EXPECT_EQ(c, '3');
  EXPECT_EQ(file.Seek(-2, CFile::end), 8);
  file.Read(&c, 1);
  EXPECT_EQ(c, '8');
  EXPECT_EQ(file.SeekToEnd(), 10);
}

TEST(CFile, ASeekBeforeTheStartIsRefusedAndChangesNothing) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "0123456789");
  CFile file(folder.Path("a"), kRead);
  file.Seek(4, CFile::begin);
  EXPECT_EQ(file.Seek(-1, CFile::begin), -1);
  EXPECT_EQ(file.Seek(-5, CFile::current), -1);
  EXPECT_EQ(file.Seek(-11, CFile::end), -1);
  EXPECT_EQ(file.Seek(std::numeric_limits<long long>::max(), CFile::current), -1);
  EXPECT_EQ(file.Seek(std::numeric_limits<long long>::min(), CFile::current), -1);
  EXPECT_EQ(file.GetPosition(), 4u);
  EXPECT_FALSE(file.HayError());
}

TEST(CFile, WritingBeyondTheEndFillsTheGapWithZeros) {
  ScratchFolder folder;
  CFile file(folder.Path("a"), kCreate);
  file.Write("a", 1);
  EXPECT_EQ(file.Seek(4, CFile::begin), 4);
  EXPECT_EQ(file.GetLength(), 1u) << "moving alone lengthens nothing";
  file.Write("b", 1);
  EXPECT_EQ(file.GetLength(), 5u);
  file.Seek(0, CFile::begin);
  EXPECT_EQ(ReadAll(file), std::string("a\0\0\0b", 5));
}

TEST(CFile, PositionsPastFourGigabytesWork) {
  ScratchFolder folder;
  constexpr long long kFar = 5'000'000'000;
  CFile file(folder.Path("sparse"), kCreate);
  EXPECT_EQ(file.Seek(kFar, CFile::begin), kFar);
  EXPECT_TRUE(file.Write("end", 3));
  EXPECT_EQ(file.GetLength(), static_cast<unsigned long long>(kFar) + 3);
  EXPECT_TRUE(file.Flush());
  EXPECT_EQ(file.Seek(-3, CFile::end), kFar);
  char word[4] = {};
  EXPECT_EQ(file.Read(word, 3), 3u);
  EXPECT_STREQ(word, "end");
}

TEST(CFile, ALengthCutsOffWhatIsPendingToo) {
  ScratchFolder folder;
  CFile file(folder.Path("a"), kCreate);
  file.Write("0123456789", 10);
  EXPECT_TRUE(file.SetLength(4));
  EXPECT_EQ(file.GetLength(), 4u);
  EXPECT_EQ(file.GetPosition(), 10u);
  file.Seek(0, CFile::begin);
  EXPECT_EQ(ReadAll(file), "0123");
}

TEST(CFile, ALengthFillsUpWithZeros) {
  ScratchFolder folder;
  CFile file(folder.Path("a"), kCreate);
  file.Write("ab", 2);
  file.Seek(0, CFile::begin);
  char byte = 0;
  EXPECT_EQ(file.Read(&byte, 1), 1u);
  EXPECT_TRUE(file.SetLength(4));
  EXPECT_EQ(file.GetPosition(), 1u);
  EXPECT_EQ(file.Read(&byte, 1), 1u);
  EXPECT_EQ(byte, 'b');
  file.Seek(0, CFile::begin);
  EXPECT_EQ(ReadAll(file), std::string("ab\0\0", 4));
}

TEST(CFile, NoLengthIsSetInAFileThatIsOnlyReadAndNoneThatNoFileHas) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "abc");
  CFile reader(folder.Path("a"), CFile::modeRead);
  EXPECT_FALSE(reader.SetLength(1));
  CFile writer(folder.Path("a"), kReadWrite);
  EXPECT_FALSE(writer.SetLength(std::numeric_limits<unsigned long long>::max()));
  EXPECT_EQ(writer.CodigoError(), static_cast<int>(std::errc::file_too_large));
  EXPECT_FALSE(writer.SetLength(1)) << "the failure is kept";
  EXPECT_EQ(BytesOf(folder.Path("a")), "abc");
}

TEST(CFile, TheLengthCountsWhatIsPending) {
  ScratchFolder folder;
  CFile file(folder.Path("a"), kCreate);
  file.Write("123456789012", 12);
  EXPECT_EQ(BytesOf(folder.Path("a")).size(), 0u) << "records are to wait for a block";
  EXPECT_EQ(file.GetLength(), 12u);
}

TEST(CFile, AnotherObjectSeesWhatWasFlushed) {
  ScratchFolder folder;
  CFile writer(folder.Path("a"), kCreate);
  CFile reader(folder.Path("a"), kReadWrite);
  ASSERT_TRUE(reader.IsOpen());
  writer.Write("123", 3);
  EXPECT_EQ(reader.GetLength(), 0u);
  EXPECT_TRUE(writer.Flush());
  EXPECT_EQ(reader.GetLength(), 3u);
  EXPECT_EQ(ReadAll(reader), "123");
  writer.Write("456", 3);
  writer.Flush();
  char bytes[3];
  EXPECT_EQ(reader.Read(bytes, 3), 3u) << "a reader at the end goes on as the file grows";
}

TEST(CFile, TwoWritersInOneBlockDoNotUndoEachOther) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "..........");
  CFile first(folder.Path("a"), kReadWrite);
  CFile second(folder.Path("a"), kReadWrite);
  char byte;
  first.Read(&byte, 1);
  second.Read(&byte, 1);
  first.Seek(1, CFile::begin);
  first.Write("A", 1);
  first.Seek(8, CFile::begin);
  first.Write("A", 1);
  second.Seek(5, CFile::begin);
  second.Write("B", 1);
  EXPECT_TRUE(second.Close());
  EXPECT_TRUE(first.Close());
  EXPECT_EQ(BytesOf(folder.Path("a")), ".A...B..A.");
}

TEST(CFile, AMovedFileGoesOnWhereItWas) {
  ScratchFolder folder;
  CFile first(folder.Path("a"), kCreate);
  first.Write("12", 2);
  CFile second(std::move(first));
  EXPECT_FALSE(first.IsOpen());  // NOLINT(bugprone-use-after-move): what is left must be a closed file
  EXPECT_EQ(first.GetPosition(), 0u);
  second.Write("3", 1);
  CFile third(folder.Path("b"), kCreate);
  third.Write("b", 1);
  third = std::move(second);
  EXPECT_EQ(BytesOf(folder.Path("b")), "b") << "the file moved over is closed";
  third.Write("4", 1);
  EXPECT_TRUE(third.Close());
  EXPECT_EQ(BytesOf(folder.Path("a")), "1234");
  EXPECT_EQ(third.GetFilePath(), folder.Path("a"));
}

TEST(CFile, ADestroyedFileHasWrittenWhatWasPending) {
  ScratchFolder folder;
  { CFile(folder.Path("a"), kCreate).Write("x", 1); }
  EXPECT_EQ(BytesOf(folder.Path("a")), "x");
}

TEST(CFile, TransfersLargerThanTheBufferMixWithRecords) {
  ScratchFolder folder;
  std::string expected;
  CFile file(folder.Path("a"), kCreate);
  for (const std::size_t size : {12u, 65536u, 1u, 65535u, 300000u, 65537u, 12u}) {
    const std::string block(size, static_cast<char>('a' + expected.size() % 26));
    EXPECT_TRUE(file.Write(block.data(), block.size()));
    expected += block;
  }
  EXPECT_EQ(file.GetLength(), expected.size());
  file.Seek(0, CFile::begin);
  EXPECT_EQ(ReadAll(file), expected);
  file.Seek(5, CFile::begin);
  std::string middle(200000, '\0');
  EXPECT_EQ(file.Read(middle.data(), 200000), 200000u);
  EXPECT_EQ(middle, expected.substr(5, 200000));
  char next = 0;
  EXPECT_EQ(file.Read(&next, 1), 1u);
  EXPECT_EQ(next, expected[200005]);
}

TEST(CFile, ABlockOfExactlyTheBufferOverwritesWhatWasReadBefore) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), std::string(200000, 'o'));
  CFile file(folder.Path("a"), kReadWrite);
  char byte = 0;
  file.Read(&byte, 1);
  file.Seek(0, CFile::begin);
  const std::string block(65536, 'n');
  EXPECT_TRUE(file.Write(block.data(), block.size()));
  file.Seek(0, CFile::begin);
  file.Read(&byte, 1);
  EXPECT_EQ(byte, 'n');
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(BytesOf(folder.Path("a")), block + std::string(200000 - 65536, 'o'));
}

TEST(CFile, SynchronisedFilesAreWrittenLikeAnyOther) {
  ScratchFolder folder;
  CFile file;
  file.PonSincroniza(true);
  ASSERT_TRUE(file.Open(folder.Path("a"), kCreate));
  file.Write("x", 1);
  EXPECT_TRUE(file.Flush());
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(BytesOf(folder.Path("a")), "x");
}

/// A file in memory that does what CFile promises, the plain way.
struct PlainFile {
  std::string bytes;
  std::size_t position = 0;

  std::string Read(std::size_t count) {
    const std::string read = position < bytes.size() ? bytes.substr(position, count) : "";
    position += read.size();
    return read;
  }
  void Write(std::string const& data) {
    if (!data.empty()) {
      bytes.resize(std::max(bytes.size(), position + data.size()), '\0');
      bytes.replace(position, data.size(), data);
      position += data.size();
    }
  }
};

class RandomUse : public testing::TestWithParam<unsigned> {};

TEST_P(RandomUse, AgreesWithAPlainFileInMemory) {
  SCOPED_TRACE("seed " + std::to_string(GetParam()));
  std::mt19937 random(GetParam());
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  const std::size_t sizes[] = {1, 12, 13, 100, 4096, 65535, 65536, 65537, 150000};
  ScratchFolder folder;
  CFile file(folder.Path("a"), kCreate);
  PlainFile plain;
  for (int step = 0; step < 3000; ++step) {
    const std::size_t size = below(10) == 0 ? sizes[below(std::size(sizes))] : below(200);
    std::string data(size, '\0');
    switch (below(7)) {
      case 0:
      case 1:
        data.resize(file.Read(data.data(), static_cast<unsigned>(size)));
        ASSERT_EQ(data, plain.Read(size)) << "step " << step;
        break;
      case 2:
      case 3:
        for (char& c : data) {
          c = static_cast<char>(random());
        }
        ASSERT_TRUE(file.Write(data.data(), data.size())) << file.Error();
        plain.Write(data);
        break;
      case 4:
        plain.position = below(plain.bytes.size() + 300);
        ASSERT_EQ(file.Seek(static_cast<long long>(plain.position), CFile::begin),
                  static_cast<long long>(plain.position));
        break;
      case 5: {  // short hops stay inside the buffer
        const auto hop = static_cast<long long>(below(400)) - 200;
        const auto target = static_cast<long long>(plain.position) + hop;
        ASSERT_EQ(file.Seek(hop, CFile::current), target < 0 ? -1 : target) << "step " << step;
        plain.position = target < 0 ? plain.position : static_cast<std::size_t>(target);
        break;
      }
      default:
        ASSERT_EQ(file.GetLength(), plain.bytes.size()) << "step " << step;
        ASSERT_TRUE(below(5) != 0 || file.Flush());
    }
    ASSERT_EQ(file.GetPosition(), plain.position) << "step " << step;
  }
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(BytesOf(folder.Path("a")), plain.bytes);
}

INSTANTIATE_TEST_SUITE_P(CFile, RandomUse, testing::Range(1u, 21u));

}  // namespace
