#include "platform/CFicheroParcial.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "platform/Ficheros.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

bool Put(CFicheroParcial& file, std::string const& text) { return file.Fichero().Write(text.data(), text.size()); }

bool WriteWhole(CString const& path, std::string const& text) {
  CFicheroParcial file(path);
  return Put(file, text) && file.Confirma();
}

TEST(CFicheroParcial, TwoForOneNameNeverMeetAndTheLastOneConfirmedStays) {
  const ScratchFolder folder;
  CFicheroParcial one(folder.Path("a")), two(folder.Path("a"));
  ASSERT_TRUE(one.EstaAbierto() && two.EstaAbierto());
  EXPECT_THAT(folder.Names(), UnorderedElementsAre("a.part", "a.2.part"));
  ASSERT_TRUE(Put(one, "one") && Put(two, "two"));
  EXPECT_TRUE(two.Confirma());
  EXPECT_EQ(BytesOf(folder.Path("a")), "two");
  EXPECT_TRUE(one.Confirma());
  EXPECT_EQ(BytesOf(folder.Path("a")), "one");
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
}

TEST(CFicheroParcial, ManyAtOnceAreEachWhole) {
  const ScratchFolder folder;
  constexpr int kThreads = 4, kTimes = 200;
  const auto text = [](int thread) { return std::string(100'000, static_cast<char>('a' + thread)); };
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < kThreads; ++t) {
      threads.emplace_back([&, t] {
        for (int i = 0; i < kTimes; ++i) {
          EXPECT_TRUE(WriteWhole(folder.Path("a"), text(t)));
          const std::string found = BytesOf(folder.Path("a"));
          EXPECT_EQ(found, std::string(100'000, found.at(0)));
        }
      });
    }
  }
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
}

TEST(CFicheroParcial, ClosedAndNotYetNamedItIsStillItsOwners) {
  const ScratchFolder folder;
  CFicheroParcial one(folder.Path("a"));
  ASSERT_TRUE(Put(one, "one") && one.Cierra());
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "two"));
  EXPECT_TRUE(Exists(folder.Path("a.part")));
  EXPECT_TRUE(one.Confirma());
  EXPECT_EQ(BytesOf(folder.Path("a")), "one");
}

TEST(CFicheroParcial, WhatAKilledProcessLeftIsDeletedAndWhatALivingOneHoldsIsNot) {
  const ScratchFolder folder;
  PutBytes(folder.Path("a.part"), "left");
  PutBytes(folder.Path("a.2.part"), "held");
  PutBytes(folder.Path("a.3.part"), "left too");
  const int held = ::open(folder.Path("a.2.part").Utf8().c_str(), O_RDWR);
  ASSERT_EQ(::flock(held, LOCK_EX | LOCK_NB), 0);
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  EXPECT_THAT(folder.Names(), ElementsAre("a", "a.2.part"));
  EXPECT_EQ(BytesOf(folder.Path("a.2.part")), "held");
  ::close(held);
}

TEST(CFicheroParcial, ALinkUnderItsNameIsNotFollowed) {
  const ScratchFolder folder;
  PutBytes(folder.Path("precious"), "precious");
  fs::create_symlink("precious", folder.Path("a.part").Utf8());
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  EXPECT_EQ(BytesOf(folder.Path("precious")), "precious");
  EXPECT_TRUE(fs::is_symlink(folder.Path("a.part").Utf8()));
  EXPECT_EQ(BytesOf(folder.Path("a")), "new");
}

TEST(CFicheroParcial, APipeUnderItsNameHoldsNothingUp) {
  const ScratchFolder folder;
  ASSERT_EQ(::mkfifo(folder.Path("a.part").Utf8().c_str(), 0600), 0);
  fs::create_directory(folder.Path("a.2.part").Utf8());
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  EXPECT_EQ(BytesOf(folder.Path("a")), "new");
  EXPECT_TRUE(fs::is_fifo(folder.Path("a.part").Utf8()));
}

TEST(CFicheroParcial, TheOneReplacedHandsOnItsPermissionsWhateverTheMask) {
  const ScratchFolder folder;
  for (const mode_t mode : {mode_t{0600}, mode_t{0640}, mode_t{0666}, mode_t{0444}}) {
    PutBytes(folder.Path("a"), "old");
    ASSERT_EQ(::chmod(folder.Path("a").Utf8().c_str(), mode), 0);
    {
      CFicheroParcial file(folder.Path("a"));
      ASSERT_TRUE(Put(file, "new"));
      struct stat facts {};
      ASSERT_EQ(::stat(folder.Path("a.part").Utf8().c_str(), &facts), 0);
      EXPECT_EQ(facts.st_mode & 0777, mode) << "already in the making";
      ASSERT_TRUE(file.Confirma());
    }
    struct stat facts {};
    ASSERT_EQ(::stat(folder.Path("a").Utf8().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, mode);
    fs::remove(folder.Path("a").Utf8());
  }
}

TEST(CFicheroParcial, ANewFileHasThePermissionsOfAnyOther) {
  const ScratchFolder folder;
  const mode_t before = ::umask(027);
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  ::umask(before);
  struct stat facts {};
  ASSERT_EQ(::stat(folder.Path("a").Utf8().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0640U);
}

TEST(CFicheroParcial, TheOneReplacedHandsOnItsOwnerAndGroup) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give files to others";
  const ScratchFolder folder;
  PutBytes(folder.Path("a"), "old");
  ASSERT_EQ(::chown(folder.Path("a").Utf8().c_str(), 4321, 1234), 0);
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  struct stat facts {};
  ASSERT_EQ(::stat(folder.Path("a").Utf8().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_uid, 4321U);
  EXPECT_EQ(facts.st_gid, 1234U);
}

TEST(CFicheroParcial, LinksAreFollowedToTheEndAndStay) {
  const ScratchFolder folder;
  fs::create_directory(folder.Path("far").Utf8());
  PutBytes(folder.Path("far/real"), "old");
  fs::create_symlink("real", folder.Path("far/near").Utf8());  // from its own folder
  fs::create_symlink("far/near", folder.Path("a").Utf8());
  EXPECT_EQ(DestinoFinal(folder.Path("a")), folder.Path("far/real"));
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  EXPECT_TRUE(fs::is_symlink(folder.Path("a").Utf8()));
  EXPECT_TRUE(fs::is_symlink(folder.Path("far/near").Utf8()));
  EXPECT_EQ(BytesOf(folder.Path("far/real")), "new");
}

TEST(CFicheroParcial, ALinkToNothingYetGetsItsFile) {
  const ScratchFolder folder;
  fs::create_symlink(folder.Path("none").Utf8(), folder.Path("a").Utf8());
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  EXPECT_TRUE(fs::is_symlink(folder.Path("a").Utf8()));
  EXPECT_EQ(BytesOf(folder.Path("none")), "new");
}

TEST(CFicheroParcial, ALinkToAFolderThatIsMissingIsAFailure) {
  const ScratchFolder folder;
  fs::create_symlink("no/such", folder.Path("a").Utf8());
  CFicheroParcial file(folder.Path("a"));
  EXPECT_FALSE(file.EstaAbierto());
  EXPECT_THAT(file.Error().Utf8(), HasSubstr(folder.Path("a").Utf8() + ": No such file"));
  EXPECT_TRUE(fs::is_symlink(folder.Path("a").Utf8()));
}

TEST(CFicheroParcial, ARingOfLinksIsAFailureAndStays) {
  const ScratchFolder folder;
  fs::create_symlink("b", folder.Path("a").Utf8());
  fs::create_symlink("a", folder.Path("b").Utf8());
  CFicheroParcial file(folder.Path("a"));
  EXPECT_FALSE(file.EstaAbierto());
  EXPECT_THAT(file.Causa().Utf8(), HasSubstr("symbolic links"));
  EXPECT_FALSE(file.Confirma());
  EXPECT_THAT(folder.Names(), ElementsAre("a", "b"));
}

TEST(CFicheroParcial, AMiddleOfALinkChangesNoMore) {
  const ScratchFolder folder;
  fs::create_symlink("one", folder.Path("a").Utf8());
  CFicheroParcial file(folder.Path("a"));
  fs::remove(folder.Path("a").Utf8());
  fs::create_symlink("two", folder.Path("a").Utf8());
  ASSERT_TRUE(Put(file, "new") && file.Confirma());
  EXPECT_EQ(BytesOf(folder.Path("one")), "new") << "where it led when the file was begun";
  EXPECT_FALSE(Exists(folder.Path("two")));
}

TEST(CFicheroParcial, ANameAsLongAsNamesMayBeIsTaken) {
  const ScratchFolder folder;
  for (std::string const& name :
       {std::string(255, 'a'), std::string(251, 'b'), std::string(250, 'c'), std::string("d") + [] {
          std::string text;
          for (int i = 0; i < 127; ++i) text += "ñ";  // two bytes each
          return text;
        }()}) {
    CFicheroParcial one(folder.Path(name)), two(folder.Path(name));
    EXPECT_TRUE(one.EstaAbierto() && two.EstaAbierto()) << name;
    EXPECT_TRUE(Put(one, "new") && one.Confirma());
    EXPECT_EQ(BytesOf(folder.Path(name)), "new");
  }
  EXPECT_EQ(folder.Files(), 4U);
  EXPECT_FALSE(CFicheroParcial(folder.Path(std::string(256, 'a'))).Confirma());
}

TEST(CFicheroParcial, FailuresTellTheNameThatTheFileWasToHave) {
  const ScratchFolder folder;
  PutBytes(folder.Path("a"), "old");
  {
    FaultGuard guard;
    guard.LimitDisk(3);
    CFicheroParcial file(folder.Path("a"));
    EXPECT_TRUE(Put(file, "four"));
    EXPECT_FALSE(file.Confirma());
    EXPECT_EQ(file.Error().Utf8(), "cannot write " + folder.Path("a").Utf8() + ": No space left on device");
    EXPECT_EQ(file.Causa(), L"No space left on device");
  }
  FaultGuard guard;
  guard.Refuse(EOperacion::Renombra);
  CFicheroParcial file(folder.Path("a"));
  EXPECT_FALSE(Put(file, "four") && file.Confirma());
  EXPECT_THAT(file.Error().Utf8(), HasSubstr("in the place of " + folder.Path("a").Utf8() + ": Permission denied"));
  file.Descarta();
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
  EXPECT_EQ(BytesOf(folder.Path("a")), "old");
}

TEST(CFicheroParcial, TheOneReplacedGoesOnlyWhenTheNewOneIsOnTheDiskItself) {
  const ScratchFolder folder;
  FaultGuard guard;
  EXPECT_TRUE(WriteWhole(folder.Path("a"), "new"));
  EXPECT_EQ(guard.Asked(EOperacion::Sincroniza), 0) << "nothing can be lost";
  guard.Refuse(EOperacion::Sincroniza);
  EXPECT_FALSE(WriteWhole(folder.Path("a"), "newer"));
  EXPECT_EQ(guard.Asked(EOperacion::Sincroniza), 1);
  EXPECT_EQ(BytesOf(folder.Path("a")), "new");
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
}

TEST(CCerrojoCarpeta, OneHasItAtATime) {
  const ScratchFolder folder;
  std::atomic<int> inside = 0, most = 0;  // the lock is the system's, which the thread sanitizer doesn't see
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([&] {
        for (int i = 0; i < 20; ++i) {
          const CCerrojoCarpeta lock(folder.Path());
          most = std::max(most.load(), ++inside);
          std::this_thread::sleep_for(std::chrono::microseconds(200));
          --inside;
        }
      });
    }
  }
  EXPECT_EQ(most, 1);
  const CCerrojoCarpeta none(folder.Path("none"));  // nothing to lock, and nothing is held up
}

}  // namespace
