#include "platform/Procesadores.h"

#include <gtest/gtest.h>
#include <thread>

#include "platform/CWinApp.h"

namespace {

TEST(Processors, AreThoseOfTheMachineUnlessTheApplicationSettlesThem) {
  const unsigned machine = std::max(1u, std::thread::hardware_concurrency());
  EXPECT_EQ(NumeroProcesadores(), machine);
  CWinApp application;
  EXPECT_EQ(NumeroProcesadores(), machine);
  application.PonProcesadores(machine + 7);
  EXPECT_EQ(NumeroProcesadores(), machine + 7) << "more than there are is the user's wish";
  application.PonProcesadores(1);
  EXPECT_EQ(NumeroProcesadores(), 1u);
  application.PonProcesadores(0);
  EXPECT_EQ(NumeroProcesadores(), machine);
}

TEST(Processors, TheSystemInformationGivesTheSameNumber) {
  CWinApp application;
  application.PonProcesadores(5);
  SYSTEM_INFO information;
  GetSystemInfo(&information);
  EXPECT_EQ(information.dwNumberOfProcessors, 5u);
}

}  // namespace
