#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "classification/CBusquedaPuntos.h"
#include "classification/CHiloBuscaPuntosAltos.h"
#include "platform/Manejadores.h"
#include "support/PlanarRun.h"

namespace Meseta47::test {

/// A file of triangles and the points that their numbers stand for, as they come; and passes of the threads over it.
class PassScene {
 public:
  PassScene(std::vector<support::Point> const& places, std::vector<support::Triangle> const& triangles) {
    for (support::Point const& p : places) {
      points.emplace_back(p.x, p.y, p.z, static_cast<int>(points.size()) + 1);
    }
    for (CCoor3D<int>& p : points) mesh.Anade(&p);
    std::string bytes;
    for (support::Triangle const& t : triangles) bytes.append(reinterpret_cast<char const*>(t.data()), 12);
    PutBytes(path, bytes);
    total = bytes.size();
    records = static_cast<unsigned>(triangles.size());
  }

  /// Runs a pass with so many threads, and returns the numbers of the points found so far.
  std::set<int> Run(unsigned pass_, unsigned threads = 1) {
    Begin(pass_, threads);
    End();
    return Found();
  }

  void Begin(unsigned pass_, unsigned threads) {
    pass = pass_;
    count = 0;
    change = false;
    finished = 0;
    read = 0;
    if (threads_.empty()) Make(threads);
    for (unsigned k = 0; k < threads; ++k) {
      Start(k, threads);
      ASSERT_EQ(threads_[k].Codigo(), kHecho);
      SetEvent(go_[k]);
    }
  }
  void End() { WaitForMultipleObjects(static_cast<unsigned long>(done_.size()), done_.data(), true, INFINITE); }

  void Make(unsigned threads) {
    threads_ = std::vector<CHiloBuscaPuntosAltos>(threads);
    for (unsigned k = 0; k < threads; ++k) {
      done_.push_back(CreateEventW(nullptr, true, true, nullptr));
      go_.push_back(CreateEventW(nullptr, true, false, nullptr));
    }
  }
  void Start(unsigned k, unsigned threads) {
    threads_[k].Start(k, &done_[k], &go_[k], nullptr, 0, 0, path, &mesh, &pass, &count, height, distance, slope, &high,
                      &change, &total, records / threads + 1, &section, &finished, &read, &cancelled);
  }
  CHiloBuscaPuntosAltos& Thread(unsigned k) { return threads_[k]; }
  HANDLE& Go(unsigned k) { return go_[k]; }

  [[nodiscard]] std::set<int> Found() const {
    std::set<int> found;
    for (CCoor3D<int> const& p : points) {
      if (p.num < 0) found.insert(-p.num);
    }
    return found;
  }
  void Mark(int number) { points[static_cast<std::size_t>(number) - 1].num = -number; }

  PassScene(PassScene const&) = delete;
  PassScene& operator=(PassScene const&) = delete;
  ~PassScene() {
    for (CHiloBuscaPuntosAltos& thread : threads_) thread.Stop();
    for (HANDLE event : done_) CloseHandle(event);
    for (HANDLE event : go_) CloseHandle(event);
  }

  static constexpr std::size_t kMostNumbers = 100'000;

  ScratchFolder folder;
  CString path = folder.Path("triangles");
  std::vector<CCoor3D<int>> points;
  CBusquedaPuntos mesh{kMostNumbers};
  unsigned records = 0;
  int height = 100, distance = 10;
  double slope = 0.7853981633974483;
  unsigned pass = 0, count = 0, read = 0;
  long finished = 0;
  bool change = false, cancelled = false;
  std::uint64_t total = 0;
  std::vector<CCoor3D<int>> high;
  CCriticalSection section;

 private:
  std::vector<HANDLE> done_, go_;
  std::vector<CHiloBuscaPuntosAltos> threads_;
};

}  // namespace Meseta47::test
