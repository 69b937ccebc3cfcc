#include "host/verbs/Verbs.h"

#include <utility>

namespace Meseta47::host {

void addOptionsWhenNamed(CLI::App& verb, std::function<void()> addOptions) {
  verb.preparse_callback([&verb, make = std::move(addOptions)](std::size_t) {
    make();
    refuseEmptyTexts(verb);
  });
}

void refuseEmptyTexts(CLI::App& app) {
  const CLI::Validator saysSomething(
      [](std::string const& text) { return text.empty() ? std::string("is empty: give a value") : std::string(); }, "");
  for (CLI::Option* const option : app.get_options()) {
    if (option->get_expected_min() > 0 && option->get_type_size() > 0) option->check(saysSomething);
  }
}

}  // namespace Meseta47::host
