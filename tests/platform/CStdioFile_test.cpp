#include "platform/CStdioFile.h"

#include <gmock/gmock.h>
#include <vector>

#include "support/ScratchFolder.h"

namespace {

using testing::ElementsAre;

std::vector<CString> LinesOf(CString const& path) {
  CStdioFile file(path, CFile::modeRead);
  std::vector<CString> lines;
  CString line;
  while (file.ReadString(line)) {
    lines.push_back(line);
  }
  EXPECT_FALSE(file.HayError()) << file.Error();
  return lines;
}

TEST(CStdioFile, ADiagnosticLineIsWrittenAsItStands) {
  ScratchFolder folder;
  CStdioFile file(folder.Path("a.txt"), CFile::modeCreate | CFile::modeWrite);
  CString line;
  line.Format(L"error lado [%d] %d %d\n", 3, 10, -4);
  EXPECT_TRUE(file.WriteString(line));
  EXPECT_TRUE(file.WriteString(L"a\u00f1o"));
  EXPECT_TRUE(file.WriteString(L""));
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(BytesOf(folder.Path("a.txt")), "error lado [3] 10 -4\na\u00f1o");
}

TEST(CStdioFile, LinesEndInEitherWayAndTheLastMayEndInNone) {
  ScratchFolder folder;
  PutBytes(folder.Path("a.txt"), "unix\ndos\r\n\n\r\nlone \r inside\nlast \u20ac");
  EXPECT_THAT(LinesOf(folder.Path("a.txt")), ElementsAre(L"unix", L"dos", L"", L"", L"lone \r inside", L"last \u20ac"));
}

TEST(CStdioFile, AnEmptyFileHasNoLineAndAnEndOfLineAloneHasOne) {
  ScratchFolder folder;
  PutBytes(folder.Path("empty"), "");
  PutBytes(folder.Path("one"), "\n");
  EXPECT_THAT(LinesOf(folder.Path("empty")), ElementsAre());
  EXPECT_THAT(LinesOf(folder.Path("one")), ElementsAre(L""));
}

}  // namespace
