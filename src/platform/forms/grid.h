#pragma once

#include <string>
#include <vector>

#include "platform/forms/control.h"

namespace dpm {

// A grid of text cells. Rows and columns count from 0; the first FixedRows rows and
// FixedCols columns are headers. Moving the current cell by code raises nothing; a click
// of the user moves it (SelChange) and then raises Click. A cell outside the grid is an
// IndexFault, as the toolkit's own grid refuses it.
class Grid : public Control {
 public:
  Grid(Form& owner, std::string name, Control* container = nullptr, int index = -1);

  int Rows() const { return rows_; }
  int Cols() const { return cols_; }
  void SetRows(int rows);
  void SetCols(int cols);
  int FixedRows() const { return fixedRows_; }
  int FixedCols() const { return fixedCols_; }
  void SetFixedRows(int rows);
  void SetFixedCols(int cols);

  const std::string& TextMatrix(int row, int col) const;
  void SetTextMatrix(int row, int col, const std::string& text);
  // The current cell.
  int Row() const { return row_; }
  int Col() const { return col_; }
  void SetRow(int row);
  void SetCol(int col);
  const std::string& Text() const { return TextMatrix(row_, col_); }
  void SetText(const std::string& text) { SetTextMatrix(row_, col_, text); }

  // Sizes in twips; 0 is the view's own size.
  int ColWidth(int col) const;
  void SetColWidth(int col, int twips);
  int RowHeight(int row) const;
  void SetRowHeight(int row, int twips);

  // How the text of a column's cells sits: kAlignGeneral (the view's own way), or left,
  // centred or right. The cells of the header rows have an alignment of their own.
  static constexpr int kAlignLeftCenter = 1;
  static constexpr int kAlignCenterCenter = 4;
  static constexpr int kAlignRightCenter = 7;
  static constexpr int kAlignGeneral = 9;
  int ColAlignment(int col) const;
  void SetColAlignment(int col, int alignment);
  int FixedAlignment(int col) const;
  void SetFixedAlignment(int col, int alignment);

  // Inserts a row at `at` (the end when -1); the text's cells are separated by tabs.
  void AddItem(const std::string& cellsByTabs, int at = -1);
  void RemoveItem(int at);
  // Empties every cell; the shape stays.
  void Clear();

  // 0 none, 1 horizontal, 2 vertical, 3 both.
  int ScrollBars() const { return scrollBars_; }
  void SetScrollBars(int bars);

  // The one cell that the last Property::Cell update is about.
  int LastChangedRow() const { return lastRow_; }
  int LastChangedCol() const { return lastCol_; }

  // The user clicked a cell.
  void UserClickCell(int row, int col);

 private:
  std::size_t CellIndex(int row, int col) const;
  void Reshape(int rows, int cols);

  int rows_ = 2;
  int cols_ = 2;
  int fixedRows_ = 1;
  int fixedCols_ = 1;
  int row_ = 1;
  int col_ = 1;
  int scrollBars_ = 3;
  int lastRow_ = 0;
  int lastCol_ = 0;
  std::vector<std::string> cells_;
  std::vector<int> colWidths_;
  std::vector<int> colAlignments_;
  std::vector<int> fixedAlignments_;
  std::vector<int> rowHeights_;
};

}  // namespace dpm
