// Turns the help texts, one readable text file, into the help file pairs the program reads:
// HelpNN.S10 (the items, "$" ending each line) and HelpNN.R10 (records of 6 bytes: the
// item's position in the .S10, counted from 1, as a 32-bit little-endian integer, and its
// length as a 16-bit little-endian integer).
//
//   help_compiler <help_texts.txt> <output folder> <file numbers, as 11,12,13,21,31>
//
// The source: an entry starts with a line "[NNNN]", the four-digit help context; the
// lines up to the next entry are its text, trailing empty lines left out. "[NNNN fixed]"
// marks an item laid out in columns: its lines are kept with CR LF between them and may
// hold "$". A line starting with ";" is a comment. The file numbers given are exactly the
// pairs written: an entry of another file number is an error, so that the build knows
// every file it makes.
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

// Normal lines must fit the help window.
constexpr std::size_t kMaxLineLength = 62;
constexpr std::size_t kMaxFixedLineLength = 70;
constexpr int kMaxItemLength = 32767;

struct Entry {
  int context = 0;
  bool fixed = false;
  int sourceLine = 0;
  std::vector<std::string> lines;
};

[[noreturn]] void Fail(const std::string& where, const std::string& what) {
  throw std::runtime_error(where + ": " + what);
}

std::vector<Entry> Parse(std::istream& in, const std::string& sourceName) {
  std::vector<Entry> entries;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    const std::string where = sourceName + ":" + std::to_string(number);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    for (unsigned char c : line) {
      if (c >= 0x80 || (c < 0x20 && c != '\t')) Fail(where, "only printable ASCII characters can be shown");
    }
    if (line.find('\t') != std::string::npos) Fail(where, "a tab has no width in the help window; use blanks");
    if (!line.empty() && line[0] == ';') continue;
    if (!line.empty() && line[0] == '[') {
      Entry entry;
      entry.sourceLine = number;
      std::istringstream head(line.substr(1));
      std::string word;
      if (!(head >> entry.context) || entry.context < 1000 || entry.context > 9999) {
        Fail(where, "an entry starts with [NNNN], a four-digit help context");
      }
      head >> word;
      if (word == "fixed]") {
        entry.fixed = true;
      } else if (!word.empty() && word != "]") {
        Fail(where, "unknown mark \"" + word + "\"");
      } else if (line.back() != ']') {
        Fail(where, "an entry's first line ends with ]");
      }
      if (entry.context % 100 == 0) Fail(where, "record 0 does not exist: a help context never ends in 00");
      entries.push_back(entry);
      continue;
    }
    if (entries.empty()) {
      if (!line.empty()) Fail(where, "text before the first entry");
      continue;
    }
    Entry& entry = entries.back();
    const std::size_t limit = entry.fixed ? kMaxFixedLineLength : kMaxLineLength;
    if (line.size() > limit) Fail(where, "line longer than " + std::to_string(limit) + " characters");
    if (!entry.fixed && line.find('$') != std::string::npos) Fail(where, "\"$\" ends a line; it cannot be shown");
    entry.lines.push_back(line);
  }
  return entries;
}

std::string ItemText(Entry& entry, const std::string& sourceName) {
  while (!entry.lines.empty() && entry.lines.back().find_first_not_of(' ') == std::string::npos) {
    entry.lines.pop_back();
  }
  const std::string where = sourceName + ":" + std::to_string(entry.sourceLine);
  if (entry.lines.size() < 2 && !entry.fixed) Fail(where, "an item has a title line and a line naming the field");
  std::string text;
  for (std::size_t i = 0; i < entry.lines.size(); ++i) {
    if (i > 0) text += entry.fixed ? "\r\n" : "$";
    text += entry.lines[i];
  }
  if (text.size() > static_cast<std::size_t>(kMaxItemLength)) Fail(where, "item too long");
  return text;
}

void PutLittleEndian(std::string& out, uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

void WriteFile(const std::string& path, const std::string& contents) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << contents;
  if (!out.flush()) throw std::runtime_error("cannot write " + path);
}

std::set<int> FileNumbers(const std::string& list) {
  std::set<int> numbers;
  std::istringstream in(list);
  for (std::string item; std::getline(in, item, ',');) numbers.insert(std::stoi(item));
  return numbers;
}

// The items of one file number, by record.
void WritePair(const std::string& folder, int fileNumber, const std::map<int, std::string>& items) {
  std::string text;
  std::string index;
  const int lastRecord = items.empty() ? 0 : items.rbegin()->first;
  for (int record = 1; record <= lastRecord; ++record) {
    auto item = items.find(record);
    if (item == items.end()) {
      // A record without an item: position 0, which the reader takes for none.
      PutLittleEndian(index, 0, 4);
      PutLittleEndian(index, 0, 2);
      continue;
    }
    PutLittleEndian(index, static_cast<uint32_t>(text.size() + 1), 4);
    PutLittleEndian(index, static_cast<uint32_t>(item->second.size()), 2);
    text += item->second;
  }
  const std::string name = folder + "/Help" + std::to_string(fileNumber);
  WriteFile(name + ".S10", text);
  WriteFile(name + ".R10", index);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: help_compiler <help texts> <output folder> <file numbers, as 11,12,13>\n";
    return 2;
  }
  try {
    const std::string sourceName = argv[1];
    std::ifstream source(sourceName, std::ios::binary);
    if (!source) throw std::runtime_error("cannot read " + sourceName);
    const std::set<int> fileNumbers = FileNumbers(argv[3]);
    std::map<int, std::map<int, std::string>> files;
    for (int number : fileNumbers) {
      if (number < 10 || number > 99) throw std::runtime_error("file numbers have two digits");
      files[number];
    }
    for (Entry& entry : Parse(source, sourceName)) {
      const std::string where = sourceName + ":" + std::to_string(entry.sourceLine);
      auto file = files.find(entry.context / 100);
      if (file == files.end()) Fail(where, "help context " + std::to_string(entry.context) + " has no help file");
      if (!file->second.emplace(entry.context % 100, ItemText(entry, sourceName)).second) {
        Fail(where, "a second entry for help context " + std::to_string(entry.context));
      }
    }
    for (const auto& [number, items] : files) WritePair(argv[2], number, items);
  } catch (const std::exception& error) {
    std::cerr << "help_compiler: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
