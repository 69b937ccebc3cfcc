#include "platform/CEvent.h"

#include <gtest/gtest.h>
#include <thread>

#include "platform/Manejadores.h"
#include "support/FaultGuard.h"

namespace {

TEST(CEvent, IsUnsetAndAutomaticUnlessAskedOtherwise) {
  CEvent event;
  EXPECT_FALSE(event.Lock(0));
  EXPECT_TRUE(event.SetEvent());
  EXPECT_TRUE(event.Lock(0));
  EXPECT_FALSE(event.Lock(0));
  EXPECT_TRUE(event.Unlock());
}

TEST(CEvent, AManualOneStaysSetUntilReset) {
  CEvent event(true, true);
  EXPECT_TRUE(event.Lock());
  EXPECT_TRUE(event.Lock(-1));
  EXPECT_TRUE(event.Lock(INFINITE));
  EXPECT_TRUE(event.ResetEvent());
  EXPECT_FALSE(event.Lock(0));
}

TEST(CEvent, IsAHandleToWaitFor) {
  CEvent event;
  std::jthread later([&] { event.SetEvent(); });
  HANDLE const handle = event;
  EXPECT_EQ(handle, event.m_hObject);
  EXPECT_EQ(WaitForMultipleObjects(1, &handle, true, INFINITE), WAIT_OBJECT_0);
}

TEST(CEvent, ItsHandleGoesWithIt) {
  HANDLE handle = nullptr;
  {
    CEvent event(true, true);
    handle = event.m_hObject;
    EXPECT_EQ(WaitForSingleObject(handle, 0), WAIT_OBJECT_0);
  }
  EXPECT_EQ(WaitForSingleObject(handle, 0), WAIT_FAILED);
}

TEST(CEvent, ThatCouldNotBeMadeFailsInEveryOperation) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaEvento);
  CEvent event(true, true);
  EXPECT_EQ(event.m_hObject, nullptr);
  EXPECT_FALSE(event.SetEvent());
  EXPECT_FALSE(event.ResetEvent());
  EXPECT_FALSE(event.Lock());
}

}  // namespace
