#include "platform/Inicializacion.h"

#include <gmock/gmock.h>
#include <thread>
#include <vector>

#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

class Initialisation : public testing::Test {
 protected:
  CString Read(wchar_t const* section, wchar_t const* key, wchar_t const* absent = L"<absent>") const {
    wchar_t buffer[256];
    const auto length = GetPrivateProfileStringW(section, key, absent, buffer, 256, file);
    const CString value(buffer);
    EXPECT_EQ(length, static_cast<unsigned long>(value.GetLength()));
    return value;
  }
  std::vector<CString> List(wchar_t const* section, unsigned long size = 256) const {
    std::vector<wchar_t> buffer(size, L'#');
    const auto length = GetPrivateProfileStringW(section, nullptr, nullptr, buffer.data(), size, file);
    EXPECT_EQ(buffer[length], L'\0');
    std::vector<CString> names;
    for (wchar_t const* name = buffer.data(); *name != 0; name += names.back().GetLength() + 1) {
      names.emplace_back(name);
    }
    return names;
  }
  bool Write(wchar_t const* section, wchar_t const* key, wchar_t const* value) const {
    return WritePrivateProfileStringW(section, key, value, file);
  }

  ScratchFolder folder;
  CString file = folder.Path("a.ini");
};

TEST_F(Initialisation, WhatIsWrittenIsReadBack) {
  EXPECT_TRUE(Write(L"Picos", L"AlturaMin", L"1.500000"));
  EXPECT_EQ(Read(L"Picos", L"AlturaMin"), L"1.500000");
  EXPECT_EQ(BytesOf(file), "[Picos]\nAlturaMin=1.500000\n");
}

TEST_F(Initialisation, WhatIsAbsentGivesTheDefault) {
  EXPECT_EQ(Read(L"s", L"k"), L"<absent>") << "no file";
  Write(L"s", L"k", L"v");
  EXPECT_EQ(Read(L"s", L"other"), L"<absent>") << "no key";
  EXPECT_EQ(Read(L"other", L"k"), L"<absent>") << "no section";
  EXPECT_EQ(Read(L"s", L"other", nullptr), L"");
}

TEST_F(Initialisation, SectionsAndKeysTakeNoAccountOfCase) {
  PutBytes(file, "[Picos]\nTipo=2\n");
  EXPECT_EQ(Read(L"PICOS", L"tipo"), L"2");
  EXPECT_TRUE(Write(L"picos", L"TIPO", L"3"));
  EXPECT_EQ(BytesOf(file), "[Picos]\nTIPO=3\n");
}

TEST_F(Initialisation, BlanksAroundNamesAndValuesDoNotCount) {
  PutBytes(file, "  [ a ] \r\n  key one  =  value one \t\r\n");
  EXPECT_EQ(Read(L"a", L"key one"), L"value one");
  EXPECT_TRUE(Write(L" a ", L" key one ", L"x"));
  EXPECT_EQ(List(nullptr).size(), 1u);
  EXPECT_EQ(List(L"a").size(), 1u);
}

TEST_F(Initialisation, ValuesComeBackAsTheyWere) {
  for (wchar_t const* value : {L"", L" blanks ", L"\ttab\t", L"\"quoted\"", L"'single'", L"\"", L"\"\"", L"' \"",
                               L"a=b", L"[x]", L"; no comment", L"a\u00f1o \u20ac \U0001F5FA", L" "}) {
    EXPECT_TRUE(Write(L"s", L"k", value));
    EXPECT_EQ(Read(L"s", L"k"), value);
  }
}

TEST_F(Initialisation, QuotesAroundAValueAreTakenOff) {
  PutBytes(file, "[s]\na=\"x y\"\nb='z'\nc=\"open\n");
  EXPECT_EQ(Read(L"s", L"a"), L"x y");
  EXPECT_EQ(Read(L"s", L"b"), L"z");
  EXPECT_EQ(Read(L"s", L"c"), L"\"open");
}

TEST_F(Initialisation, AnEmptyValueIsThereAndIsEmpty) {
  PutBytes(file, "[s]\nk=\n");
  EXPECT_EQ(Read(L"s", L"k"), L"");
}

TEST_F(Initialisation, WritingLeavesAllOtherLinesAsTheyWere) {
  PutBytes(file, "; made by hand\nstray\n\n[a]\n# note\nx = 1\n\n[b]\ny=2\n; end\n");
  EXPECT_TRUE(Write(L"a", L"z", L"3"));
  EXPECT_TRUE(Write(L"b", L"y", L"4"));
  EXPECT_TRUE(Write(L"c", L"w", L"5"));
  EXPECT_EQ(BytesOf(file), "; made by hand\nstray\n\n[a]\n# note\nx = 1\nz=3\n\n[b]\ny=4\n; end\n[c]\nw=5\n");
}

TEST_F(Initialisation, CommentsAreNoKeys) {
  PutBytes(file, "[s]\n;k=1\n# k=2\n =3\n");
  EXPECT_EQ(Read(L"s", L"k"), L"<absent>");
  EXPECT_THAT(List(L"s"), testing::IsEmpty());
}

TEST_F(Initialisation, AMarkAtTheStartOfTheFileIsPassedOver) {
  PutBytes(file, "\xEF\xBB\xBF[s]\nk=v\n");
  EXPECT_EQ(Read(L"s", L"k"), L"v");
}

TEST_F(Initialisation, TheFirstOfTwoEqualKeysOrSectionsCounts) {
  PutBytes(file, "[s]\nk=1\nk=2\n[s]\nk=3\nj=4\n");
  EXPECT_EQ(Read(L"s", L"k"), L"1");
  EXPECT_EQ(Read(L"s", L"j"), L"<absent>");
}

TEST_F(Initialisation, ANullValueErasesTheKeyAndANullKeyTheSection) {
  PutBytes(file, "[a]\nx=1\ny=2\n\n[b]\nz=3\n");
  EXPECT_TRUE(Write(L"a", L"x", nullptr));
  EXPECT_TRUE(Write(L"a", L"not there", nullptr));
  EXPECT_EQ(BytesOf(file), "[a]\ny=2\n\n[b]\nz=3\n");
  EXPECT_TRUE(Write(L"b", nullptr, nullptr));
  EXPECT_TRUE(Write(L"not there", nullptr, L"x"));
  EXPECT_EQ(BytesOf(file), "[a]\ny=2\n\n");
}

TEST_F(Initialisation, NamesAreListed) {
  PutBytes(file, "[a]\nx=1\ny=2\n[b]\n[c]\nz=3\n");
  EXPECT_THAT(List(nullptr), testing::ElementsAre(L"a", L"b", L"c"));
  EXPECT_THAT(List(L"A"), testing::ElementsAre(L"x", L"y"));
  EXPECT_THAT(List(L"b"), testing::IsEmpty());
  EXPECT_THAT(List(L"none"), testing::IsEmpty());
}

TEST_F(Initialisation, AListThatDoesNotFitIsCutAndStaysClosed) {
  PutBytes(file, "[a]\nfirst=1\nsecond=2\n");
  wchar_t buffer[16];
  EXPECT_EQ(GetPrivateProfileStringW(L"a", nullptr, nullptr, buffer, 14, file), 13u);
  EXPECT_EQ(std::wstring(buffer, 14), std::wstring(L"first\0second\0\0", 14)) << "it just fits";
  EXPECT_EQ(GetPrivateProfileStringW(L"a", nullptr, nullptr, buffer, 10, file), 8u);
  EXPECT_EQ(std::wstring(buffer, 10), std::wstring(L"first\0se\0\0", 10));
  buffer[0] = L'#';
  EXPECT_EQ(GetPrivateProfileStringW(L"a", nullptr, nullptr, buffer, 1, file), 0u);
  EXPECT_EQ(buffer[0], L'\0');
}

TEST_F(Initialisation, AValueThatDoesNotFitIsCut) {
  PutBytes(file, "[s]\nk=12345\n");
  wchar_t buffer[4] = {};
  EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"", buffer, 4, file), 3u);
  EXPECT_EQ(CString(buffer), L"123");
  EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"", buffer, 1, file), 0u);
  EXPECT_EQ(CString(buffer), L"");
  EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"", nullptr, 4, file), 0u);
}

TEST_F(Initialisation, NamesAndValuesThatNoSuchFileCanHoldAreRefused) {
  EXPECT_FALSE(Write(nullptr, L"k", L"v"));
  EXPECT_FALSE(Write(L"", L"k", L"v"));
  EXPECT_FALSE(Write(L"a]b", L"k", L"v"));
  EXPECT_FALSE(Write(L"s", L" ", L"v"));
  EXPECT_FALSE(Write(L"s", L"a=b", L"v"));
  EXPECT_FALSE(Write(L"s", L"[k", L"v"));
  EXPECT_FALSE(Write(L"s", L";k", L"v"));
  EXPECT_FALSE(Write(L"s", L"#k", L"v"));
  EXPECT_FALSE(Write(L"s", L"k", L"two\nlines"));
  EXPECT_FALSE(WritePrivateProfileStringW(L"s", L"k", L"v", nullptr));
  EXPECT_FALSE(Exists(file));
}

TEST_F(Initialisation, AFailingDiskLeavesTheOldFileAndNothingElse) {
  const std::string old = "[s]\nk=old\n";
  using enum EOperacion;
  for (const EOperacion operation : {Abre, Escribe, Sincroniza, Cierra, Renombra, Lee}) {
    PutBytes(file, old);
    {
      FaultGuard guard;
      guard.Refuse(operation, operation == Abre ? 2 : 1);  // the old file's own opening comes first
      EXPECT_FALSE(Write(L"s", L"k", L"new")) << static_cast<int>(operation);
    }
    EXPECT_EQ(BytesOf(file), old) << static_cast<int>(operation);
    EXPECT_EQ(folder.Files(), 1u) << static_cast<int>(operation);
  }
}

TEST_F(Initialisation, AFolderThatIsNotThereIsAFailure) {
  EXPECT_FALSE(WritePrivateProfileStringW(L"s", L"k", L"v", folder.Path("none/a.ini")));
}

TEST_F(Initialisation, ThreadsThatWriteOneFileLoseNothing) {
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([&, t] {
        for (int i = 0; i < 20; ++i) {
          CString key;
          key.Format(L"k%d_%d", t, i);
          EXPECT_TRUE(Write(L"s", key, key));
        }
      });
    }
  }
  EXPECT_EQ(List(L"s", 4096).size(), 80u);
  EXPECT_EQ(folder.Files(), 1u);
}

}  // namespace
