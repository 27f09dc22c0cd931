#include "jumper_table.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "pixel_font.h"
#include "source_words.h"

namespace dpm::tools {
namespace {

constexpr uint32_t kBoardEdge = 0x1C4F2E;
constexpr uint32_t kHousing = 0x202020;
constexpr uint32_t kShuntShine = 0x6090FF;
constexpr uint32_t kTerminal = 0x2A6FC0;
constexpr uint32_t kTerminalEdge = 0x1A3F70;
constexpr uint32_t kScrew = 0xC8C8C8;
constexpr uint32_t kScrewSlot = 0x505050;
constexpr uint32_t kPrint = 0xF0F0F0;  // the white print on the board
constexpr uint32_t kInk = 0x202020;    // the texts around the board

constexpr int kPinPitch = 10;
constexpr int kPin = 4;
constexpr int kPairGap = 8;
constexpr int kTerminalPitch = 12;
constexpr int kMaxPositions = 9;

struct Rect {
  int x = 0, y = 0, w = 0, h = 0;
};

struct Part {
  Rect box;
  uint32_t colour = 0;
  std::string label;
};

struct Row {
  std::string name;
  int x = 0, y = 0, count = 0;
  bool down = false;
};

struct Board {
  std::string title;
  std::optional<Rect> outline;
  std::vector<Part> parts;
  std::vector<Row> blocks;
  std::vector<Row> connectors;
};

void Frame(Image& image, const Rect& r, uint32_t colour) {
  image.Fill(r.x, r.y, r.w, 1, colour);
  image.Fill(r.x, r.y + r.h - 1, r.w, 1, colour);
  image.Fill(r.x, r.y, 1, r.h, colour);
  image.Fill(r.x + r.w - 1, r.y, 1, r.h, colour);
}

std::string NumberText(int n) { return std::to_string(n); }

// The top left corner of a position's first pin; its second pin lies kPairGap below (a
// block laid across) or beside it (a block laid down).
std::pair<int, int> PinOf(const Row& block, int position) {
  const int offset = (position - 1) * kPinPitch;
  return block.down ? std::pair{block.x, block.y + offset} : std::pair{block.x + offset, block.y};
}

void DrawBlock(Image& image, const Row& block, const std::set<int>& placed) {
  const int span = block.count * kPinPitch;
  const Rect housing = block.down ? Rect{block.x - 3, block.y - 3, kPairGap + kPin + 6, span}
                                  : Rect{block.x - 3, block.y - 3, span, kPairGap + kPin + 6};
  DrawText(image, housing.x, housing.y - kCellHeight - 1, 1, kPrint, block.name);
  image.Fill(housing.x, housing.y, housing.w, housing.h, kHousing);
  for (int p = 1; p <= block.count; ++p) {
    const auto [x, y] = PinOf(block, p);
    const int x2 = block.down ? x + kPairGap : x;
    const int y2 = block.down ? y : y + kPairGap;
    image.Fill(x, y, kPin, kPin, kPinColour);
    image.Fill(x2, y2, kPin, kPin, kPinColour);
    if (placed.count(p) != 0) {
      // The shunt covers both pins of its position.
      image.Fill(x - 1, y - 1, x2 - x + kPin + 2, y2 - y + kPin + 2, kShuntColour);
      image.Fill(x, y, block.down ? x2 - x + kPin : kPin, 2, kShuntShine);
    }
    if (block.down) {
      DrawText(image, housing.x - kCellWidth - 1, y - 1, 1, kPrint, NumberText(p));
    } else {
      DrawText(image, x, housing.y + housing.h + 2, 1, kPrint, NumberText(p));
    }
  }
}

void DrawConnector(Image& image, const Row& connector) {
  const int span = connector.count * kTerminalPitch;
  const Rect housing = connector.down ? Rect{connector.x, connector.y, kTerminalPitch, span}
                                      : Rect{connector.x, connector.y, span, kTerminalPitch};
  DrawText(image, housing.x, housing.y - kCellHeight - 1, 1, kPrint, connector.name);
  image.Fill(housing.x, housing.y, housing.w, housing.h, kTerminal);
  Frame(image, housing, kTerminalEdge);
  for (int i = 0; i < connector.count; ++i) {
    const int x = connector.down ? connector.x : connector.x + i * kTerminalPitch;
    const int y = connector.down ? connector.y + i * kTerminalPitch : connector.y;
    image.Fill(x + 3, y + 3, 6, 6, kScrew);
    image.Fill(x + 4, y + 5, 4, 2, kScrewSlot);
    const std::string number = NumberText(connector.count - i);
    if (connector.down) {
      DrawText(image, x - TextWidth(number, 1) - 2, y + 2, 1, kPrint, number);
    } else {
      DrawText(image, x + 3, y + kTerminalPitch + 2, 1, kPrint, number);
    }
  }
}

void DrawBoard(Image& image, const Board& board, const std::map<std::string, std::set<int>>& placed) {
  if (board.outline) {
    const Rect& r = *board.outline;
    image.Fill(r.x, r.y, r.w, r.h, kBoardColour);
    Frame(image, r, kBoardEdge);
    // Mounting holes in the corners.
    for (const auto& [hx, hy] : {std::pair{r.x + 4, r.y + 4}, std::pair{r.x + r.w - 9, r.y + 4},
                                 std::pair{r.x + 4, r.y + r.h - 9}, std::pair{r.x + r.w - 9, r.y + r.h - 9}}) {
      image.Fill(hx, hy, 5, 5, kPinColour);
      image.Fill(hx + 1, hy + 1, 3, 3, kJumperBackground);
    }
  }
  for (const Part& part : board.parts) {
    image.Fill(part.box.x, part.box.y, part.box.w, part.box.h, part.colour);
    Frame(image, part.box, kHousing);
    const int w = TextWidth(part.label, 1);
    DrawText(image, part.box.x + (part.box.w - w) / 2, part.box.y + (part.box.h - kGlyphHeight) / 2, 1, kPrint,
             part.label);
  }
  for (const Row& connector : board.connectors) DrawConnector(image, connector);
  for (const Row& block : board.blocks) {
    auto it = placed.find(block.name);
    DrawBlock(image, block, it == placed.end() ? std::set<int>{} : it->second);
  }
}

// A text of the picture in the pixel font; the font has no figure for some characters.
std::string Printable(const std::string& text, int line, const char* what) {
  for (char c : text)
    if (!HasGlyph(c)) throw SourceError(line, std::string(what) + " has a character the font has no figure for");
  return text;
}

Row ReadRow(Words& words, const char* what) {
  Row row;
  row.name = Printable(words.Word("name"), words.Line(), "a name");
  row.x = words.Number("x");
  row.y = words.Number("y");
  row.count = words.Size(what);
  if (row.count > kMaxPositions) throw SourceError(words.Line(), std::string("at most 9 ") + what);
  const std::string way = words.Word("across or down");
  if (way != "across" && way != "down")
    throw SourceError(words.Line(), "a row goes across or down, not \"" + way + "\"");
  row.down = way == "down";
  words.End();
  return row;
}

// BLOCK=P[,P...] words: the positions of the jumpers on each block named.
std::map<std::string, std::set<int>> ReadSettings(Words& words, const Board& board) {
  std::map<std::string, std::set<int>> placed;
  while (const std::optional<std::string> word = words.OptionalWord()) {
    const std::size_t equals = word->find('=');
    if (equals == std::string::npos)
      throw SourceError(words.Line(), "a jumper is BLOCK=POSITION, not \"" + *word + "\"");
    const std::string name = word->substr(0, equals);
    const auto block =
        std::find_if(board.blocks.begin(), board.blocks.end(), [&](const Row& b) { return b.name == name; });
    if (block == board.blocks.end()) throw SourceError(words.Line(), "the board has no block \"" + name + "\"");
    std::set<int>& positions = placed[name];
    std::size_t at = equals + 1;
    while (at <= word->size()) {
      std::size_t comma = word->find(',', at);
      if (comma == std::string::npos) comma = word->size();
      const std::string number = word->substr(at, comma - at);
      char* end = nullptr;
      const long p = std::strtol(number.c_str(), &end, 10);
      if (number.empty() || *end != '\0' || p < 1 || p > block->count) {
        throw SourceError(words.Line(), "block " + name + " has no position \"" + number + "\"");
      }
      positions.insert(static_cast<int>(p));
      at = comma + 1;
    }
  }
  return placed;
}

Image Enlarged(const Image& image, int scale) {
  Image big(image.width * scale, image.height * scale, 0);
  for (int y = 0; y < big.height; ++y)
    for (int x = 0; x < big.width; ++x) big.Set(x, y, image.At(x / scale, y / scale));
  return big;
}

class TableReader {
 public:
  std::vector<Picture> Read(std::istream& source) {
    std::string text;
    while (std::getline(source, text)) {
      ++line_;
      text = WithoutComment(text);
      Words words(text, line_);
      std::string first;
      if (std::istringstream(text) >> first) words.Word("keyword");
      if (first.empty()) continue;
      if (open_ != nullptr) {
        BoardLine(first, words);
      } else if (first == "board") {
        StartBoard(words);
      } else if (first == "jumpers") {
        Jumpers(words);
      } else if (first == "diagram") {
        Diagram(words);
      } else {
        throw SourceError(line_, "\"" + first + "\" outside a board");
      }
    }
    if (open_ != nullptr) throw SourceError(line_, "a board has no end");
    return std::move(pictures_);
  }

 private:
  void StartBoard(Words& words) {
    const std::string name = words.Word("board name");
    if (boards_.count(name) != 0) throw SourceError(line_, "board \"" + name + "\" twice");
    Board board;
    board.title = Printable(words.Quoted("the title"), line_, "the title");
    words.End();
    open_ = &boards_.emplace(name, std::move(board)).first->second;
  }

  void BoardLine(const std::string& first, Words& words) {
    if (first == "end") {
      words.End();
      open_ = nullptr;
    } else if (first == "outline") {
      const int x = words.Number("x"), y = words.Number("y");
      const int w = words.Size("width"), h = words.Size("height");
      words.End();
      open_->outline = Rect{x, y, w, h};
    } else if (first == "part") {
      Part part;
      part.box.x = words.Number("x");
      part.box.y = words.Number("y");
      part.box.w = words.Size("width");
      part.box.h = words.Size("height");
      part.colour = words.Colour();
      part.label = Printable(words.Quoted("the label"), line_, "the label");
      words.End();
      open_->parts.push_back(std::move(part));
    } else if (first == "block") {
      Row block = ReadRow(words, "positions");
      for (const Row& b : open_->blocks)
        if (b.name == block.name) throw SourceError(line_, "block \"" + block.name + "\" twice");
      open_->blocks.push_back(std::move(block));
    } else if (first == "connector") {
      open_->connectors.push_back(ReadRow(words, "pins"));
    } else {
      throw SourceError(line_, "unknown part of a board \"" + first + "\"");
    }
  }

  const Board& BoardNamed(Words& words) {
    const std::string name = words.Word("board");
    auto it = boards_.find(name);
    if (it == boards_.end()) throw SourceError(line_, "no board \"" + name + "\" defined before");
    return it->second;
  }

  void Add(std::string name, Image image) {
    for (const Picture& p : pictures_)
      if (p.name == name) throw SourceError(line_, "picture \"" + name + "\" twice");
    pictures_.push_back(Picture{std::move(name), std::move(image)});
  }

  void Jumpers(Words& words) {
    const int number = words.Number("number");
    if (number < 1 || number > 999) throw SourceError(line_, "a picture number runs from 1 to 999");
    const Board& board = BoardNamed(words);
    const std::string range = Printable(words.Quoted("the range"), line_, "the range");
    const auto placed = ReadSettings(words, board);
    Image image(kJumperPictureWidth, kJumperPictureHeight, kJumperBackground);
    DrawBoard(image, board, placed);
    DrawText(image, 4, 3, 1, kInk, board.title);
    // The range in large print when it fits, else in small.
    const int scale = TextWidth(range, 2) <= kJumperPictureWidth - 8 ? 2 : 1;
    const int width = TextWidth(range, scale);
    DrawText(image, (kJumperPictureWidth - width) / 2, kJumperPictureHeight - 3 - kGlyphHeight * scale, scale, kInk,
             range);
    Add("Jumper" + std::to_string(number) + ".BMP", std::move(image));
  }

  void Diagram(Words& words) {
    const std::string file = words.Word("file name");
    if (file.find_first_of("/\\") != std::string::npos) throw SourceError(line_, "a name is a bare file name");
    const Board& board = BoardNamed(words);
    const int scale = words.Size("scale");
    if (scale > 8) throw SourceError(line_, "a diagram is at most 8 times the picture");
    const auto placed = ReadSettings(words, board);
    Image image(kJumperPictureWidth, kJumperPictureHeight, kJumperBackground);
    DrawBoard(image, board, placed);
    Add(file, scale == 1 ? std::move(image) : Enlarged(image, scale));
  }

  std::map<std::string, Board> boards_;
  Board* open_ = nullptr;
  std::vector<Picture> pictures_;
  int line_ = 0;
};

}  // namespace

std::vector<Picture> DrawJumperTable(std::istream& source) { return TableReader().Read(source); }

}  // namespace dpm::tools
