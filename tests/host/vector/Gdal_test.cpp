#include "host/vector/Gdal.h"

#include <cpl_error.h>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

using namespace Meseta47::host;

TEST(GdalReportTest, KeepsTheFirstFailureInOneLineAndNoWarning) {
  startGdal();
  const GdalReport report;
  CPLError(CE_Warning, CPLE_AppDefined, "a warning");
  EXPECT_FALSE(report.failed());
  CPLError(CE_Failure, CPLE_AppDefined, "the first\nof them.");
  CPLError(CE_Failure, CPLE_AppDefined, "the second");
  EXPECT_TRUE(report.failed());
  EXPECT_EQ(report.failure(), "the first of them");
  EXPECT_NO_THROW(report.check());
}

TEST(GdalReportTest, MemoryThatGaveOutIsNoFaultOfTheFileInWhateverWordsItIsTold) {
  startGdal();
  for (char const* told :
       {"PROJ: std::bad_alloc", "PROJ: SQLite error on SELECT name FROM alias_name: out of memory"}) {
    const GdalReport report;
    CPLError(CE_Failure, CPLE_AppDefined, "the system is not known");
    CPLError(CE_Failure, CPLE_AppDefined, "%s", told);
    EXPECT_THROW((void)report.failure(), std::bad_alloc) << told;
    EXPECT_THROW(report.check(), std::bad_alloc) << told;
  }
  const GdalReport report;
  CPLError(CE_Failure, CPLE_OutOfMemory, "cannot hold a line");
  EXPECT_THROW(report.check(), std::bad_alloc);
}

TEST(GdalReportTest, TheInnerOfTwoHearsWhatComes) {
  startGdal();
  const GdalReport outer;
  {
    const GdalReport inner;
    CPLError(CE_Failure, CPLE_AppDefined, "within");
    EXPECT_EQ(inner.failure(), "within");
  }
  EXPECT_FALSE(outer.failed());
  CPLError(CE_Failure, CPLE_AppDefined, "after it");
  EXPECT_EQ(outer.failure(), "after it");
}

TEST(GdalReportTest, AFatalErrorEndsWhatIsDoneButNotTheProgram) {
  startGdal();
  EXPECT_THROW(CPLError(CE_Fatal, CPLE_AppDefined, "CPLMalloc(): Out of memory allocating 8 bytes"), std::bad_alloc);
  const GdalReport report;
  EXPECT_THROW(CPLError(CE_Fatal, CPLE_AppDefined, "CPLMalloc(): Out of memory allocating 8 bytes"), std::bad_alloc);
  EXPECT_THROW(CPLError(CE_Fatal, CPLE_AssertionFailed, "an assertion"), std::runtime_error);
}
