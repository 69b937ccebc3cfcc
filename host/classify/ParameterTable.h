#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/drawing/CInfoClasificacion.h"
#include "platform/CString.h"

namespace Meseta47::host {

/// Where the parameters of a search are kept from one use to the next, in the profile of the application.
struct ProfilePlace {
  CString section;
  CString prefix;
};

/// The lengths of a cloud's units.
struct CloudUnits {
  double aMetre = 1;        ///< scaled units in a unit of the input
  double metres = 1;        ///< of a unit of the input in plan
  double heightMetres = 1;  ///< and in height
  bool known = true;        ///< false: no system told it, and metres are taken
};

/// What a parameter is called, and what a person should know of it.
struct ParameterNames {
  char const* option;               ///< with its hyphens
  char const* key;                  ///< in a profile
  std::string help;                 ///< the default is added behind it
  char const* json = nullptr;       ///< in a summary; null: the option without hyphens, words joined by _
  char const* byDefault = nullptr;  ///< null: the value that the field has at first
};

/// The parameters of a search, a row each. From its row come an option of the command line with its help, a key of the
/// profile and a line of the summary.
///
/// A row is bound to a field, which is the caller's and must outlive the table. What it holds when the row is made is
/// the default; `settle` replaces it by what the profile holds, and that by what the command line says. The order of
/// the calls is addTo, settle, requireSense, keep.
class ParameterTable {
 public:
  ParameterTable() = default;
  ParameterTable(ParameterTable const&) = delete;
  ParameterTable& operator=(ParameterTable const&) = delete;

  // --- rows ---
  /// A length from 0 up in units of the input, of which the search takes whole scaled units of 32 bits.
  void length(ParameterNames const& names, double& field);
  /// The same where the search takes the square of the scaled units, which must fit.
  void squaredLength(ParameterNames const& names, double& field);
  /// The same without a default: none is no limit.
  void optionalLength(ParameterNames const& names, std::optional<double>& field);
  /// A length above 0 that the field holds in metres, up to `most` of them, given in units of the input.
  void metres(ParameterNames const& names, double& field, double most);
  /// A plain number within limits.
  void number(ParameterNames const& names, double& field, CLI::Validator const& limits);
  void optionalNumber(ParameterNames const& names, std::optional<double>& field, CLI::Validator const& limits);
  /// A whole number within limits.
  void whole(ParameterNames const& names, int& field, int least, int most);
  /// A class that the search gives: it must fit the format of the file.
  void target(ParameterNames const& names, CInfoClasificacion& field);
  /// A class that it looks for.
  void sought(ParameterNames const& names, CInfoClasificacion& field);
  /// The same without a default: none is no class.
  void optionalClass(ParameterNames const& names, std::optional<CInfoClasificacion>& field);
  /// On or off: an option without a value that makes the field `given`, 0 or 1; --option=false makes it the other.
  void flag(ParameterNames const& names, int& field, int given = 1);
  /// One of several words; the field is the index of one.
  void choice(ParameterNames const& names, int& field, std::vector<std::string> const& words);
  /// Texts of an option that may be repeated; those of the command line take the place of all that the profile holds.
  /// None has a blank in it.
  void texts(ParameterNames const& names, std::vector<std::string>& field);

  // --- use ---
  void addTo(CLI::App& verb);
  /// Throws UsageError for a value of the profile that the option would not take.
  void settle(ProfilePlace const* profile);
  /// Throws UsageError for a length that makes no sense on such units, with the limits.
  void requireSense(CloudUnits const& units);
  /// Writes the parameters to the profile; false when they can't be read back from it.
  [[nodiscard]] bool keep(ProfilePlace const& profile) const;
  [[nodiscard]] nlohmann::ordered_json json() const;
  /// Whether an option has its value from the profile or the command line, not by default.
  [[nodiscard]] bool isSettled(std::string_view option) const;
  /// Of the `target` rows.
  [[nodiscard]] unsigned char highestTarget() const;

 private:
  /// What a row does in a way of its own. Values go by text, as a command line and a profile have them.
  struct Kind {
    char const* type = "TEXT";                                 ///< of the value, for --help
    std::optional<CLI::Validator> check{};                     ///< of a value
    std::function<void(std::vector<std::string> const&)> set;  ///< from a value that passed the check; `texts`: several
    std::function<std::string()> text;                         ///< of the field; empty: none
    std::function<nlohmann::ordered_json()> json;
    std::function<void(CloudUnits const&)> requireSense{};
    bool isFlag = false, isRepeated = false;
    int whenGiven = 1;  ///< of a flag
  };
  struct Row {
    ParameterNames names;
    Kind kind;
    std::vector<std::string> given{};  ///< on the command line
    std::string wasDefault{};
    bool isSettled = false;

    [[nodiscard]] std::string described() const;
    void takeKept(std::string kept);
  };

  Row& add(ParameterNames const& names, Kind kind);
  void addClass(ParameterNames const& names, CInfoClasificacion& field);

  std::vector<std::unique_ptr<Row>> rows_;  // the parser keeps pointers to what was given
  std::vector<CInfoClasificacion const*> targets_;
};

}  // namespace Meseta47::host
