#pragma once

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "planar/PhaseScenes.h"
#include "run/CTurnos.h"

/// Clouds for two threads that insert, what a linking leaves of them, and who is held up at which crossing.
namespace Meseta47::test {

/// So many points of the left and of the right of the middle in turns, each side in its order.
inline std::vector<support::Point> InTurns(std::vector<support::Point> const& points, std::size_t stretch) {
  CMaximas<int> box;
  for (support::Point const& p : points) box.Nuevo(CCoor3D<int>(p.x, p.y, 0, 0));
  std::vector<support::Point> of[2], all;
  for (support::Point const& p : points) of[p.x >= box.Centro(false).x ? 1 : 0].push_back(p);
  std::size_t taken[2] = {};
  while (all.size() < points.size()) {
    for (unsigned side = 0; side < 2; ++side) {
      for (std::size_t i = 0; i < stretch && taken[side] < of[side].size(); ++i) all.push_back(of[side][taken[side]++]);
    }
  }
  return all;
}

/// All of a linking that may not depend on threads.
struct Left {
  std::string bytes;
  std::vector<int> numbers;
  std::vector<std::uint64_t> counts;
  bool operator==(Left const&) const = default;
};

/// What a linking of the drawing has left, whose file then goes.
inline Left LeftOf(OpenTriangulation& t, CDibujo<int> const& drawing) {
  CResumenPlano const& r = t.Resumen();
  Left left{t.SpilledBytes(),
            NumbersOf(drawing[0]),
            {r.duplicados, r.rechazados, r.picoVivos, r.enlazados, r.examinados, r.completados, t.cantidadPuntos,
             t.duplicados, t.setsCerrados.Encolados()}};
  t.BorraFicheroTemporal();
  return left;
}

struct Outcome {
  Left left;
  bool byTwo = false, late = false;
  std::uint64_t inTurn = 0, alone = 0;
};

/// Linked by so many threads, two of them inserting wherever that is allowed.
inline Outcome LinkedBy(unsigned threads, std::vector<support::Point> const& points, bool withoutFrame = false) {
  const QuietApp app(threads);
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation t;
  t.DosDesde(0);
  t.SinMarco(withoutFrame);
  EXPECT_EQ(t.Link(drawing), kHecho);
  Outcome outcome{LeftOf(t, drawing), t.porDos.hecho, t.porDos.tarde, t.porDos.enTurno, t.porDos.aSolas};
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  return outcome;
}

/// How often a linking is tried again whose threads have not met as a test wants them to: that is up to whoever shares
/// out the processors. What is left must be the same each time.
inline constexpr unsigned kPatience = 20;

/// Tells every crossing while it lives.
class Observed {
 public:
  explicit Observed(CTurnos::CTestigo witness, int alone = CTurnos::kTramoSolo) { CTurnos::Observa(witness, alone); }
  Observed(Observed const&) = delete;
  Observed& operator=(Observed const&) = delete;
  ~Observed() { CTurnos::Observa(nullptr); }
};

/// Lets so much time pass, in which others may have the processor. Sleeps of less than a millisecond are none on
/// Windows.
inline void Dawdle(std::chrono::microseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) std::this_thread::yield();
}

/// Delays at crossings, drawn from a seed: how often, and how long.
inline std::atomic<std::uint64_t> theDelays{0};
inline std::atomic<unsigned> thePace{0};

inline CTurnos::CJuicio Delay(unsigned half, char const*) {
  static constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15U;
  std::uint64_t drawn = theDelays.fetch_add(kStep) + half;
  drawn = (drawn ^ (drawn >> 30)) * 0xBF58476D1CE4E5B9U;
  drawn ^= drawn >> 27;
  const unsigned pace = thePace;
  // The one half runs far ahead, or the other, or they take turns at random.
  if (pace % 3 != 2 && half != pace % 3) return CTurnos::VAN_BIEN;
  if (drawn % 8 == 0) std::this_thread::yield();
  if (drawn % 64 == 1) Dawdle(std::chrono::microseconds(20));
  return CTurnos::VAN_BIEN;
}

}  // namespace Meseta47::test
