// The whole road from LAS to PLY: the program beside the same road written straightforwardly over CGAL, each in a
// process of its own, in turns.
//
//   bench_road [--runs K] [--points N] PROGRAM [FILE.las ...]
//
// Without files a scan of N points is generated. The peer reads with the same reader, hands all points to CGAL's
// insertion, which sorts them for itself, and writes the same kind of PLY. Seconds are medians; memory is the greatest
// resident set of the process. What a run before has written is deleted first: to take an old file's place costs up to
// a tenth of a second, of either road in its own way, and is the file system's time.
#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Triangulation_vertex_base_with_info_2.h>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/LoadedCloud.h"
#include "host/Stopwatch.h"
#include "platform/Proceso.h"

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Vertex = CGAL::Triangulation_vertex_base_with_info_2<unsigned, Kernel>;
using Delaunay = CGAL::Delaunay_triangulation_2<Kernel, CGAL::Triangulation_data_structure_2<Vertex>>;
using Json = nlohmann::json;

template <class T>
void put(std::string& bytes, T value) {
  bytes.append(reinterpret_cast<char const*>(&value), sizeof value);
}

void writePly(Delaunay& mesh, LoadedCloud const& cloud, std::string const& path) {
  std::string bytes = fmt::format(
      "ply\nformat binary_little_endian 1.0\nelement vertex {}\nproperty double x\nproperty double y\nproperty double "
      "z\n"
      "element face {}\nproperty list uchar int vertex_indices\nend_header\n",
      mesh.number_of_vertices(), mesh.number_of_faces());
  const double scale = cloud.seed.Precision();
  int next = 0;
  for (auto vertex = mesh.finite_vertices_begin(); vertex != mesh.finite_vertices_end(); ++vertex) {
    ScaledPoint const& p = cloud.points[vertex->info()];
    for (const int v : {p.x, p.y, p.z}) put(bytes, v / scale);
    vertex->info() = static_cast<unsigned>(next++);
  }
  for (auto face = mesh.finite_faces_begin(); face != mesh.finite_faces_end(); ++face) {
    put(bytes, static_cast<unsigned char>(3));
    for (int i = 0; i < 3; ++i) put(bytes, static_cast<int>(face->vertex(i)->info()));
  }
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// The peer's road, in a process of its own.
int runPeer(std::vector<std::string> const& files, std::string const& output) {
  const Stopwatch whole;
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  Stopwatch reading;
  LoadedCloud cloud = std::move(loadClouds({files}, LoadOptions(), app)[0]);
  const double read = reading.seconds();
  Stopwatch linking;
  std::vector<std::pair<Kernel::Point_2, unsigned>> points;
  points.reserve(cloud.points.size());
  for (ScaledPoint const& p : cloud.points) {
    points.emplace_back(Kernel::Point_2(p.x, p.y), static_cast<unsigned>(points.size()));
  }
  Delaunay mesh;
  mesh.insert(points.begin(), points.end());
  const double link = linking.seconds();
  Stopwatch writing;
  writePly(mesh, cloud, output);
  fmt::print("{}\n", Json{{"seconds",
                           {{"read", read}, {"link", link}, {"write", writing.seconds()}, {"total", whole.seconds()}}},
                          {"triangles", mesh.number_of_faces()},
                          {"peak_memory_bytes", MemoriaResidenteMaxima()}}
                         .dump());
  return 0;
}

Json runCommand(std::string const& command, std::string const& scratch) {
  const std::string answer = scratch + "/answer.json";
  if (std::system((command + " > " + answer).c_str()) != 0) throw std::runtime_error(command + " failed");
  return Json::parse(std::ifstream(answer));
}

double median(std::vector<Json> const& runs, char const* key) {
  std::vector<double> values;
  for (Json const& run : runs) {
    values.push_back(std::strcmp(key, "memory") == 0 ? run["peak_memory_bytes"].get<double>() / 1e6
                                                     : run["seconds"].value(key, 0.0));
  }
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2 && std::strcmp(argv[1], "--peer") == 0) {
    return runPeer(std::vector<std::string>(argv + 3, argv + argc), argv[2]);
  }
  unsigned runs = 5;
  std::string points = "1000000";
  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--runs") == 0 && i + 1 < argc) {
      runs = static_cast<unsigned>(std::stoul(argv[++i]));
    } else if (std::strcmp(argv[i], "--points") == 0 && i + 1 < argc) {
      points = argv[++i];
    } else {
      words.emplace_back(argv[i]);
    }
  }
  if (words.empty()) {
    fmt::print(stderr, "usage: bench_road [--runs K] [--points N] PROGRAM [FILE.las ...]\n");
    return 2;
  }
  const std::string program = words[0];
  const std::string scratch = std::filesystem::temp_directory_path() / "urdimbre_bench_road";
  std::filesystem::create_directories(scratch);
  words.erase(words.begin());
  if (words.empty()) {
    words.push_back(scratch + "/scan.las");
    runCommand(program + " generate " + words[0] + " --points " + points + " --seed 1 --json", scratch);
  }
  std::string files;
  for (std::string const& word : words) files += " '" + word + "'";

  std::vector<Json> ours, theirs;
  const auto run = [&](std::vector<Json>& list, std::string const& command, std::string const& output) {
    std::filesystem::remove(output);
    list.push_back(runCommand(command + " " + output + files, scratch));
  };
  for (unsigned i = 0; i < runs; ++i) {
    run(ours, program + " --quiet --json tin -o", scratch + "/ours.ply");
    run(theirs, std::string(argv[0]) + " --peer", scratch + "/theirs.ply");
  }
  fmt::print("{:<9} {:>9} {:>6} {:>6} {:>6} {:>6} {:>6} {:>6} {:>6} {:>7}\n", "", "triangles", "read", "order", "fill",
             "link", "gener.", "write", "total", "MB");
  for (auto const& [name, list] : {std::pair("urdimbre", &ours), std::pair("CGAL", &theirs)}) {
    fmt::print("{:<9} {:>9}", name, (*list)[0]["triangles"].get<std::uint64_t>());
    for (char const* key : {"read", "order", "fill", "link", "generate", "write", "total"}) {
      fmt::print(" {:6.2f}", median(*list, key));
    }
    fmt::print(" {:7.0f}\n", median(*list, "memory"));
  }
  fmt::print("ratio of the whole {:.2f}, of memory {:.2f}\n", median(theirs, "total") / median(ours, "total"),
             median(ours, "memory") / median(theirs, "memory"));
  std::filesystem::remove_all(scratch);
}
