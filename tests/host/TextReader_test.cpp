#include "host/text/TextReader.h"

#include "host/Failure.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

TextReader readerOf(std::string const& text) {
  return TextReader(std::make_unique<MemorySource>("cloud.txt", Bytes(text.begin(), text.end())));
}

std::vector<CloudPoint> pointsOf(TextReader& reader, std::size_t batch = TextReader::kBatch) {
  std::vector<CloudPoint> all, some;
  while (reader.readBatch(some, batch) > 0) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

std::vector<CloudPoint> pointsIn(std::string const& text) {
  TextReader reader = readerOf(text);
  return pointsOf(reader);
}

std::string errorOfReading(std::string const& text) {
  return errorOf([&] { pointsIn(text); });
}

auto place(CloudPoint const& p) { return std::make_tuple(p.x, p.y, p.z); }

MATCHER_P3(At, x, y, z, "") { return arg.x == x && arg.y == y && arg.z == z; }

}  // namespace

TEST(TextReader, BlanksTabsCommasAndSemicolonsSeparate) {
  for (char const* text :
       {"1 2 3\n4 5 6\n", "1\t2\t3\n4\t 5  6", "1,2,3\n4,5,6", "1, 2 ,3\n 4,5,\t6\n", "1;2;3\n4; 5; 6\n"}) {
    EXPECT_THAT(pointsIn(text), ElementsAre(At(1, 2, 3), At(4, 5, 6))) << text;
  }
}

TEST(TextReader, LinesOfWindowsAndALastLineWithoutEndAreRead) {
  EXPECT_THAT(pointsIn("1 2 3\r\n\r\n4 5 6\r\n7 8 9"), ElementsAre(At(1, 2, 3), At(4, 5, 6), At(7, 8, 9)));
}

TEST(TextReader, CommentsEmptyLinesAndAByteOrderMarkCountForNothing) {
  EXPECT_THAT(pointsIn("\xEF\xBB\xBF# made by hand\n\n  \n1 2 3\n#4 5 6\n  # 7\n"), ElementsAre(At(1, 2, 3)));
}

TEST(TextReader, SignsAndExponentsAreRead) {
  EXPECT_THAT(pointsIn("+1.5 -2 3e2\n"), ElementsAre(At(1.5, -2.0, 300.0)));
}

TEST(TextReader, FourthAndFifthColumnsAreIntensityAndClass) {
  const auto points = pointsIn("1 2 3 400 5\n1 2 3 65535 255\n");
  EXPECT_EQ(points.at(0).intensity, 400);
  EXPECT_EQ(points.at(0).classification, 5);
  EXPECT_EQ(points.at(1).intensity, 65535);
  EXPECT_EQ(points.at(1).classification, 255);
}

TEST(TextReader, WithMoreThanFiveUnnamedColumnsOnlyThePlaceIsTaken) {
  const auto points = pointsIn("1 2 3 -900 5 6 whatever\n");
  EXPECT_EQ(place(points.at(0)), std::make_tuple(1, 2, 3));
  EXPECT_EQ(points.at(0).intensity, 0);
}

TEST(TextReader, AFirstLineOfNamesSaysWhichColumnIsWhich) {
  const auto points =
      pointsIn("Classification;\"Height\";name;Northing;EASTING;Intensity;R;G;B\n2;30.5;a b;20;10;77;1;2;3\n");
  ASSERT_EQ(points.size(), 1U);
  EXPECT_EQ(place(points[0]), std::make_tuple(10, 20, 30.5));
  EXPECT_EQ(points[0].classification, 2);
  EXPECT_EQ(points[0].intensity, 77);
  EXPECT_EQ(points[0].b, 3);
}

TEST(TextReader, NamesMaySeparateOtherwiseThanNumbers) {
  EXPECT_THAT(pointsIn("//X Y Z\n1,2,3\n"), ElementsAre(At(1, 2, 3)));
  EXPECT_THAT(pointsIn("N,E,H\n1 2 3\n"), ElementsAre(At(2, 1, 3)));
}

TEST(TextReader, PointNumbersInFrontAreRecognised) {
  TextReader reader = readerOf("1,450000.1,4480000.2,100.0\n2,450010.1,4480000.2,101.0\n17,450000.1,4480010.2,99\n");
  EXPECT_THAT(pointsOf(reader), ElementsAre(At(450000.1, 4480000.2, 100.0), At(450010.1, 4480000.2, 101.0),
                                            At(450000.1, 4480010.2, 99.0)));
  EXPECT_THAT(reader.columns(), ElementsAre("number", "x", "y", "z"));
  EXPECT_EQ(reader.columnsFrom(), "recognised");
  EXPECT_EQ(reader.decimals(), 1) << "a number is no coordinate";
}

TEST(TextReader, PointNumbersAreRecognisedBesideDescriptions) {
  EXPECT_THAT(pointsIn("1,450000.1,4480000.2,100.0,EDGE\n2,450010.1,4480000.2,101.0,TOP OF BANK\n"),
              ElementsAre(At(450000.1, 4480000.2, 100.0), At(450010.1, 4480000.2, 101.0)));
}

TEST(TextReader, PointNumbersAreRecognisedByHeightsThatNoLandHas) {
  for (char const* text :
       {"1,450000,4480000,100\n2,450010,4480000,101\n", "1,450000.5,4480000.5,100.5\n1,450010.5,4480000.5,101.5\n"}) {
    TextReader reader = readerOf(text);
    EXPECT_EQ(pointsOf(reader).size(), 2U);
    EXPECT_THAT(reader.columns(), ElementsAre("number", "x", "y", "z")) << text;
  }
}

TEST(TextReader, NamesOfPointsInFrontAreRecognised) {
  for (char const* text :
       {"A1 1.5 2.5 3.5\nA2 4.5 5.5 6.5\n", "Point,X,Y,Z,Code\nA1,1.5,2.5,3.5,T\nA2,4.5,5.5,6.5,T\n"}) {
    EXPECT_THAT(pointsIn(text), ElementsAre(At(1.5, 2.5, 3.5), At(4.5, 5.5, 6.5))) << text;
  }
}

TEST(TextReader, AHeaderOfPointsMayPutNorthingsFirst) {
  TextReader reader = readerOf("Point,Northing (m),Easting (m),Elevation (m),Code\n1,4480000.2,450000.1,100.0,EDGE\n");
  EXPECT_THAT(pointsOf(reader), ElementsAre(At(450000.1, 4480000.2, 100.0)));
  EXPECT_THAT(reader.columns(), ElementsAre("-", "y", "x", "z"));
  EXPECT_EQ(reader.columnsFrom(), "named by its first line");
}

TEST(TextReader, WholeCoordinatesWithIntensitiesAreNoPointNumbers) {
  EXPECT_THAT(pointsIn("0 0 5 12\n1 0 6 13\n2 0 7 14\n"), ElementsAre(At(0, 0, 5), At(1, 0, 6), At(2, 0, 7)));
  EXPECT_THAT(pointsIn("0 0.5 5.5 12\n0 1.5 6.5 13\n"), ElementsAre(At(0, 0.5, 5.5), At(0, 1.5, 6.5)))
      << "what comes twice is no number of a point";
  EXPECT_THAT(pointsIn("7 8.5 9.5 12\n8.25 1.5 6.5 13\n"), ElementsAre(At(7, 8.5, 9.5), At(8.25, 1.5, 6.5)));
}

TEST(TextReader, TextBehindThePlaceIsADescription) {
  TextReader reader = readerOf("1.5 2.5 3.5 EDGE\n4.5 5.5 6.5 WALL\n");
  EXPECT_THAT(pointsOf(reader), ElementsAre(At(1.5, 2.5, 3.5), At(4.5, 5.5, 6.5)));
  EXPECT_FALSE(reader.hasIntensity());
}

TEST(TextReader, ColumnsThatAreGivenCountWhateverTheTextSays) {
  const auto given = [](std::string const& text, std::vector<std::string> names) {
    return TextReader(std::make_unique<MemorySource>("cloud.txt", Bytes(text.begin(), text.end())), {std::move(names)});
  };
  for (char const* text : {"1,4480000.2,450000.1,100.0,EDGE\n", "x,y,z,a,b\n1,4480000.2,450000.1,100.0,EDGE\n"}) {
    TextReader reader = given(text, {"P", "N", "E", "Z", "D"});
    EXPECT_THAT(pointsOf(reader), ElementsAre(At(450000.1, 4480000.2, 100.0))) << text;
    EXPECT_EQ(reader.columnsFrom(), "given");
  }
  TextReader classes = given("1 2 3 9\n", {"x", "y", "z", "class"});
  EXPECT_EQ(pointsOf(classes).at(0).classification, 9);
  EXPECT_THROW(given("1 2 3\n", {"x", "y", "height", "z"}), UsageError);
  EXPECT_THROW(given("1 2 3\n", {"x", "y"}), UsageError);
}

TEST(TextReader, WhatWasLookedAtToRecogniseColumnsIsReadAllTheSame) {
  std::string text;
  for (int i = 1; i <= 1'000; ++i) text += std::to_string(i) + ",5.25," + std::to_string(i) + ".5,7.75\n";
  TextReader reader = readerOf(text);
  for (int round = 0; round < 2; ++round) {
    const auto points = pointsOf(reader, 64);
    ASSERT_EQ(points.size(), 1'000U);
    EXPECT_THAT(points.front(), At(5.25, 1.5, 7.75));
    EXPECT_THAT(points.back(), At(5.25, 1'000.5, 7.75));
    reader.rewind();
  }
  EXPECT_THAT(errorOfReading(text + "1001,5.25\n"), HasSubstr("line 1,001"));
}

TEST(TextReader, ACountOnTheFirstLineIsPassedOver) {
  EXPECT_THAT(pointsIn("2\n1 2 3\n4 5 6\n"), ElementsAre(At(1, 2, 3), At(4, 5, 6)));
}

TEST(TextReader, ASeparatorAtTheEndOfALineStartsNoColumn) {
  EXPECT_THAT(pointsIn("1,2,3,\n4,5,6,\n"), ElementsAre(At(1, 2, 3), At(4, 5, 6)));
}

TEST(TextReader, QuotedColumnsMayHoldSeparators) {
  EXPECT_THAT(pointsIn("\"x\",\"y\",\"z\"\n\"1\",\"2\",\"3\"\n\"4\" , 5,\"6\"\n"),
              ElementsAre(At(1, 2, 3), At(4, 5, 6)));
  EXPECT_THAT(pointsIn("number,x,code,y,z\n7,1,\"TOP, OF; BANK\",2,3\n8,4,\"say \"\"x\"\", y\",5,6\n"),
              ElementsAre(At(1, 2, 3), At(4, 5, 6)));
  EXPECT_THAT(pointsIn("1,2,3,\"A;B\"\n4,5,6,\"A;C\"\n"), ElementsAre(At(1, 2, 3), At(4, 5, 6)));
}

TEST(TextReader, AQuoteThatIsNotClosedIsALetter) {
  EXPECT_THAT(pointsIn("x,y,z,code\n1,2,3,12\" pipe\n4,5,6,\"open\n"), ElementsAre(At(1, 2, 3), At(4, 5, 6)));
}

TEST(TextReader, DecimalsAreThoseWritten) {
  const auto decimals = [](std::string const& text) {
    TextReader reader = readerOf(text);
    pointsOf(reader);
    return reader.decimals();
  };
  EXPECT_EQ(decimals("1 2 3\n"), 0);
  EXPECT_EQ(decimals("1.50 2 3\n1 2.5 3\n"), 2);
  EXPECT_EQ(decimals("1 2 3.125 400.00001\n"), 3) << "an intensity is no coordinate";
  EXPECT_EQ(decimals("1.25e1 2 3\n"), 1);
  EXPECT_EQ(decimals("1.5e-3 2 3\n"), 4);
  EXPECT_EQ(decimals("0e-2147483648 0e-99999999999 3\n"), 400);
}

TEST(TextReader, RewindingGivesTheSamePointsAgain) {
  TextReader reader = readerOf("# c\nn e h\n1.5 2 3\n4 5 6\n");
  const auto once = pointsOf(reader, 1);
  reader.rewind();
  const auto again = pointsOf(reader);
  ASSERT_EQ(once.size(), 2U);
  ASSERT_EQ(again.size(), 2U);
  EXPECT_EQ(place(once[1]), place(again[1]));
}

TEST(TextReader, LinesThatStraddleBlocksAreWhole) {
  std::string text;
  for (int i = 0; i < 200000; ++i) {  // 4 MB
    text += std::to_string(i) + ".25 " + std::to_string(-i) + " 7\n";
  }
  const auto points = pointsIn(text);
  ASSERT_EQ(points.size(), 200000U);
  for (int i = 0; i < 200000; ++i) {
    ASSERT_EQ(place(points[static_cast<std::size_t>(i)]), std::make_tuple(i + 0.25, -i, 7));
  }
}

TEST(TextReader, NamesAloneAreAnEmptyCloud) {
  EXPECT_TRUE(pointsIn("x y z\n").empty());
  EXPECT_TRUE(pointsIn("# nothing\n").empty());
}

TEST(TextReaderError, AnEmptyFileIsSaidToBeEmpty) {
  EXPECT_EQ(errorOfReading(""), "cloud.txt: the file is empty (0 bytes): copy it again");
}

TEST(TextReaderError, ABadLineIsNamedByItsNumberAndText) {
  EXPECT_EQ(errorOfReading("# c\n1 2 3\n\n4 five 6\n"),
            "cloud.txt: line 4: \"4 five 6\": \"five\" is no number for y: numbers have a decimal point");
}

TEST(TextReaderError, LineNumbersGoOnAfterARewind) {
  TextReader reader = readerOf("# c\nx y z\n1 2 3\n4 5\n");
  EXPECT_THAT(errorOf([&] { pointsOf(reader); }), HasSubstr("line 4"));
  reader.rewind();
  EXPECT_THAT(errorOf([&] { pointsOf(reader); }), HasSubstr("line 4"));
}

TEST(TextReaderError, AMissingColumnIsRefused) {
  EXPECT_THAT(errorOfReading("1 2 3 4\n1 2 3\n"), HasSubstr("line 2: \"1 2 3\": has 3 columns and 4 are needed"));
  EXPECT_THAT(errorOfReading("1 2\n"), HasSubstr("line 1: \"1 2\": holds 2 of the three numbers"));
  EXPECT_THAT(errorOfReading("1,,3\n"), HasSubstr("line 1: \"1,,3\": \"\" is no number for y"));
}

TEST(TextReaderError, DecimalCommasAreNotTakenForColumns) {
  EXPECT_THAT(errorOfReading("1,5;2,5;3,5\n"), HasSubstr("\"1,5\""));
  EXPECT_THAT(errorOfReading("1,5 2,5 3,5\n"), StartsWith("cloud.txt: line 1: "));
}

TEST(TextReaderError, WhatIsNoPlaceOrNoNumberIsRefused) {
  for (char const* x : {"nan", "inf", "-inf", "1e13", "1e999", "0x10", "1..2", "--1", "1d3"}) {
    EXPECT_THAT(errorOfReading(std::string("0 0 0\n") + x + " 2 3\n"), HasSubstr("line 2")) << x;
  }
}

TEST(TextReaderError, IntensityAndClassOutOfRangeSayHowToPassThemOver) {
  EXPECT_THAT(errorOfReading("1 2 3 -5\n"),
              AllOf(HasSubstr("\"-5\" is no number between 0 and 65535"), HasSubstr("--columns")));
  EXPECT_THAT(errorOfReading("1 2 3 5 256\n"), HasSubstr("\"256\" is no number between 0 and 255 for class"));
  EXPECT_EQ(errorOfReading("x y z other\n1 2 3 -5\n"), "");
}

TEST(TextReaderError, NamesWithoutAPlaceAreRefused) {
  EXPECT_THAT(errorOfReading("x y intensity\n1 2 3\n"), HasSubstr("names no column z"));
  EXPECT_THAT(errorOfReading("x y z easting\n1 2 3 4\n"), HasSubstr("two columns are named as x"));
  EXPECT_THAT(errorOfReading("ncols 100\n"), HasSubstr("line 1: \"ncols 100\""));
}

TEST(TextReaderError, ALineWithoutEndIsNotSwallowedWhole) {
  EXPECT_THAT(errorOfReading(std::string(3000000, '1')), AllOf(HasSubstr("line 1"), HasSubstr("longer than any line")));
}

TEST(TextReaderError, DamagedTextNeverDoesWorseThanAnError) {
  constexpr unsigned kSeed = 7;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  const std::string whole = "x,y,z,intensity,class\n1.5,2,3,4,5\n6,7e1,8,9,10\n# c\n11,12,13,14,15\n";
  int refused = 0, read = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string damaged = whole.substr(0, 1 + random() % whole.size());
    for (auto i = random() % 3; i > 0; --i) {
      constexpr std::string_view kTelling = "\n,; .e-#+";
      const char other = static_cast<char>(random() % 256);
      damaged[random() % damaged.size()] = random() % 2 == 0 ? kTelling[random() % kTelling.size()] : other;
    }
    const std::string error = errorOfReading(damaged);
    EXPECT_EQ(error.find_first_of("\n\r\t"), std::string::npos) << error;
    error.empty() ? ++read : ++refused;
  }
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}
