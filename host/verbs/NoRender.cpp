// A build without cairo paints no pictures, and says so.
#include "host/Failure.h"
#include "host/verbs/Verbs.h"

namespace Meseta47::host {

void addRender(CLI::App& program, CommonOptions const&, Work& chosen) {
  CLI::App* const verb = program.add_subcommand("render", "Not in this build: it has no cairo, which paints pictures");
  verb->fallthrough(false)->allow_extras();  // whatever stands behind it
  verb->callback([&chosen] {
    chosen = [](HostApp&) {
      throw Failure(
          "render: cairo paints the pictures, and this urdimbre was built without it: take a build with cairo, "
          "or look at the surface that tin or surface writes");
    };
  });
}

}  // namespace Meseta47::host
