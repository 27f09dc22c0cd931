#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>

#include "picture_maker.h"

// One line of a picture maker source, taken apart word by word; every mistake is a
// SourceError that names the line.
namespace dpm::tools {

class Words {
 public:
  Words(const std::string& text, int line) : in_(text), line_(line) {}

  int Line() const { return line_; }

  std::string Word(const char* what) {
    std::string word;
    if (!(in_ >> word)) throw SourceError(line_, std::string("missing ") + what);
    return word;
  }
  // A text in double quotes, which may hold blanks; "" is an empty text.
  std::string Quoted(const char* what) {
    in_ >> std::ws;
    if (in_.peek() != '"') throw SourceError(line_, std::string(what) + " goes in double quotes");
    in_.get();
    std::string text;
    if (!std::getline(in_, text, '"') || in_.eof()) {
      throw SourceError(line_, std::string(what) + " has no closing quote");
    }
    return text;
  }
  int Number(const char* what) {
    const std::string word = Word(what);
    char* end = nullptr;
    const long value = std::strtol(word.c_str(), &end, 10);
    if (*end != '\0' || value < -100000 || value > 100000) throw SourceError(line_, std::string("bad ") + what);
    return static_cast<int>(value);
  }
  int Size(const char* what) {
    const int value = Number(what);
    if (value < 1 || value > 10000) throw SourceError(line_, std::string("bad ") + what);
    return value;
  }
  uint32_t Colour() {
    const std::string word = Word("colour");
    if (word.size() != 6 || word.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
      throw SourceError(line_, "a colour is RRGGBB in hexadecimal, not \"" + word + "\"");
    return static_cast<uint32_t>(std::strtoul(word.c_str(), nullptr, 16));
  }
  std::optional<int> OptionalNumber(const char* what) {
    if (AtEnd()) return std::nullopt;
    return Number(what);
  }
  std::optional<std::string> OptionalWord() {
    if (AtEnd()) return std::nullopt;
    return Word("word");
  }
  std::string Rest() {
    std::string rest;
    std::getline(in_ >> std::ws, rest);
    return rest;
  }
  void End() {
    std::string extra;
    if (in_ >> extra) throw SourceError(line_, "unexpected \"" + extra + "\"");
  }

 private:
  bool AtEnd() {
    in_ >> std::ws;
    return in_.eof();
  }

  std::istringstream in_;
  int line_;
};

// A source line without its comment ("#" to the end) and trailing blanks.
inline std::string WithoutComment(std::string text) {
  text = text.substr(0, text.find('#'));
  while (!text.empty() && (text.back() == ' ' || text.back() == '\r' || text.back() == '\t')) text.pop_back();
  return text;
}

}  // namespace dpm::tools
