#include "platform/forms/grid.h"

#include <algorithm>

#include "platform/faults.h"

namespace dpm {

Grid::Grid(Form& owner, std::string name, Control* container, int index)
    : Control(owner, ControlKind::Grid, std::move(name), container, index) {
  Reshape(rows_, cols_);
}

void Grid::Reshape(int rows, int cols) {
  std::vector<std::string> cells(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols));
  for (int r = 0; r < std::min(rows, rows_); ++r) {
    for (int c = 0; c < std::min(cols, cols_); ++c) {
      if (!cells_.empty()) cells[static_cast<std::size_t>(r * cols + c)] = std::move(cells_[CellIndex(r, c)]);
    }
  }
  cells_ = std::move(cells);
  rows_ = rows;
  cols_ = cols;
  colWidths_.resize(static_cast<std::size_t>(cols), 0);
  colAlignments_.resize(static_cast<std::size_t>(cols), kAlignGeneral);
  fixedAlignments_.resize(static_cast<std::size_t>(cols), kAlignGeneral);
  rowHeights_.resize(static_cast<std::size_t>(rows), 0);
  fixedRows_ = std::min(fixedRows_, rows_);
  fixedCols_ = std::min(fixedCols_, cols_);
  row_ = std::clamp(row_, 0, std::max(0, rows_ - 1));
  col_ = std::clamp(col_, 0, std::max(0, cols_ - 1));
}

void Grid::SetRows(int rows) {
  if (rows < 0) throw RuntimeFault("Invalid property value: " + std::to_string(rows) + " rows for " + ObjectName());
  Reshape(rows, cols_);
  Notify(Property::Cells);
}

void Grid::SetCols(int cols) {
  if (cols < 0) throw RuntimeFault("Invalid property value: " + std::to_string(cols) + " cols for " + ObjectName());
  Reshape(rows_, cols);
  Notify(Property::Cells);
}

void Grid::SetFixedRows(int rows) {
  fixedRows_ = std::clamp(rows, 0, rows_);
  Notify(Property::Cells);
}

void Grid::SetFixedCols(int cols) {
  fixedCols_ = std::clamp(cols, 0, cols_);
  Notify(Property::Cells);
}

std::size_t Grid::CellIndex(int row, int col) const {
  if (row < 0 || row >= rows_ || col < 0 || col >= cols_) {
    throw IndexFault("Subscript out of range: cell " + std::to_string(row) + ", " + std::to_string(col) + " of " +
                     ObjectName());
  }
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols_) + static_cast<std::size_t>(col);
}

const std::string& Grid::TextMatrix(int row, int col) const { return cells_[CellIndex(row, col)]; }

void Grid::SetTextMatrix(int row, int col, const std::string& text) {
  cells_[CellIndex(row, col)] = text;
  lastRow_ = row;
  lastCol_ = col;
  Notify(Property::Cell);
}

void Grid::SetRow(int row) {
  CellIndex(row, std::min(col_, cols_ - 1));
  row_ = row;
  Notify(Property::Selection);
}

void Grid::SetCol(int col) {
  CellIndex(std::min(row_, rows_ - 1), col);
  col_ = col;
  Notify(Property::Selection);
}

int Grid::ColWidth(int col) const {
  CellIndex(0, col);
  return colWidths_[static_cast<std::size_t>(col)];
}

void Grid::SetColWidth(int col, int twips) {
  CellIndex(0, col);
  colWidths_[static_cast<std::size_t>(col)] = twips;
  Notify(Property::Cells);
}

int Grid::ColAlignment(int col) const {
  CellIndex(0, col);
  return colAlignments_[static_cast<std::size_t>(col)];
}

void Grid::SetColAlignment(int col, int alignment) {
  CellIndex(0, col);
  colAlignments_[static_cast<std::size_t>(col)] = alignment;
  Notify(Property::Cells);
}

int Grid::FixedAlignment(int col) const {
  CellIndex(0, col);
  return fixedAlignments_[static_cast<std::size_t>(col)];
}

void Grid::SetFixedAlignment(int col, int alignment) {
  CellIndex(0, col);
  fixedAlignments_[static_cast<std::size_t>(col)] = alignment;
  Notify(Property::Cells);
}

int Grid::RowHeight(int row) const {
  CellIndex(row, 0);
  return rowHeights_[static_cast<std::size_t>(row)];
}

void Grid::SetRowHeight(int row, int twips) {
  CellIndex(row, 0);
  rowHeights_[static_cast<std::size_t>(row)] = twips;
  Notify(Property::Cells);
}

void Grid::AddItem(const std::string& cellsByTabs, int at) {
  if (at == -1) at = rows_;
  if (at < 0 || at > rows_) {
    throw IndexFault("Subscript out of range: row " + std::to_string(at) + " of " + ObjectName());
  }
  std::vector<std::string> row(static_cast<std::size_t>(cols_));
  std::size_t start = 0;
  for (std::size_t c = 0; c < row.size(); ++c) {
    const std::size_t tab = cellsByTabs.find('\t', start);
    row[c] = cellsByTabs.substr(start, tab == std::string::npos ? std::string::npos : tab - start);
    if (tab == std::string::npos) break;
    start = tab + 1;
  }
  const auto offset = static_cast<std::ptrdiff_t>(at) * cols_;
  cells_.insert(cells_.begin() + offset, row.begin(), row.end());
  rowHeights_.insert(rowHeights_.begin() + at, 0);
  ++rows_;
  Notify(Property::Cells);
}

void Grid::RemoveItem(int at) {
  CellIndex(at, 0);
  const auto offset = static_cast<std::ptrdiff_t>(at) * cols_;
  cells_.erase(cells_.begin() + offset, cells_.begin() + offset + cols_);
  rowHeights_.erase(rowHeights_.begin() + at);
  --rows_;
  fixedRows_ = std::min(fixedRows_, rows_);
  row_ = std::clamp(row_, 0, std::max(0, rows_ - 1));
  Notify(Property::Cells);
}

void Grid::Clear() {
  for (auto& cell : cells_) cell.clear();
  Notify(Property::Cells);
}

void Grid::SetScrollBars(int bars) {
  scrollBars_ = std::clamp(bars, 0, 3);
  Notify(Property::Cells);
}

void Grid::UserClickCell(int row, int col) {
  if (row < 0 || row >= rows_ || col < 0 || col >= cols_ || !AcceptsUser()) return;
  if (row != row_ || col != col_) {
    row_ = row;
    col_ = col;
    Raise(on.SelChange);
  }
  RaiseClick();
}

}  // namespace dpm
