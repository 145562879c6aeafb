#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

// What was asked for on the command line.

namespace kelvo::cli {

enum class Verb : std::uint8_t { Check, Scan, Info, Write, Render, Compare, Export, Import };

/// How results are written.
enum class Form : std::uint8_t { Table, Json, Csv };

/// How the program ends.
enum Status : int { AllWell = 0, SomethingFailed = 1, WrongUse = 2 };

/// What holds in place of the stored settings of the line; empty where these hold.
struct LineChoice {
  std::string port{};       ///< a device, or "Com 1" .. "Com 6"
  std::string rate{};       ///< "9600"
  std::string frame{};      ///< "8N1"
  std::string handshake{};  ///< "xon" or "rts"
};

/// Which Terminals are meant.
struct AddressChoice {
  bool active = false;           ///< those of the list that are active
  std::vector<int> addresses{};  ///< else these, each once
};

struct DisplaySizeChoice {
  int width = 0;
  int height = 0;
};

/// What an import does with a record that is another one here.
enum class Differing : std::uint8_t { Refuse, Take, Leave };

struct Options {
  Verb verb = Verb::Check;
  Form form = Form::Table;
  std::string data{};  ///< the data folder; empty: the usual one
  LineChoice line{};
  std::vector<std::string> files{};
  std::vector<std::string> records{};  ///< names or numbers of stored texts
  std::optional<AddressChoice> to{};
  int first = 0;  ///< addresses of a search, both included
  int last = 253;
  bool quick = false;
  bool all = false;
  bool prove = false;
  bool goOn = false;
  bool read = false;
  bool tryOnly = false;
  std::optional<int> eeprom{};  ///< bytes
  std::optional<DisplaySizeChoice> display{};
  std::string png{};
  int scale = 1;
  std::string base{};                ///< the common state of an import
  std::vector<std::string> kinds{};  ///< of an export; empty: all
  Differing differing = Differing::Refuse;
};

/// What came of reading the command line.
struct ParsedArguments {
  std::optional<Options> options{};  ///< without them the program ends
  std::string text{};                ///< to be shown then, UTF-8
  Status status = AllWell;
};
/// `arguments` goes without the program's own name.
ParsedArguments ReadArguments(const std::vector<std::string>& arguments);

/// "1,3,7..12"; nothing for what is no such list of addresses from 0 to 254.
std::optional<std::vector<int>> AddressesIn(std::string_view list);

}  // namespace kelvo::cli
