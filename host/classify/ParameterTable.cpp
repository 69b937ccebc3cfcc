#include "host/classify/ParameterTable.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <limits>

#include "host/AsprsClasses.h"
#include "host/Failure.h"
#include "host/NumberCheck.h"
#include "platform/CWinApp.h"

namespace Meseta47::host {

namespace {

using Json = nlohmann::ordered_json;
using Texts = std::vector<std::string>;

constexpr double kInt32 = 2147483647.0;
constexpr double kRootOfInt32 = 46340.0;  // the largest whole number whose square fits

double numberOf(std::string const& text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string textOf(double value) { return fmt::format("{}", value); }

CLI::Validator wholeWithin(int least, int most) {
  CLI::Validator check = numberCheck(fmt::format(" without decimals from {} to {}", least, most), [=](double value) {
    return value >= least && value <= most && value == std::floor(value);
  });
  return check.description(fmt::format("INT in [{} - {}]", least, most));
}

/// Throws for a length of which a search can't take `most` scaled units or fewer.
void requireLength(char const* option, double value, double most, CloudUnits const& units) {
  if (value >= 0 && value * units.aMetre <= most) return;
  const double limit = most / units.aMetre;
  throw UsageError(fmt::format("{} {:g}: give a length from 0 to {}, in units of the input", option, value,
                               limit >= 1000 ? fmt::format("{:.0f}", std::floor(limit)) : fmt::format("{:g}", limit)));
}

std::string jsonName(ParameterNames const& names) {
  if (names.json != nullptr) return names.json;
  std::string name = names.option;
  name.erase(0, name.find_first_not_of('-'));
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

CString keyOf(ProfilePlace const& profile, ParameterNames const& names) { return profile.prefix + CString(names.key); }

std::string inProfile(ProfilePlace const& profile, ParameterNames const& names) {
  CWinApp const* app = AfxGetApp();
  return app == nullptr ? std::string() : app->GetProfileString(profile.section, keyOf(profile, names)).Utf8();
}

Texts wordsOf(std::string const& text) {
  Texts words;
  for (std::size_t begin = text.find_first_not_of(' '); begin != std::string::npos;) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = text.find_first_not_of(' ', end);
  }
  return words;
}

}  // namespace

// --- rows ---

ParameterTable::Row& ParameterTable::add(ParameterNames const& names, Kind kind) {
  Row& row = *rows_.emplace_back(std::make_unique<Row>(Row{names, std::move(kind)}));
  if (names.byDefault != nullptr) {
    row.wasDefault = names.byDefault;
  } else if (!row.kind.isFlag) {
    row.wasDefault = row.kind.text();
  }
  return row;
}

void ParameterTable::number(ParameterNames const& names, double& field, CLI::Validator const& limits) {
  add(names, {.type = "FLOAT",
              .check = limits,
              .set = [&field](Texts const& v) { field = numberOf(v[0]); },
              .text = [&field] { return textOf(field); },
              .json = [&field] { return Json(field); }});
}

void ParameterTable::length(ParameterNames const& names, double& field) {
  number(names, field, fromZeroUp());
  rows_.back()->kind.requireSense = [&field, option = names.option](CloudUnits const& units) {
    requireLength(option, field, kInt32, units);
  };
}

void ParameterTable::squaredLength(ParameterNames const& names, double& field) {
  number(names, field, fromZeroUp());
  rows_.back()->kind.requireSense = [&field, option = names.option](CloudUnits const& units) {
    requireLength(option, field, kRootOfInt32, units);
  };
}

void ParameterTable::optionalNumber(ParameterNames const& names, std::optional<double>& field,
                                    CLI::Validator const& limits) {
  add(names, {.type = "FLOAT",
              .check = limits,
              .set = [&field](Texts const& v) { field = numberOf(v[0]); },
              .text = [&field] { return field ? textOf(*field) : std::string(); },
              .json = [&field] { return field ? Json(*field) : Json(); }});
}

void ParameterTable::optionalLength(ParameterNames const& names, std::optional<double>& field) {
  optionalNumber(names, field, fromZeroUp());
  rows_.back()->kind.requireSense = [&field, option = names.option](CloudUnits const& units) {
    if (field) requireLength(option, *field, kInt32, units);
  };
}

void ParameterTable::metres(ParameterNames const& names, double& field, double most) {
  number(names, field, fromZeroUp());
  Row& row = *rows_.back();
  row.kind.requireSense = [&row, &field, most](CloudUnits const& units) {
    if (!row.given.empty()) field = numberOf(row.given[0]) * units.metres;
    if (field > 0 && field <= most) return;
    throw UsageError(fmt::format("{} {:g}: give a length above 0 and up to {:.0f}, in units of the input",
                                 row.names.option, field / units.metres, std::floor(most / units.metres)));
  };
}

void ParameterTable::whole(ParameterNames const& names, int& field, int least, int most) {
  add(names, {.type = "INT",
              .check = wholeWithin(least, most),
              .set = [&field](Texts const& v) { field = static_cast<int>(numberOf(v[0])); },
              .text = [&field] { return std::to_string(field); },
              .json = [&field] { return Json(field); }});
}

void ParameterTable::addClass(ParameterNames const& names, CInfoClasificacion& field) {
  add(names,
      {.type = "UINT",
       .check = wholeWithin(0, 255),
       .set = [&field](
                  Texts const& v) { field = CInfoClasificacion(static_cast<unsigned char>(numberOf(v[0])), 0.0, L""); },
       .text = [&field] { return std::to_string(field.GetTipo()); },
       .json = [&field] { return Json(field.GetTipo()); }});
  if (names.byDefault == nullptr) rows_.back()->wasDefault += fmt::format(", {}", className(field.GetTipo()));
}

void ParameterTable::optionalClass(ParameterNames const& names, std::optional<CInfoClasificacion>& field) {
  add(names, {.type = "UINT",
              .check = wholeWithin(0, 255),
              .set = [&field](Texts const& v) { field.emplace(static_cast<unsigned char>(numberOf(v[0])), 0.0, L""); },
              .text = [&field] { return field ? std::to_string(field->GetTipo()) : std::string(); },
              .json = [&field] { return field ? Json(field->GetTipo()) : Json(); }});
}

void ParameterTable::sought(ParameterNames const& names, CInfoClasificacion& field) { addClass(names, field); }

void ParameterTable::target(ParameterNames const& names, CInfoClasificacion& field) {
  addClass(names, field);
  targets_.push_back(&field);
}

void ParameterTable::flag(ParameterNames const& names, int& field, int given) {
  add(names, {.set = [&field](Texts const& v) { field = v[0] == "0" ? 0 : 1; },
              .text = [&field] { return std::to_string(field); },
              .json = [&field, given] { return Json(field == given); },
              .isFlag = true,
              .whenGiven = given});
}

void ParameterTable::choice(ParameterNames const& names, int& field, Texts const& words) {
  add(names, {.check = CLI::IsMember(words),
              .set =
                  [&field, words](Texts const& v) {
                    field = static_cast<int>(std::find(words.begin(), words.end(), v[0]) - words.begin());
                  },
              .text = [&field, words] { return words[static_cast<std::size_t>(field)]; },
              .json = [&field, words] { return Json(words[static_cast<std::size_t>(field)]); }});
}

void ParameterTable::texts(ParameterNames const& names, Texts& field) {
  add(names, {.set = [&field](Texts const& v) { field = v; },
              .text = [&field] { return fmt::format("{}", fmt::join(field, " ")); },
              .json = [&field] { return Json(field); },
              .isRepeated = true});
}

// --- use ---

std::string ParameterTable::Row::described() const {
  return wasDefault.empty() ? names.help : fmt::format("{} (default: {})", names.help, wasDefault);
}

void ParameterTable::addTo(CLI::App& verb) {
  for (auto const& owned : rows_) {
    Row& row = *owned;
    if (row.kind.isFlag) {
      const auto take = [&row](std::int64_t count) {
        row.given = {std::to_string(count > 0 ? row.kind.whenGiven : 1 - row.kind.whenGiven)};
      };
      verb.add_flag_function(row.names.option, take, row.described());
      continue;
    }
    const auto take = [&row](Texts const& values) { row.given = values; };
    CLI::Option* option = verb.add_option_function<Texts>(row.names.option, take, row.described());
    option->type_name(row.kind.type)->type_size(1)->allow_extra_args(false);
    if (!row.kind.isRepeated) option->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::Throw);
    if (row.kind.check) option->check(*row.kind.check);
  }
}

/// Of the profile, where a person may have written anything.
void ParameterTable::Row::takeKept(std::string kept) {
  if (kept.empty()) return;
  const Texts values = kind.isRepeated ? wordsOf(kept) : Texts{kept};
  const std::string fault = kind.check ? (*kind.check)(kept) : std::string();
  if (!fault.empty()) throw UsageError(fmt::format("{}, from the profile: {}", names.option, fault));
  kind.set(values);
  isSettled = true;
}

void ParameterTable::settle(ProfilePlace const* profile) {
  for (auto const& row : rows_) {
    if (profile != nullptr) row->takeKept(inProfile(*profile, row->names));
    if (row->given.empty()) continue;
    row->kind.set(row->given);
    row->isSettled = true;
  }
}

bool ParameterTable::isSettled(std::string_view option) const {
  return std::any_of(rows_.begin(), rows_.end(),
                     [&](auto const& row) { return row->isSettled && option == row->names.option; });
}

void ParameterTable::requireSense(CloudUnits const& units) {
  for (auto const& row : rows_) {
    if (row->kind.requireSense) row->kind.requireSense(units);
  }
}

bool ParameterTable::keep(ProfilePlace const& profile) const {
  CWinApp* app = AfxGetApp();
  return app != nullptr && std::all_of(rows_.begin(), rows_.end(), [&](auto const& row) {
           const std::string text = row->kind.text();
           app->WriteProfileString(profile.section, keyOf(profile, row->names), CString::DesdeUtf8(text));
           return inProfile(profile, row->names) == text;
         });
}

Json ParameterTable::json() const {
  Json all = Json::object();
  for (auto const& row : rows_) all[jsonName(row->names)] = row->kind.json();
  return all;
}

unsigned char ParameterTable::highestTarget() const {
  unsigned char highest = 0;
  for (CInfoClasificacion const* target : targets_) highest = std::max(highest, target->GetTipo());
  return highest;
}

}  // namespace Meseta47::host
