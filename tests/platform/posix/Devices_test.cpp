// Devices that fail, and files that cannot be read: only some systems have them.
#include <gtest/gtest.h>
#include <system_error>

#include "platform/CStdioFile.h"

namespace {

constexpr int kNoSpace = static_cast<int>(std::errc::no_space_on_device);

TEST(CFileFaults, AFullDeviceIsReportedByFlushAndByClose) {
  CFile file(L"/dev/full", CFile::modeWrite);
  ASSERT_TRUE(file.IsOpen()) << file.Error();
  EXPECT_TRUE(file.Write("x", 1)) << "it waits for its block";
  EXPECT_FALSE(file.Flush());
  EXPECT_EQ(file.CodigoError(), kNoSpace);
  EXPECT_EQ(file.Error(), L"cannot write /dev/full: No space left on device");
  EXPECT_FALSE(file.Close());
}

TEST(CFileFaults, AFullDeviceIsReportedByCloseAlone) {
  CFile file(L"/dev/full", CFile::modeWrite);
  EXPECT_TRUE(file.Write("x", 1));
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(file.CodigoError(), kNoSpace);
  EXPECT_FALSE(file.IsOpen());
}

TEST(CFileFaults, AFullDeviceRefusesALargeBlockAtOnce) {
  const std::string block(200000, 'x');
  CFile file(L"/dev/full", CFile::modeWrite);
  EXPECT_FALSE(file.Write(block.data(), block.size()));
  EXPECT_EQ(file.CodigoError(), kNoSpace);
}

TEST(CStdioFile, AReadThatFailsIsNotTheEndOfTheFile) {
  CStdioFile file(L"/proc/self/mem", CFile::modeRead);
  CString line(L"untouched");
  EXPECT_FALSE(file.ReadString(line));
  EXPECT_TRUE(file.HayError());
}

TEST(CStdioFile, AFullDeviceIsReported) {
  CStdioFile file(L"/dev/full", CFile::modeWrite);
  file.WriteString(L"x\n");
  EXPECT_FALSE(file.Close());
}

}  // namespace
