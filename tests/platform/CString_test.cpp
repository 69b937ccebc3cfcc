#include "platform/CString.h"

#include <clocale>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <map>
#include <sstream>

namespace {

TEST(CString, ANullPointerIsAnEmptyText) {
  EXPECT_TRUE(CString(static_cast<wchar_t const*>(nullptr)).IsEmpty());
  EXPECT_TRUE(CString(static_cast<char const*>(nullptr)).IsEmpty());
  EXPECT_TRUE(CString() == static_cast<wchar_t const*>(nullptr));
}

TEST(CString, NarrowTextIsUtf8BothWays) {
  const CString text("a\u00f1o \u20ac \U0001F5FA");
  constexpr int kMap = sizeof(wchar_t) == 2 ? 2 : 1;  // beyond the characters of 16 bits
  EXPECT_EQ(text.GetLength(), 6 + kMap);
  EXPECT_TRUE(text == L"a\u00f1o \u20ac \U0001F5FA");
  EXPECT_EQ(text.Utf8(), "a\u00f1o \u20ac \U0001F5FA");
}

TEST(CString, BytesThatAreNoUtf8SurviveTheRoundTrip) {
  // Latin-1, a lone continuation, an overlong slash, a surrogate, past the last character, a sequence cut short.
  for (const std::string bytes :
       {"a\xF1o", "\x80", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF", "x\xE2\x82"}) {
    EXPECT_EQ(CString::DesdeUtf8(bytes).Utf8(), bytes);
  }
}

TEST(CString, EveryByteStringOfTwoBytesSurvivesTheRoundTrip) {
  for (unsigned i = 0; i < 65536; ++i) {
    const std::string bytes{static_cast<char>(i & 255u), static_cast<char>(i >> 8)};
    ASSERT_EQ(CString::DesdeUtf8(bytes).Utf8(), bytes) << i;
  }
}

TEST(CString, WhatIsNoCharacterBecomesTheReplacementCharacter) {
  EXPECT_EQ(CString(std::wstring{0xD800}).Utf8(), "\uFFFD");
  if (sizeof(wchar_t) > 2) {
    EXPECT_EQ(CString(std::wstring(1, static_cast<wchar_t>(0x110000))).Utf8(), "\uFFFD");
  }
}

TEST(CString, TheTextsOfTheLibraryAreFormatted) {
  CString text;
  text.Format(L"%dMD", 7);
  EXPECT_EQ(text, L"7MD");
  text.Format("error lado [%d] %d %d\n", 1, -2, 3);
  EXPECT_EQ(text, L"error lado [1] -2 3\n");
  text.Format(L"%.2lf", 2.345);
  EXPECT_EQ(text, L"2.35");
  text.Format(L"%lf", -1.0 / 3);
  EXPECT_EQ(text, L"-0.333333");
}

TEST(CString, AWideFormatTakesWideTextUnlessToldOtherwise) {
  CString text;
  text.Format(L"<%s|%-4s|%S|%hs|%ls|%5.1s>", L"\u00e1", L"b", "c", "d\u00e9", L"e", L"fgh");
  EXPECT_EQ(text, L"<\u00e1|b   |c|d\u00e9|e|    f>");
}

TEST(CString, ANarrowFormatTakesUtf8AndWideText) {
  CString text;
  text.Format("<%s|%ls>", "\u00f1", L"\u20ac");
  EXPECT_EQ(text, L"<\u00f1|\u20ac>");
}

TEST(CString, AnArgumentOfFormatMayBeTheTextItself) {
  CString text(L"ab");
  text.Format(L"%s-%s", text.GetString(), text.GetString());
  EXPECT_EQ(text, L"ab-ab");
}

TEST(CString, ALongTextIsFormattedWhole) {
  const CString part(std::wstring(100000, L'x'));
  CString text;
  text.Format(L"[%s]", part.GetString());
  EXPECT_EQ(text, L"[" + part + L"]");
}

TEST(CString, APercentSignIsKept) {
  CString text;
  text.Format(L"%d %%", 40);
  EXPECT_EQ(text, L"40 %");
}

TEST(CString, AFormatThatIsRefusedLeavesAnEmptyText) {
  CString text(L"before");
  const wchar_t beyond[] = {0xD800, 0};
  text.Format("%ls", beyond);
  EXPECT_EQ(text, L"");
}

TEST(CString, NumbersHaveADecimalPointInEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (char const* locale : {"C", "es_ES.UTF-8", "de_DE.UTF-8", ""}) {
    std::setlocale(LC_ALL, locale);
    CString text;
    text.Format(L"%lf", 1234.5);
    EXPECT_EQ(text, L"1234.500000") << locale;
    EXPECT_EQ(RealDe(L"1234.5"), 1234.5) << locale;
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST(CString, PiecesAreCutToTheText) {
  const CString text(L"abcd");
  EXPECT_EQ(text.Left(2), L"ab");
  EXPECT_EQ(text.Left(9), L"abcd");
  EXPECT_EQ(text.Left(-1), L"");
  EXPECT_EQ(text.Right(3), L"bcd");
  EXPECT_EQ(text.Right(9), L"abcd");
  EXPECT_EQ(text.Right(-1), L"");
  EXPECT_EQ(text.Mid(1), L"bcd");
  EXPECT_EQ(text.Mid(1, 2), L"bc");
  EXPECT_EQ(text.Mid(4), L"");
  EXPECT_EQ(text.Mid(9, 1), L"");
  EXPECT_EQ(text.Mid(-3, 2), L"ab");
}

TEST(CString, FindAnswersPositionsOrMinusOne) {
  const CString text(L"abcabc");
  EXPECT_EQ(text.Find(L"bc"), 1);
  EXPECT_EQ(text.Find(L"bc", 2), 4);
  EXPECT_EQ(text.Find(L"bc", 5), -1);
  EXPECT_EQ(text.Find(L"bc", 99), -1);
  EXPECT_EQ(text.Find(L'c'), 2);
  EXPECT_EQ(text.Find(L'c', -5), 2);
  EXPECT_EQ(text.Find(L"x"), -1);
  EXPECT_EQ(text.ReverseFind(L'a'), 3);
  EXPECT_EQ(text.ReverseFind(L'x'), -1);
}

TEST(CString, AnyIntegerTypeIsAPosition) {
  const CString text(L"ab");
  EXPECT_EQ(text[0], L'a');
  EXPECT_EQ(text[std::size_t{1}], L'b');
  EXPECT_EQ(text[1L], L'b');
  EXPECT_EQ(text[2u], L'\0');
}

TEST(CString, TextsOfEveryKindAreJoined) {
  CString text = CString(L"a") + L"b" + L'c' + CString("d") + "e";
  EXPECT_EQ(L"<" + text, L"<abcde");
  text += text;
  text += L"!";
  text += L'?';
  EXPECT_EQ(text, L"abcdeabcde!?");
}

TEST(CString, OrderIsThatOfTheCharacters) {
  EXPECT_LT(CString(L"Z"), CString(L"a"));
  EXPECT_LT(CString(L"a"), L"ab");
  EXPECT_GT(CString(L"b"), L"ab");
  EXPECT_TRUE(CString(L"a") != L"b");
  EXPECT_TRUE(L"a" == CString(L"a"));
  EXPECT_EQ((std::map<CString, int>{{L"b", 2}, {L"a", 1}}.begin()->second), 1);
}

TEST(CString, CompareNoCaseTakesNoAccountOfCase) {
  EXPECT_EQ(CString(L"TipO").CompareNoCase(L"tIPo"), 0);
  EXPECT_LT(CString(L"a").CompareNoCase(L"B"), 0);
  EXPECT_GT(CString(L"B").CompareNoCase(L"a"), 0);
  EXPECT_LT(CString(L"a").CompareNoCase(L"AB"), 0);
  EXPECT_GT(CString(L"AB").CompareNoCase(nullptr), 0);
}

TEST(CString, CopiesAreIndependent) {
  CString first(L"a");
  const CString second = first;
  first += L"b";
  first.Empty();
  EXPECT_EQ(second, L"a");
  EXPECT_TRUE(first.IsEmpty());
}

TEST(CString, AStreamReceivesUtf8) {
  std::ostringstream stream;
  stream << CString(L"\u20ac 5");
  EXPECT_EQ(stream.str(), "\u20ac 5");
}

TEST(wtoi, ReadsTheNumberThatATextBeginsWith) {
  EXPECT_EQ(EnteroDe(L"42"), 42);
  EXPECT_EQ(EnteroDe(L" \t\n-7x9"), -7);
  EXPECT_EQ(EnteroDe(L"+3.9"), 3);
  EXPECT_EQ(EnteroDe(L"- 3"), 0);
  EXPECT_EQ(EnteroDe(L"*"), 0);
  EXPECT_EQ(EnteroDe(L""), 0);
  EXPECT_EQ(EnteroDe(nullptr), 0);
}

TEST(wtoi, StopsAtTheLimitsOfAnInt) {
  constexpr int kMax = std::numeric_limits<int>::max();
  constexpr int kMin = std::numeric_limits<int>::min();
  EXPECT_EQ(EnteroDe(L"2147483647"), kMax);
  EXPECT_EQ(EnteroDe(L"2147483648"), kMax);
  EXPECT_EQ(EnteroDe(L"-2147483648"), kMin);
  EXPECT_EQ(EnteroDe(L"-2147483649"), kMin);
  EXPECT_EQ(EnteroDe(L"99999999999999999999999999"), kMax);
  EXPECT_EQ(EnteroDe(L"-99999999999999999999999999"), kMin);
}

TEST(wtof, ReadsTheNumberThatATextBeginsWith) {
  EXPECT_EQ(RealDe(L"5.25 m"), 5.25);
  EXPECT_EQ(RealDe(L" -1e3"), -1000.0);
  EXPECT_EQ(RealDe(L"1,5"), 1.0);
  EXPECT_EQ(RealDe(L""), 0.0);
  EXPECT_EQ(RealDe(L"metros"), 0.0);
  EXPECT_EQ(RealDe(nullptr), 0.0);
}

}  // namespace
